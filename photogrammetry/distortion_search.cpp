// One pass looks at the 25 points of a grid around the best one so far. They do not depend on each other, so
// they are computed in lanes; then that one is taken which looking at them one after the other would have
// ended with: the first that is accepted, else the first of the best. Three times as fast as one by one with
// AVX-512, twice with SSE2.
#include "photogrammetry/distortion_search.h"

#include "photogrammetry/distortion_model.h"
#include "platform/framework/lanes.h"

namespace fieldscan {
namespace FIELDSCAN_KERNELS {

namespace {

constexpr int kMostPasses = 100;
constexpr int kGridSide = 5;  // half a search radius apart, so the grid reaches one radius to every side
constexpr int kGrid = kGridSide * kGridSide;
constexpr int kRegisters = (kGrid + kLanes - 1) / kLanes;
constexpr int kRoom = kRegisters * kLanes;

// Columns and rows of the grid's points; the room left repeats the last one, which changes nothing.
struct GridSteps {
    alignas(64) double column[kRoom];
    alignas(64) double row[kRoom];
    constexpr GridSteps() : column(), row() {
        for (int k = 0; k < kRoom; ++k) {
            const int point = k < kGrid ? k : kGrid - 1;
            const int above = point / kGridSide;
            column[k] = point - above * kGridSide;
            row[k] = above;
        }
    }
};
constexpr GridSteps kSteps;

template <DIST_MODEL model>
struct Search {
    const double* parameters;
    double x, y, accepted;

    template <class Number>
    Number errorAt(Number u, Number v) const {
        Number dx, dy;
        distortionAt(model, parameters, u, v, dx, dy);
        const Number ey = v + dy - y;
        const Number ex = u + dx - x;
        return ey * ey + ex * ex;
    }

    // Moves `best` to the best point of the grid around it; false when none is better, which NaN never is.
    bool improve(Undistorted& best) const {
        Lanes errors[kRegisters];
        const double s = __builtin_sqrt(best.e);
        const double h = s * 0.5;
        const double left = best.u - s, bottom = best.v - s;
        Lanes smallest = all(best.e);
        for (int r = 0; r < kRegisters; ++r) {
            errors[r] = errorAt(left + load(kSteps.column + r * kLanes) * h,
                                bottom + load(kSteps.row + r * kLanes) * h);
            smallest = errors[r] < smallest ? errors[r] : smallest;
        }
        const double e = least(smallest);
        if (!(e < best.e))
            return false;
        const double limit = e <= accepted ? accepted : e;
        unsigned int points = 0;  // at most the limit
        for (int r = 0; r < kRegisters; ++r)
            points |= atMost(errors[r], limit) << r * kLanes;
        const int taken = __builtin_ctz(points);
        best = {left + kSteps.column[taken] * h, bottom + kSteps.row[taken] * h, e};
        if (e <= accepted)  // not so as a rule: the next pass can begin with e
            best.e = errors[taken / kLanes][taken % kLanes];
        return true;
    }

    Undistorted from(double u, double v) const {
        Undistorted best = {u, v, errorAt(u, v)};
        for (int pass = 0; pass < kMostPasses && !(best.e <= accepted); ++pass)
            if (!improve(best))
                break;
        return best;
    }
};

}  // namespace

Undistorted searchUndistorted(DIST_MODEL model, const double* parameters, double x, double y,
                              double accepted) {
    double dx, dy;
    distortionAt(model, parameters, x, y, dx, dy);
    const double u = x - dx, v = y - dy;
    switch (model) {
        case DIST_RADIAL4:
            return Search<DIST_RADIAL4>{parameters, x, y, accepted}.from(u, v);
        case DIST_RADIAL2_TANGENTIAL2:
            return Search<DIST_RADIAL2_TANGENTIAL2>{parameters, x, y, accepted}.from(u, v);
        case DIST_RADIAL3_TANGENTIAL2:
            return Search<DIST_RADIAL3_TANGENTIAL2>{parameters, x, y, accepted}.from(u, v);
        case DIST_POLY8:
            return Search<DIST_POLY8>{parameters, x, y, accepted}.from(u, v);
        case DIST_NONE:
            break;
    }
    return Search<DIST_NONE>{parameters, x, y, accepted}.from(u, v);
}

}  // namespace FIELDSCAN_KERNELS
}  // namespace fieldscan
