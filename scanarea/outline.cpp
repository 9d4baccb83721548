// The outline of a scan area: its crossing of the zero direction, its extreme directions, and the outline of
// the full circle.
#include <fieldscan/scan_area.h>
#include <fieldscan/survey.h>

#include <cmath>
#include <limits>

#include "geometry/angle_constants.h"
#include "platform/framework/out_of_memory.h"

using namespace fieldscan;

namespace {

constexpr double kHalfTurn = kRadiansPerDegree * 180.0;
static_assert(kHalfTurn == kPi, "the wrap threshold is half a turn to the last bit");

using Angles = CArray<CWPK, CWPK&>;
using Indices = CArray<int, int&>;

// The horizontal angle of vertex i less that of the vertex before it.
double stepTo(const Angles& outline, int i) {
    const int n = outline.GetSize();
    return outline[i].kappa - outline[i > 0 ? i - 1 : n - 1].kappa;
}

bool wrapsToZero(double step) { return step < 0.0 && std::fabs(step) >= kHalfTurn; }

bool wrapsFromZero(double step) { return step > 0.0 && std::fabs(step) >= kHalfTurn; }

int firstAfterWrap(const Angles& outline) {
    for (int i = 0; i < outline.GetSize(); ++i)
        if (wrapsToZero(stepTo(outline, i)))
            return i;
    return 0;
}

// Calls visit(i, afterWrap) for all indices in ring order, from the first vertex after a wrap to zero on.
// afterWrap: true between a wrap to zero and the next wrap back.
template <class Visit>
void visitSides(const Angles& outline, Visit visit) {
    const int n = outline.GetSize();
    const int start = firstAfterWrap(outline);
    bool afterWrap = false;
    for (int k = 0; k < n; ++k) {
        const int i = start < n - k ? start + k : start - (n - k);
        const double step = stepTo(outline, i);
        if (wrapsToZero(step))
            afterWrap = true;
        else if (wrapsFromZero(step))
            afterWrap = false;
        visit(i, afterWrap);
    }
}

double smallerOf(double least, double angle) { return least >= angle ? angle : least; }

double largerOf(double most, double angle) { return most <= angle ? angle : most; }

}  // namespace

int CScanArea::CheckZeroCross() const {
    for (int i = 0; i < outlineAngles.GetSize(); ++i)
        if (std::fabs(stepTo(outlineAngles, i)) >= kHalfTurn)
            return 1;
    return 0;
}

void CScanArea::DivideZeroCross(Indices* afterWrap, Indices* beforeWrap) const {
    if (afterWrap)
        afterWrap->RemoveAll();
    if (beforeWrap)
        beforeWrap->RemoveAll();
    visitSides(outlineAngles, [&](int i, bool isAfterWrap) {
        if (Indices* side = isAfterWrap ? afterWrap : beforeWrap)
            side->Add(i);
    });
}

int CScanArea::GetMinmumHAngleIndex() const {
    double best = std::numeric_limits<double>::max();
    int index = -1;
    for (int k = 0; k < outlineAngles.GetSize(); ++k) {
        if (best >= outlineAngles[k].omega) {
            best = outlineAngles[k].omega;
            index = k;
        }
    }
    return index;
}

int CScanArea::CalPolylineTopLeftBottomRight() {
    const int n = outlineAngles.GetSize();
    double left = 360.0;
    double right = -1.0;
    double top = 360.0;
    double bottom = -1.0;
    if (CheckZeroCross() == 1) {
        visitSides(outlineAngles, [&](int i, bool isAfterWrap) {
            if (isAfterWrap)
                right = largerOf(right, outlineAngles[i].kappa);
            else
                left = smallerOf(left, outlineAngles[i].kappa);
        });
    } else {
        for (int i = 0; i < n; ++i) {
            left = smallerOf(left, outlineAngles[i].kappa);
            right = largerOf(right, outlineAngles[i].kappa);
        }
    }
    for (int i = 0; i < n; ++i) {
        top = smallerOf(top, outlineAngles[i].omega);
        bottom = largerOf(bottom, outlineAngles[i].omega);
    }
    areaAngle1.omega = top;
    areaAngle1.kappa = left;
    areaAngle2.omega = bottom;
    areaAngle2.kappa = right;
    return 1;
}

int CScanArea::SetFullCircle(double top, double bottom) {
    if (!(0.0 <= top && top < bottom && bottom <= kPi))
        return 0;
    constexpr double kRight = 359.9999;
    const double horizontals[] = {0.0, 120.0, 240.0, kRight, kRight, 240.0, 120.0, 0.0};
    constexpr int kVertices = 8;
    Angles vertices;
    if (!zeroIfOutOfMemory([&] { return vertices.SetSize(kVertices), 1; }))
        return 0;
    for (int i = 0; i < kVertices; ++i)
        vertices[i].SetWPK(i < kVertices / 2 ? top : bottom, 0.0, horizontals[i] * kRadiansPerDegree);
    outlineAngles.Swap(vertices);
    return CalPolylineTopLeftBottomRight();
}

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
