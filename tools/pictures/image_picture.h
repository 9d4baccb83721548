// The image measurement as a picture: pixels to the right and downward.
#ifndef TOOLS_PICTURES_IMAGE_PICTURE_H
#define TOOLS_PICTURES_IMAGE_PICTURE_H

#include <filesystem>

#include "image/measurement.h"

// Writes an SVG file of the image frame. Returns how many points and marks have no name in it, because the
// places around them are taken. Throws DataError when the file cannot be written.
int drawImageMeasurement(const Measurement& m, const std::filesystem::path& path);

#endif
