// The files of a scan job, written and read back.
#ifndef TOOLS_SCAN_SCAN_RECORDS_H
#define TOOLS_SCAN_SCAN_RECORDS_H

#include <filesystem>

#include "common/points.h"
#include "scan/scan_job.h"

// Both throw DataError when a file cannot be written or read, or comes back changed by more than the
// decimals that it keeps.

// The scan-area file, of version 1 or 2. Returns the largest difference of an angle, in degrees.
double recordArea(const CScanArea& area, const std::filesystem::path& path, int version);

struct SightsBack : PointsBack {
    double angles = 0.0;  // largest difference, in degrees
};

// The versioned scan file of the points inside: first is the direction, second the zenith angle, the text the
// image that the point is on.
SightsBack recordPointsInside(const ScanJob& job, const std::filesystem::path& path,
                              const Progress& progress);

#endif
