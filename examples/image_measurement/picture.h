// The image measurement as a picture: pixels to the right and downward.
#ifndef EXAMPLES_IMAGE_MEASUREMENT_PICTURE_H
#define EXAMPLES_IMAGE_MEASUREMENT_PICTURE_H

#include "measurement.h"

// Writes an SVG file of the image frame. Returns how many points and marks have no name in it, because the
// places around them are taken. Throws std::runtime_error when the file cannot be written.
int drawPicture(const Measurement& m, const std::filesystem::path& path);

#endif
