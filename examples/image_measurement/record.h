// The files of an image measurement, written and read back.
#ifndef EXAMPLES_IMAGE_MEASUREMENT_RECORD_H
#define EXAMPLES_IMAGE_MEASUREMENT_RECORD_H

#include "measurement.h"

// What came back of the points, against what was written.
struct PointsBack {
    int count = 0;
    double coordinates = 0.0;  // largest difference, in the unit of the points
};

// Both throw std::runtime_error when a file cannot be written or read, or comes back changed by more than the
// decimals that it keeps.

// The photo coordinates of all that was measured, millimetres, as a point file.
PointsBack recordPhotoPoints(Measurement& m, const std::filesystem::path& path);
// The object points that lie in the image, pixels, as an image-coordinate file.
PointsBack recordProjectedPoints(Measurement& m, const std::filesystem::path& path);

#endif
