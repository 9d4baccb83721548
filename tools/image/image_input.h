// Camera, image points and orientation from files whose lines are in order, for lists of points.
#ifndef TOOLS_IMAGE_IMAGE_INPUT_H
#define TOOLS_IMAGE_IMAGE_INPUT_H

#include "formats/text_file.h"
#include "image/measurement.h"

// Each throws DataError with the line that is faulty.
void readCheckedCamera(const TextFile& file, Measurement& m);
// An image-coordinate file, or a point file of lines "name,x,y,z" in pixels, of which z is left out. Points
// with the name of a fiducial mark are the marks.
void readCheckedImagePoints(const TextFile& file, Measurement& m);
// An exterior orientation file, or two lines: "name,x,y,z", the projection centre, and
// "name,omega,phi,kappa" in degrees.
void readCheckedOrientation(const TextFile& file, Measurement& m);

#endif
