// Points of a file without a look at its lines, and the comparison of points with what a file kept of them.
#ifndef TOOLS_COMMON_POINTS_H
#define TOOLS_COMMON_POINTS_H

#include <fieldscan/framework/array.h>
#include <fieldscan/points.h>

#include <filesystem>

// Half a unit of the sixth decimal, which point files keep, and a little for rounding the coordinate itself.
constexpr double kSixDecimals = 0.51e-6;

bool isFinite(const CXYZ& point);
double largestDifference(const CXYZ& a, const CXYZ& b);  // of x, y and z

// Reads the points of a file as leniently as the library. Throws DataError when the file cannot be
// opened, a coordinate is not finite, or all of them are 0; `axes` says in that message what x, y and z are.
void readPointFile(const std::filesystem::path& path, CArray<CXYZ, CXYZ&>& points, const char* axes);

// What came back of points that were written.
struct PointsBack {
    int count = 0;
    double coordinates = 0.0;  // largest difference, in the unit of the points
};

// Throws DataError when the number of points or a name has changed, or a coordinate by more than
// `tolerance`.
PointsBack comparePoints(const CArray<CXYZ, CXYZ&>& written, const CArray<CXYZ, CXYZ&>& back,
                         double tolerance, const std::filesystem::path& path);

#endif
