// Smooth curves through the vertices of a polyline: uniform cubic B-splines (de Boor, A Practical Guide to
// Splines) and centripetal Catmull-Rom curves (Catmull and Rom 1974; Yuksel et al. 2011).
//
// Each edge has its own curve from four control points: those of its two ends and of the next vertex on each
// side. An open polyline gets one more control point beyond each end. Coordinates count from the first
// vertex, so that those of a national grid keep their digits.
#include <fieldscan/polyline.h>

#include <cmath>
#include <limits>

#include "platform/framework/array_growth.h"
#include "platform/framework/out_of_memory.h"
#include "polyline/spline_kinds.h"

using namespace fieldscan;

namespace {

bool isFinite(const CVertex& v) { return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z); }

bool areAtOnePlace(const CVertex& a, const CVertex& b) { return a.x == b.x && a.y == b.y && a.z == b.z; }

// True for a given vertex, false for one that a spline has inserted.
bool isFrame(const CVertex& v) { return v.IsSplineFrame() || !v.CheckVertexFlag(CVertex::kSplineVertex); }

int edgesOf(int vertices, bool closed) { return closed ? vertices : vertices - 1; }

// Sets the control points beyond both ends of the ring; the others are in `control` from the second on.
void continueAround(CArray<double, double>& control) {
    const int n = control.GetSize() / 3 - 3;
    for (int c = 0; c < 3; ++c) {
        control[c] = control[3 * n + c];
        control[3 * (n + 1) + c] = control[3 + c];
        control[3 * (n + 2) + c] = control[6 + c];
    }
}

// The same for an open polyline, whose end edges go on straight.
void continueStraight(CArray<double, double>& control) {
    const int n = control.GetSize() / 3 - 2;
    for (int c = 0; c < 3; ++c) {
        control[c] = 2.0 * control[3 + c] - control[6 + c];
        control[3 * (n + 1) + c] = 2.0 * control[3 * n + c] - control[3 * (n - 1) + c];
    }
}

// Copies the frame's points to `control` from the second on, with room for one before and `beyond` after
// them.
void copyFrame(const CArray<double, double>& frame, int beyond, CArray<double, double>& control) {
    control.SetSize(frame.GetSize() + 3 * (1 + beyond));
    for (int i = 0; i < frame.GetSize(); ++i)
        control[3 + i] = frame[i];
}

// The distance of two knots of a centripetal curve: the square root of the distance of their points.
double knotDistance(const double* a, const double* b) {
    const double dx = b[0] - a[0], dy = b[1] - a[1], dz = b[2] - a[2];
    return std::sqrt(std::sqrt(dx * dx + dy * dy + dz * dz));
}

// The point of the centripetal Catmull-Rom curve between control points 1 (t = 0) and 2 (t = 1), by the
// recursive evaluation of Barry and Goldman (1988).
void catmullRomPoint(const double* control, double t, double* point) {
    const double knot1 = knotDistance(control, control + 3);
    const double knot2 = knot1 + knotDistance(control + 3, control + 6);
    const double knot3 = knot2 + knotDistance(control + 6, control + 9);
    const double knots[] = {0.0, knot1, knot2, knot3};
    const double parameter = knot1 + t * (knot2 - knot1);
    for (int c = 0; c < 3; ++c) {
        double level[4] = {control[c], control[3 + c], control[6 + c], control[9 + c]};
        const auto blend = [&](int i, int first, int last) {
            level[i] = ((knots[last] - parameter) * level[i] + (parameter - knots[first]) * level[i + 1]) /
                       (knots[last] - knots[first]);
        };
        for (int i = 0; i < 3; ++i)
            blend(i, i, i + 1);
        blend(0, 0, 2);
        blend(1, 1, 3);
        blend(0, 1, 2);
        point[c] = level[0];
    }
}

// The points of the curve strictly inside the edges, `pieces` - 1 in each. `setControl` makes the control
// points from the frame; `curvePoint` gives the point of an edge for a parameter from 0 to 1.
template <class SetControl, class CurvePoint>
void computeInner(const CArray<double, double>& frame, bool closed, int pieces, SetControl setControl,
                  CurvePoint curvePoint, CArray<double, double>& inner) {
    CArray<double, double> control;
    setControl(frame, control);
    const int edges = edgesOf(frame.GetSize() / 3, closed);
    inner.SetSize(3 * edges * (pieces - 1));
    double* point = inner.GetData();
    for (int edge = 0; edge < edges; ++edge)
        for (int k = 1; k < pieces; ++k, point += 3)
            curvePoint(control.GetData() + 3 * edge, static_cast<double>(k) / pieces, point);
}

}  // namespace

int CPolyline::Spline(int pieces) { return smooth(pieces, kCubicSpline, SplineSub); }

int CPolyline::CtmlRomSpline(int pieces) { return smooth(pieces, kCatmullRomSpline, CtmlRomSub); }

