#include "common/files.h"

#include <fieldscan/point_files.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace fs = std::filesystem;

CString libraryPath(const fs::path& path) { return CString(path.u16string().c_str()); }

void fail(const fs::path& path, const std::string& what) {
    throw std::runtime_error(path.u8string() + ": " + what);
}

void makeFolder(const fs::path& path) {
    std::error_code error;
    fs::create_directories(path, error);
    if (!fs::is_directory(path, error))
        fail(path, "the folder for the results cannot be made");
}

void readPoints(const fs::path& path, CArray<CXYZ, CXYZ&>& points, const char* axes) {
    CString file = libraryPath(path);
    if (ReadCSVFile(&file, points, 1) != 1)
        fail(path, "the point file cannot be opened");
    // The reader takes what is no number for 0, so a file of another kind gives points of zeros.
    bool anyCoordinates = false;
    for (int i = 0; i < points.GetSize(); ++i) {
        if (!isFinite(points[i]))
            fail(path, "line " + std::to_string(i + 1) + " holds a coordinate that is not finite");
        anyCoordinates = anyCoordinates || points[i].x != 0.0 || points[i].y != 0.0 || points[i].z != 0.0;
    }
    if (!anyCoordinates)
        fail(path, std::string("no point with coordinates; expected are lines \"name,x,y,z\", ") + axes);
}

bool isFinite(const CXYZ& p) { return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z); }

double difference(const CXYZ& a, const CXYZ& b) {
    return std::max({std::fabs(a.x - b.x), std::fabs(a.y - b.y), std::fabs(a.z - b.z)});
}
