// One pass looks at the 25 points of a grid around the best one so far. They do not depend on each other, so
// they are computed in lanes; then that one is taken which looking at them one after the other would have
// ended with: the first that is accepted, else the first of the best. Three times as fast as one by one with
// AVX-512, twice with SSE2.
//
// Most passes compute four of the 25 alone, which takes 0.65 of the time with AVX-512, 0.43 with SSE2. Let
// the distorted best point c miss the wanted one by a vector m, whose length s is the search radius. Then
// t = c - m is on the circle of that radius around c. Where the distortions of two points differ by at most
// L times their distance, a point p of the grid misses by p - t, give or take L |p - c| in length. With L of
// 1/8 and t anywhere on the circle, the best corner of the grid's cell with t in it misses by at least
// 0.067 s less than every point but the four corners, and these others by more than 0.34 s (the least where
// t is 30 degrees from a line of the grid, on the edge of its cell), so that none of them can be taken.
#include "photogrammetry/distortion_search.h"

#include "numerics/lanes.h"
#include "photogrammetry/distortion_model.h"

namespace fieldscan {
namespace FIELDSCAN_KERNELS {

namespace {

constexpr int kMostPasses = 100;
constexpr int kGridSide = 5;  // half a search radius apart, so the grid reaches one radius to every side
constexpr int kCellSide = 2;  // the points at the corners of a cell of the grid

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
// The cell left of the middle, or below it, and the outermost to that side; the same to the right, or above.
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

    // Of kCells, the one with t in it if point k becomes the best one, which misses by `miss` in this
    // direction.
    template <int registers>
    static int cellOf(const Lanes (&miss)[registers], const Lanes (&errors)[registers], int k) {
        unsigned int right = 0, outermost = 0;
        for (int r = 0; r < registers; ++r) {
            right |= atMost(miss[r], 0.0) << r * kLanes;
            outermost |= atMost(errors[r] - 4.0 * miss[r] * miss[r], 0.0) << r * kLanes;
        }
        return static_cast<int>((right >> k & 1) * 2 + (outermost >> k & 1));
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
        Lanes smallest = broadcast(best.e);
        for (int r = 0; r < registers; ++r) {
            errors[r] = errorAt(left + load(columns.column + r * kLanes) * h,
                                bottom + load(rows.row + r * kLanes) * h, ex[r], ey[r]);
            smallest = errors[r] < smallest ? errors[r] : smallest;
        }
        const double e = least(smallest);
        if (!(e < best.e))
            return false;
        unsigned int fit = 0, equal = 0;
        for (int r = 0; r < registers; ++r) {
            fit |= atMost(errors[r], accepted) << r * kLanes;
            equal |= atMost(errors[r], e) << r * kLanes;
        }
        const int taken = __builtin_ctz(fit != 0 ? fit : equal);
        best = {left + columns.column[taken] * h, bottom + rows.row[taken] * h, e, 0, 0};
        if (side == kCellSide) {
            best.column = cellOf(ex, errors, taken);
            best.row = cellOf(ey, errors, taken);
        }
        return true;
    }

    // As long as e is above this, only a corner of the cell around t can be taken.
    double leastForCells(const Best& first) const {
        // The best points stay within 2 s / (1 - L) of the first one, since none misses by more than that
        // does, and the grid reaches 1.42 s further.
        const double s = __builtin_sqrt(first.e);
        const double u = __builtin_fabs(first.u) + 4.0 * s, v = __builtin_fabs(first.v) + 4.0 * s;
        if (!(distortionSlope(model, parameters, u, v) <= 0.125))
            return __builtin_inf();
        // Rounding moves the misses that are compared by less than 20 x 2^-53 of the coordinates, which is
        // 0.04 s at the least s here. 1e-280: denormal squares have lost digits.
        const double leastS = (u + v) * 0x1p-44;
        const double exact = leastS * leastS + 1e-280;
        // Nearer than 0.34 s a point outside the cell could be accepted before those of the cell.
        const double noneAccepted = 12.0 * accepted;
        return noneAccepted > exact ? noneAccepted : exact;
    }

    Undistorted from(double u, double v) const {
        Lanes ex[1], ey[1];
        const Lanes e[1] = {errorAt(broadcast(u), broadcast(v), ex[0], ey[0])};
        Best best = {u, v, e[0][0], cellOf(ex, e, 0), cellOf(ey, e, 0)};
        const double enough = leastForCells(best);
        for (int pass = 0; pass < kMostPasses && !(best.e <= accepted); ++pass)
            if (!(best.e > enough ? improve(best, kCells[best.column], kCells[best.row])
                                  : improve(best, kGrid, kGrid)))
                break;
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
