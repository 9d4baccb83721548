// Outlines are read as points, whose x and y are horizontal and zenith angle.
#include "scan/scan_input.h"

#include <cmath>
#include <string>

#include "common/angles.h"
#include "common/data_error.h"
#include "common/files.h"
#include "common/points.h"
#include "formats/checked_files.h"
#include "scan/area_faults.h"

namespace fs = std::filesystem;

namespace {

// Vertex i is on line i + 1 of the file, which messages name.
void setOutline(const CArray<CXYZ, CXYZ&>& vertices, const fs::path& path, CScanArea& area) {
    const std::string expected =
        "; expected are lines \"name,horizontal angle,zenith angle,0\" in degrees, the horizontal angle from "
        "-360 to 360, the zenith angle between 0 and 180";
    if (vertices.GetSize() < 3)
        fail(path, "an outline needs three vertices, this file has " + std::to_string(vertices.GetSize()) +
                       expected);
    area.Init();
    for (int i = 0; i < vertices.GetSize(); ++i) {
        const CXYZ& vertex = vertices[i];
        if (!isFinite(vertex) || std::fabs(vertex.x) > 360.0 || vertex.y <= 0.0 || vertex.y >= 180.0 ||
            vertex.z != 0.0)
            fail(fs::path(path) += ":" + std::to_string(i + 1), "no direction" + expected);
        CWPK direction(vertex.y / kDegreesPerRadian, 0.0, vertex.x / kDegreesPerRadian);
        area.NormalizeAngle(direction.kappa);
        area.outlineAngles.Add(direction);
    }
}

}  // namespace

void readOutline(const fs::path& path, ScanJob& job) {
    CString file = libraryPath(path);
    CArray<CXYZ, CXYZ&> vertices;
    if (ReadCSVFile(&file, vertices, 1) != 1)
        fail(path, "the outline file cannot be opened");
    setOutline(vertices, path, job.area);
}

CXYZ readStation(const fs::path& path) {
    CString file = libraryPath(path);
    CArray<CXYZ, CXYZ&> occupied;
    if (ReadOccInfoFile(&file, occupied, 1) != 1)
        fail(path, "the station file cannot be opened");
    if (occupied.IsEmpty() || !isFinite(occupied[0]))
        fail(path, "the station file has no point; expected is a line \"name,x,y,z\"");
    return occupied[0];
}

void readArea(const TextFile& file, ScanJob& job, bool needsOutline) {
    const Format format = formatOf(file);
    if (format == Format::point) {
        CArray<CXYZ, CXYZ&> vertices;
        readCheckedPoints(file, vertices);
        setOutline(vertices, file.name(), job.area);
    } else {
        if (format != Format::scanArea && format != Format::scanArea2)
            file.fail(
                1, "expected a scan-area file, or an outline of lines name,horizontal angle,zenith angle,0");
        Contents contents;
        readChecked(file, format, contents);
        const std::string fault = areaFault(contents.area);
        if (!fault.empty())
            file.fail(0, fault);
        job.area = contents.area;
    }
    const int vertices = job.area.outlineAngles.GetSize();
    if (vertices == 0 && needsOutline)
        file.fail(0,
                  std::string("expected an outline of three vertices at least, found none") +
                      (format == Format::scanArea ? "; this version of the scan-area file holds none" : ""));
    job.area.CalHVPolyline1();
    try {
        if (vertices > 0)
            measureArea(job);
    } catch (const DataError& error) {
        file.fail(0, error.what());
    }
    if (job.width() == 0.0 || job.height() <= 0.0)
        file.fail(0, "expected corners that span an area");
}
