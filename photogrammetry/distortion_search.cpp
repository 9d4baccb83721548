// One pass looks at the 25 points of a grid around the best one so far. They do not depend on each other, so
// they are computed in lanes; then that one is taken which looking at them one after the other would have
// ended with: the first that is accepted, else the first of the best. Three times as fast as one by one with
// AVX-512, twice with SSE2.
//
// Most passes need four of the 25 alone: 0.6 of the time with AVX-512, 0.4 with SSE2. The distorted best
// point c misses the wanted one by a vector m of length s, the search radius; t = c - m lies on the circle of
// that radius around c. If the distortions of two points differ by at most L times their distance, a point p
// of the grid misses by p - t give or take L |p - c|. For L = 1/8, the best of the four points around t then
// misses by 0.067 s less than any point that is not one of them, and these miss by 0.34 s or more: the least
// over all t of the circle.
#include "photogrammetry/distortion_search.h"

#include "photogrammetry/distortion_model.h"
#include "platform/framework/lanes.h"

namespace fieldscan {
namespace FIELDSCAN_KERNELS {

namespace {

constexpr int kMostPasses = 100;
constexpr int kGridSide = 5;  // half a search radius apart, so the grid reaches one radius to every side
constexpr int kCellSide = 2;

// Columns and rows of side x side points of the grid; the room left repeats the last one, which changes
// nothing.
template <int side>
struct GridSteps {
    static constexpr int kPoints = side * side;
    static constexpr int kRegisters = (kPoints + kLanes - 1) / kLanes;
    static constexpr int kRoom = kRegisters * kLanes;
    alignas(64) double column[kRoom];
    alignas(64) double row[kRoom];
    constexpr explicit GridSteps(int first) : column(), row() {
        for (int k = 0; k < kRoom; ++k) {
            const int point = k < kPoints ? k : kPoints - 1;
            const int above = point / side;
            column[k] = first + point - above * side;
            row[k] = first + above;
        }
    }
};
constexpr GridSteps<kGridSide> kGrid(0);
// By where t lies from c: one to two steps to the right or above, or less, the same to the left or below.
enum Side { kRight, kFarRight, kLeft, kFarLeft };
constexpr GridSteps<kCellSide> kCells[] = {GridSteps<kCellSide>(1), GridSteps<kCellSide>(0),
                                           GridSteps<kCellSide>(2), GridSteps<kCellSide>(3)};

struct Best {
    double u, v, e;
    int column, row;  // of kCells, for the next pass
};

template <DIST_MODEL model>
struct Search {
    const double* parameters;
    double x, y, accepted;

    // The squared length of (ex, ey), by which the distorted (u, v) misses the wanted point.
    template <class Number>
    Number errorAt(Number u, Number v, Number& ex, Number& ey) const {
        Number dx, dy;
        distortionAt(model, parameters, u, v, dx, dy);
        ey = v + dy - y;
        ex = u + dx - x;
        return ey * ey + ex * ex;
    }

    // Which of kCells has t of point k between its columns, or rows, if that misses by `miss` in this
    // direction.
    template <int registers>
    static int cellOf(const Lanes (&miss)[registers], const Lanes (&errors)[registers], int k) {
        unsigned int ahead = 0, far = 0;
        for (int r = 0; r < registers; ++r) {
            ahead |= atMost(miss[r], 0.0) << r * kLanes;
            far |= atMost(errors[r] - 4.0 * miss[r] * miss[r], 0.0) << r * kLanes;
        }
        return static_cast<int>((ahead >> k & 1) * 2 + (far >> k & 1));
    }

    // Moves `best` to the best of the points at these steps of the grid around it; false when none is better,
    // which NaN never is.
    template <int side>
    bool improve(Best& best, const GridSteps<side>& columns, const GridSteps<side>& rows) const {
        constexpr int registers = GridSteps<side>::kRegisters;
        Lanes ex[registers], ey[registers], errors[registers];
        const double s = __builtin_sqrt(best.e);
        const double h = s * 0.5;
        const double left = best.u - s, bottom = best.v - s;
        Lanes smallest = all(best.e);
        for (int r = 0; r < registers; ++r) {
            errors[r] = errorAt(left + load(columns.column + r * kLanes) * h,
                                bottom + load(rows.row + r * kLanes) * h, ex[r], ey[r]);
            smallest = errors[r] < smallest ? errors[r] : smallest;
        }
        const double e = least(smallest);
        if (!(e < best.e))
            return false;
        unsigned int firsts = 0, bests = 0;
        for (int r = 0; r < registers; ++r) {
            firsts |= atMost(errors[r], accepted) << r * kLanes;
            bests |= atMost(errors[r], e) << r * kLanes;
        }
        const int taken = __builtin_ctz(firsts != 0 ? firsts : bests);
        best = {left + columns.column[taken] * h, bottom + rows.row[taken] * h, e, 0, 0};
        if (side == kCellSide) {
            best.column = cellOf(ex, errors, taken);
            best.row = cellOf(ey, errors, taken);
        }
        return true;
    }

    // The e above which the cell around t is enough, from `first` on.
    double enoughForCells(const Best& first) const {
        // The best points stay within 2 s / (1 - L) of the first, since none misses by more, and the grid
        // reaches 1.42 s further.
        const double s = __builtin_sqrt(first.e);
        const double u = __builtin_fabs(first.u) + 4.0 * s, v = __builtin_fabs(first.v) + 4.0 * s;
        if (!(distortionSlope(model, parameters, u, v) <= 0.125))
            return __builtin_inf();
        // Rounding moves the misses that are compared by less than 20 x 2^-53 of the coordinates: 0.04 s at
        // the least s here. 1e-280: squares that are denormal have lost digits.
        const double leastS = (u + v) * 0x1p-44;
        const double least = leastS * leastS + 1e-280;
        // Else a point outside the cell could be accepted before it.
        const double notAccepted = 12.0 * accepted;
        return notAccepted > least ? notAccepted : least;
    }

    Undistorted from(double u, double v) const {
        Lanes ex[1], ey[1];
        const Lanes e[1] = {errorAt(all(u), all(v), ex[0], ey[0])};
        Best near = {u, v, e[0][0], cellOf(ex, e, 0), cellOf(ey, e, 0)};
        int pass = 0;
        if (!(near.e <= accepted)) {
            const double enough = enoughForCells(near);
            for (; pass < kMostPasses && near.e > enough; ++pass)
                improve(near, kCells[near.column], kCells[near.row]);
        }
        Best best = near;
        while (pass++ < kMostPasses && !(best.e <= accepted) && improve(best, kGrid, kGrid)) {}
        return {best.u, best.v, best.e <= accepted};
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
