// The inverse of a distortion, by search on a grid that shrinks (CDist::CalDistInv).
#ifndef FIELDSCAN_PHOTOGRAMMETRY_DISTORTION_SEARCH_H
#define FIELDSCAN_PHOTOGRAMMETRY_DISTORTION_SEARCH_H

#include <fieldscan/distortion.h>

#include "numerics/instruction_set.h"

namespace fieldscan {

struct Undistorted {
    double u;
    double v;
    bool accepted;  // its distorted position is near enough to the wanted one
};

// The best undistorted point for the distorted (x, y). The search ends at the first point whose distorted
// position misses (x, y) by at most sqrt(accepted), or when a pass finds no better one.
FIELDSCAN_IN_EACH_SET(Undistorted searchUndistorted(DIST_MODEL model, const double* parameters, double x,
                                                    double y, double accepted);)

}  // namespace fieldscan

#endif
