// The inverse of a distortion by search.
#ifndef FIELDSCAN_PHOTOGRAMMETRY_DISTORTION_SEARCH_H
#define FIELDSCAN_PHOTOGRAMMETRY_DISTORTION_SEARCH_H

#include <fieldscan/distortion.h>

#include "numerics/instruction_set.h"

namespace fieldscan {

// An undistorted point, and whether its distorted position is near enough to the wanted one.
struct Undistorted {
    double u;
    double v;
    bool accepted;
};

// The best point that the search of CDist::CalDistInv finds for the distorted (x, y). It ends at the first
// point whose squared distance is at most `accepted`, or when it finds no better one.
FIELDSCAN_IN_EACH_SET(Undistorted searchUndistorted(DIST_MODEL model, const double* parameters, double x,
                                                    double y, double accepted);)

}  // namespace fieldscan

#endif
