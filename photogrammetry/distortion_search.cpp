// The search of CDist::CalDistInv. A pass looks at the 25 points of a grid around the best point so far. They
// are computed in lanes; then the first accepted one is taken, else the first of the best, as when they are
// looked at one after the other. That takes a third of the time with AVX-512, half with SSE2.
//
// Most passes compute only four of the 25, in 0.65 of the time with AVX-512, 0.43 with SSE2:
//
//   c  the best point so far                      m  vector by which its distorted position misses the target
//   s  |m|, the search radius                     t  c - m, on the circle of radius s around c
//   L  Lipschitz constant of the distortion       p  a point of the grid
//
// p misses by | |p - t| +- L |p - c| |. With L <= 1/8 and t anywhere on the circle, the best corner of the
// grid cell around t misses by at least 0.067 s less than every point that is no corner of it, and these miss
// by more than 0.34 s. (Both are smallest where t is 30 degrees from a line of the grid, on the edge of its
// cell.) So only a corner can be taken.
#include "photogrammetry/distortion_search.h"

#include <cmath>
#include <limits>

#include "numerics/lanes.h"
#include "photogrammetry/distortion_model.h"

namespace fieldscan {
namespace FIELDSCAN_KERNELS {

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr int kMostPasses = 100;
constexpr double kSlope = 0.125;  // the greatest L for which four points are enough
constexpr int kGridSide = 5;      // s / 2 apart: the grid reaches s to every side
constexpr int kCellSide = 2;      // corners of a cell of the grid

// Columns and rows of side x side points of the grid, from column and row `first` on. Lanes that are left
// repeat the last point, which changes nothing.
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
// Cells along one axis: left of the middle (or below), the outermost to that side; right of it, the
// outermost.
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

    // Index in kCells of the cell around t if point k becomes the best one; `miss` is one component of m.
    template <int registers>
    static int cellOf(const Lanes (&miss)[registers], const Lanes (&errors)[registers], int k) {
        unsigned int right = 0, outermost = 0;
        for (int r = 0; r < registers; ++r) {
            right |= atMost(miss[r], 0.0) << r * kLanes;
            outermost |= atMost(errors[r] - 4.0 * miss[r] * miss[r], 0.0) << r * kLanes;
        }
        return static_cast<int>((right >> k & 1) * 2 + (outermost >> k & 1));
    }

    // Moves `best` to the best point at these columns and rows of the grid around it; false when none is
    // better. NaN is never better.
    template <int side>
    bool improve(Best& best, const GridSteps<side>& columns, const GridSteps<side>& rows) const {
        constexpr int registers = GridSteps<side>::kRegisters;
        Lanes ex[registers], ey[registers], errors[registers];
        const double s = std::sqrt(best.e);
        const double h = s * 0.5;
        const double left = best.u - s, bottom = best.v - s;
        Lanes smallest = broadcast(best.e);
        for (int r = 0; r < registers; ++r) {
            errors[r] = errorAt(left + load(columns.column + r * kLanes) * h,
                                bottom + load(rows.row + r * kLanes) * h, ex[r], ey[r]);
            smallest = smaller(errors[r], smallest);
        }
        const double e = least(smallest);
        if (!(e < best.e))
            return false;
        unsigned int acceptable = 0, smallestOnes = 0;
        for (int r = 0; r < registers; ++r) {
            acceptable |= atMost(errors[r], accepted) << r * kLanes;
            smallestOnes |= atMost(errors[r], e) << r * kLanes;
        }
        const int taken = lowestOne(acceptable != 0 ? acceptable : smallestOnes);
        best = {left + columns.column[taken] * h, bottom + rows.row[taken] * h, e, 0, 0};
        if (side == kCellSide) {
            best.column = cellOf(ex, errors, taken);
            best.row = cellOf(ey, errors, taken);
        }
        return true;
    }

    // While e is above this, only a corner of the cell around t can be taken.
    double leastErrorForCells(const Best& first) const {
        // No best point misses by more than the first one. So all are within 2 s / (1 - L) = 2.3 s of it, and
        // the grid reaches sqrt(2) s further.
        static_assert(2.0 / (1.0 - kSlope) + 1.4143 < 4.0);
        const double s = std::sqrt(first.e);
        const double u = std::fabs(first.u) + 4.0 * s, v = std::fabs(first.v) + 4.0 * s;
        if (!(distortionSlope(model, parameters, u, v) <= kSlope))
            return kInfinity;
        // Rounding changes the misses by less than 20 x 2^-53 of the coordinates: 0.04 s for the least s
        // here, less than 0.067 s. 1e-280: denormal squares have lost digits.
        static_assert(20.0 * 0x1p-53 < 0.04 * 0x1p-44);
        const double leastS = (u + v) * 0x1p-44;
        const double exact = leastS * leastS + 1e-280;
        // (0.34 s)^2 > accepted, or a point outside the cell could be accepted first.
        static_assert(0.34 * 0.34 * 12.0 > 1.0);
        const double noneAccepted = 12.0 * accepted;
        return noneAccepted > exact ? noneAccepted : exact;
    }

    Undistorted searchFrom(double u, double v) const {
        Lanes ex[1], ey[1];
        const Lanes e[1] = {errorAt(broadcast(u), broadcast(v), ex[0], ey[0])};
        Best best = {u, v, e[0][0], cellOf(ex, e, 0), cellOf(ey, e, 0)};
        const double leastError = leastErrorForCells(best);
        for (int pass = 0; pass < kMostPasses && !(best.e <= accepted); ++pass)
            if (!(best.e > leastError ? improve(best, kCells[best.column], kCells[best.row])
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
            return Search<DIST_RADIAL4>{parameters, x, y, accepted}.searchFrom(u, v);
        case DIST_RADIAL2_TANGENTIAL2:
            return Search<DIST_RADIAL2_TANGENTIAL2>{parameters, x, y, accepted}.searchFrom(u, v);
        case DIST_RADIAL3_TANGENTIAL2:
            return Search<DIST_RADIAL3_TANGENTIAL2>{parameters, x, y, accepted}.searchFrom(u, v);
        case DIST_POLY8:
            return Search<DIST_POLY8>{parameters, x, y, accepted}.searchFrom(u, v);
        case DIST_NONE:
            break;
    }
    return Search<DIST_NONE>{parameters, x, y, accepted}.searchFrom(u, v);
}

}  // namespace FIELDSCAN_KERNELS
}  // namespace fieldscan
