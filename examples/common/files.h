// Files and points as the example programs handle them.
#ifndef EXAMPLES_COMMON_FILES_H
#define EXAMPLES_COMMON_FILES_H

#include <fieldscan/framework/array.h>
#include <fieldscan/points.h>

#include <filesystem>
#include <string>

// Half a unit of the sixth decimal, which point files keep, and a little for the arithmetic on top of it.
constexpr double kSixDecimals = 0.51e-6;

CString libraryPath(const std::filesystem::path& path);

// Throws std::runtime_error with a text for the operator, as everything here that fails does.
[[noreturn]] void fail(const std::filesystem::path& path, const std::string& what);

void makeFolder(const std::filesystem::path& path);

// The points of a file, at least one of them with coordinates. `axes` is what a message says about them.
void readPoints(const std::filesystem::path& path, CArray<CXYZ, CXYZ&>& points, const char* axes);

bool isFinite(const CXYZ& point);
double difference(const CXYZ& a, const CXYZ& b);  // the largest of a coordinate

#endif
