// Smooth curves through the vertices of a polyline.
//
// Every edge gets a curve of its own from four control points: those of its ends and of the next vertex on
// either side, which an open polyline continues beyond its ends. Coordinates count from the first vertex, so
// that those of a national grid keep their digits.
#include <fieldscan/polyline.h>

#include <cmath>
#include <limits>

#include "platform/framework/line_text.h"

namespace {

constexpr int kCubic = 6;
constexpr int kCatmullRom = 1000;

bool isFinite(const CVertex& v) { return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z); }

bool areAtOnePlace(const CVertex& a, const CVertex& b) { return a.x == b.x && a.y == b.y && a.z == b.z; }

// A vertex that was given, not made by a spline.
bool isFrame(const CVertex& v) { return v.IsSplineFrame() || !v.CheckVertexFlag(CVertex::kSplineVertex); }

int edgesOf(int vertices, bool closed) { return closed ? vertices : vertices - 1; }

// `control` has the frame's points from its second on.
void continueAround(CArray<double, double>& control) {
    const int n = control.GetSize() / 3 - 3;
    for (int c = 0; c < 3; ++c) {
        control[c] = control[3 * n + c];
        control[3 * (n + 1) + c] = control[3 + c];
        control[3 * (n + 2) + c] = control[6 + c];
    }
}

void continueStraight(CArray<double, double>& control) {
    const int n = control.GetSize() / 3 - 2;
    for (int c = 0; c < 3; ++c) {
        control[c] = 2.0 * control[3 + c] - control[6 + c];
        control[3 * (n + 1) + c] = 2.0 * control[3 * n + c] - control[3 * (n - 1) + c];
    }
}

// The frame's points from the second place on, with room for those that continue it.
void placeInside(const CArray<double, double>& frame, int beyond, CArray<double, double>& control) {
    control.SetSize(frame.GetSize() + 3 * (1 + beyond));
    for (int i = 0; i < frame.GetSize(); ++i)
        control[3 + i] = frame[i];
}

// How much further the knots of a centripetal curve are: the root of the distance.
double knotStep(const double* a, const double* b) {
    const double dx = b[0] - a[0], dy = b[1] - a[1], dz = b[2] - a[2];
    return std::sqrt(std::sqrt(dx * dx + dy * dy + dz * dz));
}

