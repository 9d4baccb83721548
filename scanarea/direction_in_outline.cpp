// Tests of points against an outline in horizontal angle and elevation.
#include <fieldscan/scan_area.h>
#include <fieldscan/survey.h>

#include <cmath>
#include <vector>

#include "geometry/angle_constants.h"
#include "platform/framework/line_text.h"
#include "polyline/edge_bands.h"
#include "survey/angle_difference.h"

using namespace fieldscan;

namespace {

// The horizontal angle of the outline's leftmost vertex, which is the one that GetAngleRange finds: the runs
// of vertices between the wraps at the zero direction count unless they follow a wrap to zero. The run that
// begins with the first vertex is the end of the last one. Wraps are found in radians, but the angle itself
// does not pass through them: one in ten would come back a rounding step high, and the leftmost vertex would
// lie 360 degrees to the right of itself.
double leftEdge(const CVertex* vertices, int n) {
    constexpr double kNone = 360.0 * kDegreesPerRadian;  // where the search of GetAngleRange begins
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

// An edge from p to q, by the elevations of its ends above the point. NaN passes nothing.
bool passesElevation(double dp, double dq) { return (dp <= 0.0 && dq > 0.0) || (dp > 0.0 && dq <= 0.0); }

// Where such an edge, with its ends xp and xq right of the left edge, passes the point's elevation.
double crossingOf(double dp, double dq, double xp, double xq) {
    const double width = (dq - dp) * -1.0;  // not 0: of dp and dq one is positive
    return (xq - xp) / width * dp + xp;
}

// IsPolyInside of many directions; at 1000 vertices 1/20 of the time for 1000 directions. False where the
// outline is higher than bands can have it, or an elevation is not finite, and then nothing is done.
bool areInBands(const CPolyline& outline, const CArray<double, double>& h, const CArray<double, double>& v,
                CArray<int, int>& inside) {
    const std::size_t n = static_cast<std::size_t>(outline.GetVertexSize());
    const CVertex* vertices = outline.vertices.GetData();
    const double left = reducedAngle(leftEdge(vertices, outline.GetVertexSize()));
    const double middle = reducedAngle(vertices[0].y);
    // Above the first vertex. Where no two differ by half a turn, an edge passes the elevations between its
    // ends and those opposite to them.
    constexpr double kHighest = 89.0;
    constexpr double kSlack = 1e-9;  // more than the roundings of differences of angles
    std::vector<double> horizontals(n), elevations(n), heights(n);
    for (std::size_t i = 0; i < n; ++i) {
        horizontals[i] = clockwiseDifference(left, reducedAngle(vertices[i].x));
        elevations[i] = reducedAngle(vertices[i].y);
        heights[i] = angleDifference(middle, elevations[i]);
        if (!(std::fabs(heights[i]) <= kHighest))
            return false;
    }
    const EdgeBands bands(heights, kSlack);
    for (int k = 0; k < h.GetSize(); ++k) {
        const double point = clockwiseDifference(left, reducedAngle(h[k]));
        const double elevation = reducedAngle(v[k]);
        int crossings = 0;
        const auto count = [&](std::size_t i) {
            const std::size_t from = startOfEdge(i, n);
            const double dp = angleDifference(elevation, elevations[from]);
            const double dq = angleDifference(elevation, elevations[i]);
            if (passesElevation(dp, dq))
                crossings += crossingOf(dp, dq, horizontals[from], horizontals[i]) >= point;
        };
        const double height = angleDifference(middle, elevation);
        bands.visit(height, count);
        bands.visit(height > 0.0 ? height - 180.0 : height + 180.0, count);
        inside[k] = crossings % 2;
    }
    return true;
}

}  // namespace

int CCalcXYZHV::GetAngleRange(const CPolyline& outline, double& hLeft, double& hRight, double& vTop,
                              double& vBottom) {
    CScanArea area;
    const int n = outline.GetVertexSize();
    if (!zeroIfOutOfMemory([&] { return area.outlineAngles.SetSize(n), 1; }))
        return 0;
    for (int k = 0; k < n; ++k) {
        const CVertex& vertex = outline.vertices[k];
        area.outlineAngles[k].SetWPK(AngleH0toZ0(vertex.y) * kRadiansPerDegree, 0.0,
                                     vertex.x * kRadiansPerDegree);
    }
    area.CalPolylineTopLeftBottomRight();
    hLeft = area.areaAngle1.kappa * kDegreesPerRadian;
    hRight = area.areaAngle2.kappa * kDegreesPerRadian;
    vTop = AngleZ0toH0(area.areaAngle1.omega * kDegreesPerRadian);
    vBottom = AngleZ0toH0(area.areaAngle2.omega * kDegreesPerRadian);
    return 1;
}

// Reads the outline twice and copies nothing. A vertical difference is formed once a vertex, horizontal ones
// for the edges at the point's elevation alone: 20 to 40 times as fast as edge by edge with everything.
int CCalcXYZHV::IsPolyInside(const CPolyline& outline, double h, double v) {
    const int n = outline.GetVertexSize();
    if (n < 1)
        return 0;
    const CVertex* vertices = outline.vertices.GetData();
    const double left = reducedAngle(leftEdge(vertices, n));
    const double point = clockwiseDifference(left, reducedAngle(h));
    const double elevation = reducedAngle(v);
    const CVertex* p = &vertices[n - 1];
    double dp = angleDifference(elevation, reducedAngle(p->y));
    int crossings = 0;
    for (int i = 0; i < n; ++i) {
        const CVertex* q = &vertices[i];
        const double dq = angleDifference(elevation, reducedAngle(q->y));
        if (passesElevation(dp, dq)) {
            const double xp = clockwiseDifference(left, reducedAngle(p->x));
            const double xq = clockwiseDifference(left, reducedAngle(q->x));
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
        const bool bandsPay = outline.GetVertexSize() >= 8 && points >= 16;
        if (!bandsPay || !areInBands(outline, h, v, inside))
            for (int k = 0; k < points; ++k)
                inside[k] = IsPolyInside(outline, h[k], v[k]);
        return 1;
    });
    if (!done)
        inside.RemoveAll();
    return done;
}
