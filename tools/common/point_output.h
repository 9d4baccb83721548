// Points that a subcommand computes, as a file.
#ifndef TOOLS_COMMON_POINT_OUTPUT_H
#define TOOLS_COMMON_POINT_OUTPUT_H

#include <fieldscan/framework/array.h>
#include <fieldscan/points.h>

#include <string>

// Writes a point file, or with codes a scan result file, in the code page in use; "-" is standard output.
// Throws DataError.
void writePoints(CArray<CXYZ, CXYZ&>& points, const std::string& out);

#endif