int CPolyline::smooth(int pieces, int kind, InnerPoints innerPoints) {
    return zeroIfOutOfMemory([&] {
        CArray<CVertex, CVertex&> frame;
        for (int i = 0; i < vertices.GetSize(); ++i) {
            if (!isFrame(vertices[i]))
                continue;
            reserveDouble(frame);
            frame.Add(vertices[i]);
        }
        const int n = frame.GetSize();
        const bool closed = IsClose() == 1;
        const int edges = edgesOf(n, closed);
        if (pieces < 1 || n < 3 || 3LL * edges * pieces > std::numeric_limits<int>::max())
            return 0;
        Coordinates coordinates, inner;
        coordinates.SetSize(3 * n);
        const CVertex origin = frame[0];
        for (int i = 0; i < n; ++i) {
            if (!isFinite(frame[i]) || (i < edges && areAtOnePlace(frame[i], frame[i + 1 == n ? 0 : i + 1])))
                return 0;
            coordinates[3 * i] = frame[i].x - origin.x;
            coordinates[3 * i + 1] = frame[i].y - origin.y;
            coordinates[3 * i + 2] = frame[i].z - origin.z;
        }
        innerPoints(coordinates, closed, pieces, inner);

        CArray<CVertex, CVertex&> curve;
        curve.Reserve(edges * pieces + 1);
        const double* point = inner.GetData();
        for (int i = 0; i < n; ++i) {
            frame[i].SetSplineFrame(1);
            curve.Add(frame[i]);
            for (int k = 1; i < edges && k < pieces; ++k, point += 3) {
                CVertex vertex(origin.x + point[0], origin.y + point[1], origin.z + point[2],
                               CVertex::kDefault | CVertex::kSplineVertex);
                if (!isFinite(vertex))
                    return 0;
                vertex.name = name;
                curve.Add(vertex);
            }
        }
        vertices.Swap(curve);
        return SetSplineFlag(kind);
    });
}

// ---- Uniform cubic B-splines ----

void CPolyline::SplineSub(const Coordinates& frame, bool closed, int pieces, Coordinates& inner) {
    computeInner(frame, closed, pieces, closed ? SplineClose : SplineOpen, CubicBSpline, inner);
}

// Control points D of the curve through the frame's points P: (D[i-1] + 4 D[i] + D[i+1]) / 6 = P[i]. Natural
// ends have no curvature: D[i-1] - 2 D[i] + D[i+1] = 0 there, and so D[i] = P[i]. The tridiagonal equations
// between are solved by elimination without pivoting (diagonally dominant).
void CPolyline::SplineOpen(const Coordinates& frame, Coordinates& control) {
    copyFrame(frame, 1, control);
    const int n = frame.GetSize() / 3;
    Coordinates ratios;  // of the elimination
    ratios.SetSize(n);
    ratios[0] = 0.0;
    for (int i = 1; i < n - 1; ++i) {
        ratios[i] = 1.0 / (4.0 - ratios[i - 1]);
        for (int c = 0; c < 3; ++c) {
            const double eliminated = control[3 * i + c];  // right side of equation i - 1
            control[3 * (i + 1) + c] = (6.0 * frame[3 * i + c] - eliminated) * ratios[i];
        }
    }
    for (int i = n - 2; i > 0; --i)
        for (int c = 0; c < 3; ++c)
            control[3 * (i + 1) + c] -= ratios[i] * control[3 * (i + 2) + c];
    continueStraight(control);
}

// The same equations around the ring, by a recursive filter forward and one backward with the pole
// q = sqrt(3) - 2; Unser, Aldroubi and Eden, B-Spline Signal Processing, 1993. Both begin with the periodic
// value: the sum over the ring divided by 1 - q^n.
void CPolyline::SplineClose(const Coordinates& frame, Coordinates& control) {
    copyFrame(frame, 2, control);
    const int n = frame.GetSize() / 3;
    const double q = std::sqrt(3.0) - 2.0;
    double powerOfRing = 1.0;  // q^n
    for (int i = 0; i < n; ++i)
        powerOfRing *= q;
    for (int c = 0; c < 3; ++c) {
        const auto d = [&](int i) -> double& { return control[3 * (i + 1) + c]; };
        // Forward: F[i] = P[i] + q F[i-1], F[-1] = F[n-1].
        double sum = 0.0;
        for (int i = 0; i < n; ++i)
            sum = frame[3 * i + c] + q * sum;
        double value = sum / (1.0 - powerOfRing);
        for (int i = 0; i < n; ++i)
            d(i) = value = frame[3 * i + c] + q * value;
        // Backward: D[i] = q (D[i+1] - 6 F[i]).
        sum = 0.0;
        for (int i = n - 1; i >= 0; --i)
            sum = q * (sum - 6.0 * d(i));
        value = sum / (1.0 - powerOfRing);
        for (int i = n - 1; i >= 0; --i)
            d(i) = value = q * (value - 6.0 * d(i));
    }
    continueAround(control);
}

// The point of the uniform cubic B-spline with four control points at t from 0 to 1.
void CPolyline::CubicBSpline(const double* control, double t, double* point) {
    const double u = 1.0 - t;
    const double b0 = u * u * u / 6.0, b1 = ((3.0 * t - 6.0) * t * t + 4.0) / 6.0,
                 b2 = ((3.0 * u - 6.0) * u * u + 4.0) / 6.0, b3 = t * t * t / 6.0;
    for (int c = 0; c < 3; ++c)
        point[c] = b0 * control[c] + b1 * control[3 + c] + b2 * control[6 + c] + b3 * control[9 + c];
}

// ---- Centripetal Catmull-Rom curves ----

void CPolyline::CtmlRomSub(const Coordinates& frame, bool closed, int pieces, Coordinates& inner) {
    computeInner(frame, closed, pieces, closed ? CtmlRomClose : CtmlRomOpen, catmullRomPoint, inner);
}

void CPolyline::CtmlRomOpen(const Coordinates& frame, Coordinates& control) {
    copyFrame(frame, 1, control);
    continueStraight(control);
}

void CPolyline::CtmlRomClose(const Coordinates& frame, Coordinates& control) {
    copyFrame(frame, 2, control);
    continueAround(control);
}
