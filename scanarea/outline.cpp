// The outline of a scan area: its crossing of the zero direction and its extreme directions.
#include <fieldscan/scan_area.h>

#include <cmath>
#include <limits>

#include "geometry/angle_constants.h"
#include "platform/framework/line_text.h"

using namespace fieldscan;

namespace {

constexpr double kHalfTurn = kRadiansPerDegree * 180.0;
static_assert(kHalfTurn == kPi, "the wrap threshold is half a turn to the last bit");

using Angles = CArray<CWPK, CWPK&>;
using Indices = CArray<int, int&>;

// How far vertex i lies beyond the one before it in kappa.
double stepTo(const Angles& outline, int i) {
    const int n = outline.GetSize();
    return outline[i].kappa - outline[i > 0 ? i - 1 : n - 1].kappa;
}

bool wrapsToZero(double step) { return step < 0.0 && std::fabs(step) >= kHalfTurn; }

bool wrapsFromZero(double step) { return step > 0.0 && std::fabs(step) >= kHalfTurn; }

int firstBehindWrap(const Angles& outline) {
    for (int i = 0; i < outline.GetSize(); ++i)
        if (wrapsToZero(stepTo(outline, i)))
            return i;
    return 0;
}

// Calls visit(i, behindWrap) for the indices in ring order from the first vertex behind a wrap to zero;
// behindWrap tells the run behind such a wrap from the run behind a wrap back.
template <class Visit>
void visitSides(const Angles& outline, Visit visit) {
    const int n = outline.GetSize();
    const int start = firstBehindWrap(outline);
    bool behindWrap = false;
    for (int k = 0; k < n; ++k) {
        const int i = start < n - k ? start + k : start - (n - k);
        const double step = stepTo(outline, i);
        if (wrapsToZero(step))
            behindWrap = true;
        else if (wrapsFromZero(step))
            behindWrap = false;
        visit(i, behindWrap);
    }
}

void takeSmaller(double& value, double candidate) {
    if (value >= candidate)
        value = candidate;
}

void takeLarger(double& value, double candidate) {
    if (value <= candidate)
        value = candidate;
}

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
    visitSides(outlineAngles, [&](int i, bool behindWrap) {
        if (Indices* side = behindWrap ? afterWrap : beforeWrap)
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
        visitSides(outlineAngles, [&](int i, bool behindWrap) {
            if (behindWrap)
                takeLarger(right, outlineAngles[i].kappa);
            else
                takeSmaller(left, outlineAngles[i].kappa);
        });
    } else {
        for (int i = 0; i < n; ++i) {
            takeSmaller(left, outlineAngles[i].kappa);
            takeLarger(right, outlineAngles[i].kappa);
        }
    }
    for (int i = 0; i < n; ++i) {
        takeSmaller(top, outlineAngles[i].omega);
        takeLarger(bottom, outlineAngles[i].omega);
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
