// The distortion models (CDist; Brown 1971), for one point or for the points in the lanes of a register. The
// functions are static, since kernels must not share any (numerics/lanes.h).
#ifndef FIELDSCAN_PHOTOGRAMMETRY_DISTORTION_MODEL_H
#define FIELDSCAN_PHOTOGRAMMETRY_DISTORTION_MODEL_H

#include <fieldscan/distortion.h>

#include <cmath>

namespace fieldscan {

// Distortion (dx, dy) at (x, y) with parameters `p`.
template <class Number>
static inline void distortionAt(DIST_MODEL model, const double* p, Number x, Number y, Number& dx,
                                Number& dy) {
    const Number r2 = x * x + y * y;
    switch (model) {
        case DIST_RADIAL4: {
            const Number f = (((p[3] * r2 + p[2]) * r2 + p[1]) * r2 + p[0]) * r2;
            dx = f * x;
            dy = f * y;
            return;
        }
        case DIST_RADIAL2_TANGENTIAL2: {
            const Number g = p[0] * r2 + p[1] * (r2 * r2);
            dx = g * x + p[2] * (2.0 * x * x + r2) + 2.0 * p[3] * x * y;
            dy = g * y + p[3] * (2.0 * y * y + r2) + 2.0 * p[2] * x * y;
            return;
        }
        case DIST_RADIAL3_TANGENTIAL2: {
            const Number g = p[0] * r2 + p[1] * (r2 * r2) + p[2] * (r2 * r2 * r2);
            dx = g * x + p[3] * (2.0 * x * x + r2) + 2.0 * p[4] * x * y;
            dy = g * y + p[4] * (2.0 * y * y + r2) + 2.0 * p[3] * x * y;
            return;
        }
        case DIST_POLY8: {
            const Number g = p[0] * r2 + p[1] * (r2 * r2);
            dx = p[4] * x * y + p[5] * y * y + p[2] * x + p[3] * y + g * x;
            dy = g * y + p[6] * x * y + p[7] * x * x;
            return;
        }
        case DIST_NONE:
            break;
    }
    dx = Number();
    dy = Number();
}

// Lipschitz constant of the distortion where |x| <= `x` and |y| <= `y`: the distortions of two points differ
// by at most this times their distance. It is the sum of the terms' constants: (2 k + 1) r^2k of r^2k (x, y),
// 6 r of a decentering term.
static inline double distortionSlope(DIST_MODEL model, const double* p, double x, double y) {
    const auto size = [p](int i) { return std::fabs(p[i]); };
    const double r2 = x * x + y * y, r = x + y;  // or a little more
    switch (model) {
        case DIST_RADIAL4:
            return (((9.0 * size(3) * r2 + 7.0 * size(2)) * r2 + 5.0 * size(1)) * r2 + 3.0 * size(0)) * r2;
        case DIST_RADIAL2_TANGENTIAL2:
            return 3.0 * size(0) * r2 + 5.0 * size(1) * (r2 * r2) + 6.0 * (size(2) + size(3)) * r;
        case DIST_RADIAL3_TANGENTIAL2:
            return 3.0 * size(0) * r2 + 5.0 * size(1) * (r2 * r2) + 7.0 * size(2) * (r2 * r2 * r2) +
                   6.0 * (size(3) + size(4)) * r;
        case DIST_POLY8:
            return 3.0 * size(0) * r2 + 5.0 * size(1) * (r2 * r2) + size(2) + size(3) +
                   (size(4) + 2.0 * size(5) + size(6) + 2.0 * size(7)) * r;
        case DIST_NONE:
            break;
    }
    return 0.0;
}

}  // namespace fieldscan

#endif
