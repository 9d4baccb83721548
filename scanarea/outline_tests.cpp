// Tests of points against an outline in horizontal angle and elevation.
#include <fieldscan/scan_area.h>
#include <fieldscan/survey.h>

#include "geometry/angle_constants.h"
#include "platform/framework/line_text.h"

using namespace fieldscan;

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

int CCalcXYZHV::IsPolyInside(const CPolyline& outline, double h, double v) {
    const int n = outline.GetVertexSize();
    double left, right, top, bottom;
    if (n < 1 || GetAngleRange(outline, left, right, top, bottom) != 1)
        return 0;
    const double point = AngleDifference_Over0(left, h);
    int crossings = 0;
    for (int i = 0; i < n; ++i) {
        const CVertex& p = outline.vertices[i];
        const CVertex& q = outline.vertices[i == n - 1 ? 0 : i + 1];
        const double dp = AngleDifference(v, p.y);
        const double dq = AngleDifference(v, q.y);
        if (!((dp <= 0.0 && dq > 0.0) || (dp > 0.0 && dq <= 0.0)))
            continue;
        const double xp = AngleDifference_Over0(left, p.x);
        const double xq = AngleDifference_Over0(left, q.x);
        const double width = (dq - dp) * -1.0;
        const double crossing = width == 0.0 ? xp : (xq - xp) / width * dp + xp;
        if (crossing >= point)
            ++crossings;
    }
    return crossings % 2;
}
