// The scan job as a picture: horizontal angle to the right, elevation upward.
#ifndef TOOLS_PICTURES_SCAN_PICTURE_H
#define TOOLS_PICTURES_SCAN_PICTURE_H

#include <filesystem>

#include "scan/scan_job.h"

// Writes an SVG file of the area with a margin around it. Returns how many points lie beyond that view: far
// ones are left out, because a view of all of them would leave little room for the area itself. Throws
// DataError when the file cannot be written.
int drawScanJob(const ScanJob& job, const std::filesystem::path& path);

#endif
