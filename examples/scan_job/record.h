// The files of a scan job, written and read back.
#ifndef EXAMPLES_SCAN_JOB_RECORD_H
#define EXAMPLES_SCAN_JOB_RECORD_H

#include "scan_job.h"

// What came back of the points, against what was written.
struct PointsBack {
    int count = 0;
    double coordinates = 0.0;  // largest difference, in the unit of the points
    double angles = 0.0;       // the same, in degrees
};

// Both throw std::runtime_error when a file cannot be written or read, or comes back changed by more than the
// decimals that it keeps.

// The scan-area file; returns the largest difference of an angle, in degrees.
double recordArea(const CScanArea& area, const std::filesystem::path& path);
// The versioned scan file of the points inside: first is the direction, second the zenith angle, the text the
// shot that the point is on.
PointsBack recordPointsInside(const ScanJob& job, const std::filesystem::path& path,
                              const Progress& progress);

#endif
