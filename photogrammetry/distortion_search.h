// The inverse of a distortion by search.
#ifndef FIELDSCAN_PHOTOGRAMMETRY_DISTORTION_SEARCH_H
#define FIELDSCAN_PHOTOGRAMMETRY_DISTORTION_SEARCH_H

#include <fieldscan/distortion.h>

#include "platform/framework/instruction_set.h"

namespace fieldscan {

// An undistorted point, and the squared distance of its distorted position from the wanted one.
struct Undistorted {
    double u;
    double v;
    double e;
};

// The best point that the search of CDist::CalDistInv finds for the distorted (x, y). It ends at the first
// point whose e is at most `accepted`, or when it finds no better one.
FIELDSCAN_IN_EACH_SET(Undistorted searchUndistorted(DIST_MODEL model, const double* parameters, double x,
                                                    double y, double accepted);)

}  // namespace fieldscan

#endif
