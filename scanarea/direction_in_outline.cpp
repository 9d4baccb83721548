// Whether a direction is inside an outline: the crossing-number rule (Shimrat 1962) in the plane of
// horizontal angle, counted clockwise from the outline's left edge, and elevation.
#include <fieldscan/polyline.h>
#include <fieldscan/survey.h>

#include <cmath>
#include <vector>

#include "geometry/angle_constants.h"
#include "platform/framework/out_of_memory.h"
#include "polyline/edge_grid.h"
#include "survey/angle_difference.h"

using namespace fieldscan;

namespace {

// The horizontal angle of the outline's leftmost vertex, which GetAngleRange finds too: the smallest one of
// all vertices except those between a wrap to zero and the next wrap back. A run is what lies between two
// wraps; the first one is the end of the last one. Wraps are found in radians, as GetAngleRange finds them,
// but the angle itself stays in degrees: one in ten would come back from radians a rounding step larger, and
// the leftmost vertex would then be 360 degrees to the right of the left edge.
double leftEdgeOf(const CVertex* vertices, int n) {
    constexpr double kNone = 360.0 * kDegreesPerRadian;  // the start value of GetAngleRange
    enum { kUnknown, kAfterWrap, kBeforeWrap } side = kUnknown;
    double least = kNone, leastOfFirstRun = kNone, leastOfRun = kNone;
    const auto endRun = [&] {
        if (side == kUnknown)
            leastOfFirstRun = leastOfRun;
        else if (side == kBeforeWrap && leastOfRun < least)
            least = leastOfRun;
        leastOfRun = kNone;
    };
    double previous = vertices[n - 1].x * kRadiansPerDegree;
    for (int i = 0; i < n; ++i) {
        const double kappa = vertices[i].x * kRadiansPerDegree;
        const double step = kappa - previous;
        previous = kappa;
        if (std::fabs(step) >= kPi) {
            endRun();
            side = step < 0.0 ? kAfterWrap : kBeforeWrap;
        }
        if (vertices[i].x < leastOfRun)
            leastOfRun = vertices[i].x;
    }
    endRun();
    if (side != kAfterWrap && leastOfFirstRun < least)
        least = leastOfFirstRun;
    return least;
}

// True if an edge crosses the direction's elevation; dp, dq: elevations of its ends above the direction. NaN
// crosses nothing.
bool crossesElevation(double dp, double dq) { return (dp <= 0.0 && dq > 0.0) || (dp > 0.0 && dq <= 0.0); }

// Where such an edge crosses the direction's elevation, clockwise from the left edge; xp, xq: of its ends.
double crossingOf(double dp, double dq, double xp, double xq) {
    const double width = (dq - dp) * -1.0;  // not 0: just one of dp and dq is positive
    return (xq - xp) / width * dp + xp;
}

// IsPolyInside of many directions, each against the edges near it. False, with nothing done, if the outline
// is more than kMostAbove above or below its first vertex, or an angle is not finite.
bool testByGrid(const CPolyline& outline, const CArray<double, double>& h, const CArray<double, double>& v,
                CArray<int, int>& inside) {
    const std::size_t n = static_cast<std::size_t>(outline.GetVertexSize());
    if (n > EdgeGrid::kMostVertices)
        return false;
    const CVertex* vertices = outline.vertices.GetData();
    const double leftEdge = reducedAngle(leftEdgeOf(vertices, outline.GetVertexSize()));
    const double middle = reducedAngle(vertices[0].y);
    // Degrees. As no two vertices then differ by 180 in elevation, an edge crosses only the elevations
    // between its ends and those opposite to them.
    constexpr double kMostAbove = 89.0;
    constexpr double kSlack = 1e-9;  // degrees; more than the rounding of differences of angles
    std::vector<double> horizontals(n), elevations(n), heights(n);
    for (std::size_t i = 0; i < n; ++i) {
        horizontals[i] = clockwiseDifference(leftEdge, reducedAngle(vertices[i].x));
        elevations[i] = reducedAngle(vertices[i].y);
        heights[i] = angleDifference(middle, elevations[i]);
        if (!(std::isfinite(horizontals[i]) && std::fabs(heights[i]) <= kMostAbove))
            return false;
    }
    const EdgeGrid grid(horizontals, heights, kSlack, h.GetSize());
    for (int k = 0; k < h.GetSize(); ++k) {
        const double point = clockwiseDifference(leftEdge, reducedAngle(h[k]));
        const double elevation = reducedAngle(v[k]);
        const double height = angleDifference(middle, elevation);
        if (std::fabs(height) > kMostAbove + 1.0) {
            const double opposite = height > 0.0 ? height - 180.0 : height + 180.0;
            inside[k] = grid.reaches(opposite) ? CCalcXYZHV::IsPolyInside(outline, h[k], v[k]) : 0;
            continue;
        }
        inside[k] = grid.inside(point, height, [&](std::size_t i) {
            const std::size_t from = startOfEdge(i, n);
            const double dp = angleDifference(elevation, elevations[from]);
            const double dq = angleDifference(elevation, elevations[i]);
            const bool counts =
                crossesElevation(dp, dq) && crossingOf(dp, dq, horizontals[from], horizontals[i]) >= point;
            return EdgeGrid::Edge{dp <= 0.0, dq <= 0.0, counts};
        });
    }
    return true;
}

}  // namespace

// The difference in elevation is computed once per vertex, those in horizontal angle only for edges that
// cross the elevation: 20 to 40 times as fast as all of them for every edge.
int CCalcXYZHV::IsPolyInside(const CPolyline& outline, double h, double v) {
    const int n = outline.GetVertexSize();
    if (n < 1)
        return 0;
    const CVertex* vertices = outline.vertices.GetData();
    const double leftEdge = reducedAngle(leftEdgeOf(vertices, n));
    const double point = clockwiseDifference(leftEdge, reducedAngle(h));
    const double elevation = reducedAngle(v);
    const CVertex* p = &vertices[n - 1];
    double dp = angleDifference(elevation, reducedAngle(p->y));
    int crossings = 0;
    for (int i = 0; i < n; ++i) {
        const CVertex* q = &vertices[i];
        const double dq = angleDifference(elevation, reducedAngle(q->y));
        if (crossesElevation(dp, dq)) {
            const double xp = clockwiseDifference(leftEdge, reducedAngle(p->x));
            const double xq = clockwiseDifference(leftEdge, reducedAngle(q->x));
            crossings += crossingOf(dp, dq, xp, xq) >= point;
        }
        p = q;
        dp = dq;
    }
    return crossings % 2;
}

int CCalcXYZHV::IsPolyInside(const CPolyline& outline, const CArray<double, double>& h,
                             const CArray<double, double>& v, CArray<int, int>& inside) {
    const int points = h.GetSize();
    const int done = zeroIfOutOfMemory([&] {
        if (v.GetSize() != points)
            return 0;
        inside.SetSize(points);
        const bool gridPays = outline.GetVertexSize() >= 8 && points >= 16;
        if (!gridPays || !testByGrid(outline, h, v, inside))
            for (int k = 0; k < points; ++k)
                inside[k] = IsPolyInside(outline, h[k], v[k]);
        return 1;
    });
    if (!done)
        inside.RemoveAll();
    return done;
}