// The point of the centripetal Catmull-Rom curve at the part t of the way from control point 1 to 2, by the
// pyramid of Barry and Goldman (1988).
void catmullRomPoint(const double* control, double t, double* point) {
    const double knot1 = knotStep(control, control + 3), knot2 = knot1 + knotStep(control + 3, control + 6),
                 knot3 = knot2 + knotStep(control + 6, control + 9);
    const double knots[] = {0.0, knot1, knot2, knot3}, at = knot1 + t * (knot2 - knot1);
    for (int c = 0; c < 3; ++c) {
        double level[4] = {control[c], control[3 + c], control[6 + c], control[9 + c]};
        const auto blend = [&](int i, int first, int last) {
            level[i] = ((knots[last] - at) * level[i] + (at - knots[first]) * level[i + 1]) /
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

template <class Point>
void addInner(const CArray<double, double>& control, int edges, int pieces, Point pointOf,
              CArray<double, double>& inner) {
    inner.SetSize(3 * edges * (pieces - 1));
    double* point = inner.GetData();
    for (int edge = 0; edge < edges; ++edge)
        for (int k = 1; k < pieces; ++k, point += 3)
            pointOf(control.GetData() + 3 * edge, static_cast<double>(k) / pieces, point);
}

}  // namespace

int CPolyline::Spline(int pieces) { return smooth(pieces, kCubic, SplineSub); }

int CPolyline::CtmlRomSpline(int pieces) { return smooth(pieces, kCatmullRom, CtmlRomSub); }

int CPolyline::smooth(int pieces, int kind, InnerPoints innerPoints) {
    return fieldscan::zeroIfOutOfMemory([&] {
        CArray<CVertex, CVertex&> frame;
        for (int i = 0; i < vertices.GetSize(); ++i) {
            if (!isFrame(vertices[i]))
                continue;
            fieldscan::reserveDouble(frame);
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

// ---- Cubic, in the basis of uniform B-splines ----

void CPolyline::SplineSub(const Coordinates& frame, bool closed, int pieces, Coordinates& inner) {
    Coordinates control;
    if (closed)
        SplineClose(frame, control);
    else
        SplineOpen(frame, control);
    addInner(control, edgesOf(frame.GetSize() / 3, closed), pieces, CubicBSpline, inner);
}

// The curve passes through vertex i where (D[i-1] + 4 D[i] + D[i+1]) / 6 does, D the control points; it has
// no curvature there where D[i-1] - 2 D[i] + D[i+1] = 0, so the ends of D are those of the frame.
void CPolyline::SplineOpen(const Coordinates& frame, Coordinates& control) {
    placeInside(frame, 1, control);
    const int n = frame.GetSize() / 3;
    Coordinates ratios;  // of elimination
    ratios.SetSize(n);
    ratios[0] = 0.0;
    for (int i = 1; i < n - 1; ++i) {
        ratios[i] = 1.0 / (4.0 - ratios[i - 1]);
        for (int c = 0; c < 3; ++c) {
            const double before = control[3 * i + c];  // of vertex i - 1
            control[3 * (i + 1) + c] = (6.0 * frame[3 * i + c] - before) * ratios[i];
        }
    }
    for (int i = n - 2; i > 0; --i)
        for (int c = 0; c < 3; ++c)
            control[3 * (i + 1) + c] -= ratios[i] * control[3 * (i + 2) + c];
    continueStraight(control);
}

// The same equations around the ring. Periodic solutions of D[i-1] + 4 D[i] + D[i+1] = 6 P[i] are sums of the
// frame's points whose weights shrink by q = sqrt(3) - 2 with every vertex, run forward and backward.
void CPolyline::SplineClose(const Coordinates& frame, Coordinates& control) {
    placeInside(frame, 2, control);
    const int n = frame.GetSize() / 3;
    const double q = std::sqrt(3.0) - 2.0;
    double around = 1.0;  // q^n
    for (int i = 0; i < n; ++i)
        around *= q;
    for (int c = 0; c < 3; ++c) {
        const auto d = [&](int i) -> double& { return control[3 * (i + 1) + c]; };
        // Forward: F[i] = P[i] + q F[i-1], F[-1] = F[n-1].
        double start = 0.0;
        for (int i = 0; i < n; ++i)
            start = frame[3 * i + c] + q * start;
        double running = start / (1.0 - around);
        for (int i = 0; i < n; ++i)
            d(i) = running = frame[3 * i + c] + q * running;
        // Backward: D[i] = q (D[i+1] - 6 F[i]).
        start = 0.0;
        for (int i = n - 1; i >= 0; --i)
            start = q * (start - 6.0 * d(i));
        running = start / (1.0 - around);
        for (int i = n - 1; i >= 0; --i)
            d(i) = running = q * (running - 6.0 * d(i));
    }
    continueAround(control);
}

void CPolyline::CubicBSpline(const double* control, double t, double* point) {
    const double u = 1.0 - t;
    const double b0 = u * u * u / 6.0, b1 = ((3.0 * t - 6.0) * t * t + 4.0) / 6.0,
                 b2 = ((3.0 * u - 6.0) * u * u + 4.0) / 6.0, b3 = t * t * t / 6.0;
    for (int c = 0; c < 3; ++c)
        point[c] = b0 * control[c] + b1 * control[3 + c] + b2 * control[6 + c] + b3 * control[9 + c];
}

// ---- Catmull-Rom ----

void CPolyline::CtmlRomSub(const Coordinates& frame, bool closed, int pieces, Coordinates& inner) {
    Coordinates control;
    if (closed)
        CtmlRomClose(frame, control);
    else
        CtmlRomOpen(frame, control);
    addInner(control, edgesOf(frame.GetSize() / 3, closed), pieces, catmullRomPoint, inner);
}

void CPolyline::CtmlRomOpen(const Coordinates& frame, Coordinates& control) {
    placeInside(frame, 1, control);
    continueStraight(control);
}

void CPolyline::CtmlRomClose(const Coordinates& frame, Coordinates& control) {
    placeInside(frame, 2, control);
    continueAround(control);
}
