// The files of an image measurement, written and read back.
#ifndef TOOLS_IMAGE_IMAGE_RECORDS_H
#define TOOLS_IMAGE_IMAGE_RECORDS_H

#include <filesystem>

#include "common/points.h"
#include "image/measurement.h"

// Both throw DataError when a file cannot be written or read, or comes back changed by more than the decimals
// that it keeps.

// The photo coordinates of all measured points, millimetres, as a point file.
PointsBack recordPhotoPoints(Measurement& m, const std::filesystem::path& path);
// The object points that lie in the image, pixels, as an image-coordinate file.
PointsBack recordProjectedPoints(Measurement& m, const std::filesystem::path& path);

#endif
