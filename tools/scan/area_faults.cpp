// The codes of CScanArea::CheckOutline and CheckParameter, with the edge at fault.
#include "scan/area_faults.h"

#include <algorithm>

std::string outlineFault(const CScanArea& area) {
    int edge;
    const int code = area.CheckOutline(&edge);
    const int n = area.outlineAngles.GetSize();
    const std::string from = std::to_string(edge + 1), to = std::to_string((edge + 1) % std::max(n, 1) + 1);
    switch (code) {
        case 1:
            return "";
        case -1:
            return "an outline needs three vertices at different places, this one has " + std::to_string(n) +
                   " vertices (360 degrees are 0: a full circle ends at 359.9999)";
        case -2:
            return "vertex " + from + " of the outline is no direction";
        case -3:
            return "the edge from vertex " + from + " to vertex " + to +
                   " of the outline spans half a turn or more, or the outline goes round the full circle; "
                   "give long edges vertices between, and outline a full circle from 0 to 359.9999";
        case -4:
            return "the edge from vertex " + from + " to vertex " + to +
                   " of the outline crosses another one";
        default:
            return "the outline cannot be checked: no memory";
    }
}

std::string areaFault(const CScanArea& area) {
    switch (area.CheckParameter()) {
        case 1:
            return area.outlineAngles.IsEmpty() ? "" : outlineFault(area);
        case -1:
            return "expected as many image names as columns times rows";
        case -2:
            return "expected as many shots as columns times rows";
        case -3:
            return "expected corners within the full circle";
        default:
            return "expected shots that form a grid";
    }
}
