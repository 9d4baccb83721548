// Points by the library's own reader, and differences as the largest of x, y and z.
#include "common/points.h"

#include <fieldscan/point_files.h>

#include <algorithm>
#include <cmath>

#include "common/files.h"
#include "common/text.h"

namespace fs = std::filesystem;

bool isFinite(const CXYZ& p) { return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z); }

double largestDifference(const CXYZ& a, const CXYZ& b) {
    return std::max({std::fabs(a.x - b.x), std::fabs(a.y - b.y), std::fabs(a.z - b.z)});
}

void readPointFile(const fs::path& path, CArray<CXYZ, CXYZ&>& points, const char* axes) {
    CString file = libraryPath(path);
    if (ReadCSVFile(&file, points, 1) != 1)
        fail(path, "the point file cannot be opened");
    // A field that is no number reads as 0, so a file of another format gives points of zeros.
    bool hasCoordinates = false;
    for (int i = 0; i < points.GetSize(); ++i) {
        if (!isFinite(points[i]))
            fail(path, format("line %d holds a coordinate that is not finite", i + 1));
        hasCoordinates = hasCoordinates || largestDifference(points[i], CXYZ()) != 0.0;
    }
    if (!hasCoordinates)
        fail(path, std::string("no point with coordinates; expected are lines \"name,x,y,z\", ") + axes);
}

PointsBack comparePoints(const CArray<CXYZ, CXYZ&>& written, const CArray<CXYZ, CXYZ&>& back,
                         double tolerance, const fs::path& path) {
    PointsBack result;
    result.count = back.GetSize();
    if (result.count != written.GetSize())
        fail(path,
             format("the file came back with %d points instead of %d", result.count, written.GetSize()));
    for (int i = 0; i < result.count; ++i) {
        if (back[i].name != written[i].name)
            fail(path, "point " + toUtf8(written[i].name) + " came back as " + toUtf8(back[i].name));
        result.coordinates = std::max(result.coordinates, largestDifference(written[i], back[i]));
    }
    if (result.coordinates > tolerance)
        fail(path, "the file came back with other coordinates");
    return result;
}
