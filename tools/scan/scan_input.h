// Outline, area and station of a scan job, from files.
#ifndef TOOLS_SCAN_SCAN_INPUT_H
#define TOOLS_SCAN_SCAN_INPUT_H

#include <filesystem>

#include "formats/text_file.h"
#include "scan/scan_job.h"

// An outline is a point file of lines "name,horizontal angle,zenith angle,0" in degrees. Throws
// DataError when the file cannot be opened or a line holds no direction.
void readOutline(const std::filesystem::path& path, ScanJob& job);

// The first point of an occupied-point file. Throws DataError.
CXYZ readStation(const std::filesystem::path& path);

// A measured area, for points or for a picture, from a scan-area file of either version or from an outline.
// Throws DataError when a line is faulty, the area fails its checks, or the file has no outline though
// `needsOutline`.
void readArea(const TextFile& file, ScanJob& job, bool needsOutline);

#endif
