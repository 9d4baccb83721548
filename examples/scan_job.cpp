// Plans a scan job: the outline that the operator sighted becomes an area with a grid of camera shots, points
// are sorted into inside and outside as seen from the station, and the area goes to a file.
//
// Prints:
//   top left       horizontal angle 341.05, zenith angle 66.06
//   bottom right   horizontal angle  12.70, zenith angle 93.25
//   zero direction crossed
//   5 x 4 shots
//   IMG0001.jpg    horizontal angle 341.05, zenith angle 66.06
//   IMG0020.jpg    horizontal angle  12.70, zenith angle 93.25
//   door           351.4996  89.7523  inside
//   window         356.1771  80.0529  inside
//   ridge          358.6638  68.7417  inside
//   kerb             5.1975  95.5569  outside
//   annexe          18.8540  88.6884  outside
//   lightning rod  356.6239  62.0165  outside
//   gable.txt holds 20 shots and an outline of 5 vertices
#include <fieldscan/fieldscan.h>

#include <cstdio>
#include <string>

namespace {

constexpr double kDegree = 0.017453292519943295;  // radians

// A gable wall: horizontal and zenith angle of each vertex in degrees. It lies across the zero direction.
constexpr double kOutline[][2] = {
    {341.05, 93.13}, {341.05, 77.24}, {356.38, 66.06}, {12.70, 76.66}, {12.70, 93.25}};

struct Target {
    const char* name;
    double north, east, height;  // metres
};
constexpr Target kTargets[] = {
    {"door", 1024.020, 1996.410, 53.905},   {"window", 1024.049, 1998.393, 58.027},
    {"ridge", 1023.965, 1999.441, 63.126},  {"kerb", 1015.303, 2001.392, 52.305},
    {"annexe", 1024.180, 2008.257, 54.385}, {"lightning rod", 1024.020, 1998.583, 66.585}};

std::string narrow(const CString& text) {
    char buffer[64];
    CStringToChar(text, buffer, sizeof buffer);
    return buffer;
}

// The corners of the area and its outline in degrees; false when the outline is faulty.
bool setOutline(CScanArea& area) {
    for (const auto& [horizontal, zenith] : kOutline) {
        CWPK direction(zenith * kDegree, 0.0, horizontal * kDegree);
        area.outlineAngles.Add(direction);
    }
    int edge;
    if (const int code = area.CheckOutline(&edge); code != 1) {
        std::fprintf(stderr, "faulty outline: code %d, edge %d\n", code, edge);
        return false;
    }
    area.CalPolylineTopLeftBottomRight();
    area.CalHVPolyline2();
    return true;
}

void printDirection(const char* title, const CWPK& direction) {
    std::printf("%-14s horizontal angle %6.2f, zenith angle %5.2f\n", title, direction.kappa / kDegree,
                direction.omega / kDegree);
}

void printTarget(const CScanArea& area, const CXYZ& station, const Target& target) {
    constexpr double kInstrumentHeight = 1.5;  // metres above the station
    double zenith, direction;
    if (CCalcXYZHV::XYZToHV(station, CXYZ(target.north, target.east, target.height), kInstrumentHeight,
                            zenith, direction) != 1) {
        std::printf("%-14s straight above or below the station\n", target.name);
        return;
    }
    const double elevation = CCalcXYZHV::AngleZ0toH0(zenith);
    const bool inside = CCalcXYZHV::IsPolyInside(area.outlinePolyline, direction, elevation) == 1;
    std::printf("%-14s %8.4f %8.4f  %s\n", target.name, direction, zenith, inside ? "inside" : "outside");
}

}  // namespace

int main() {
    CScanArea area;
    if (!setOutline(area))
        return 1;
    printDirection("top left", area.areaAngle1);
    printDirection("bottom right", area.areaAngle2);
    std::printf("%-14s %s\n", "zero direction", area.CheckZeroCross() == 1 ? "crossed" : "not crossed");

    // Neighbours are at most 10 degrees apart, unless columnCount and rowCount say otherwise.
    if (area.CalShootAng(area.areaAngle1, area.areaAngle2) != 1)
        return 1;
    const int last = area.shootAngles.GetUpperBound();
    std::printf("%d x %d shots\n", area.columnCount, area.rowCount);
    printDirection(narrow(area.imageNames[0]).c_str(), area.shootAngles[0]);
    printDirection(narrow(area.imageNames[last]).c_str(), area.shootAngles[last]);

    const CXYZ station(u"ST1", 1000.0, 2000.0, 52.3);
    for (const Target& target : kTargets)
        printTarget(area, station, target);

    // The second version of the file keeps the outline too.
    CScanArea back;
    if (area.CheckParameter() != 1 || area.Write2(u"gable.txt") != 1 || back.Read2(u"gable.txt") != 1)
        return 1;
    std::printf("gable.txt holds %d shots and an outline of %d vertices\n", back.shootAngles.GetSize(),
                back.outlineAngles.GetSize());
}
