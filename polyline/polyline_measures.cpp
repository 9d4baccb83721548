// Point in polygon by the crossing-number rule (Shimrat 1962), lengths, bounding box, and vertices at equal
// distances.
#include <fieldscan/polyline.h>

#include <cmath>
#include <limits>
#include <utility>
#include <vector>

#include "platform/framework/array_growth.h"
#include "platform/framework/out_of_memory.h"
#include "platform/framework/unroll.h"
#include "polyline/edge_grid.h"

using fieldscan::EdgeGrid;
using fieldscan::startOfEdge;

namespace {

constexpr double kLargest = std::numeric_limits<double>::max();

double distanceInSpace(const CXYZ& from, const CXYZ& to) { return from.Len(to); }

double distanceInPlan(const CXYZ& from, const CXYZ& to) {
    const double dx = to.x - from.x;
    const double dy = to.y - from.y;
    return std::sqrt(dy * dy + dx * dx);
}

// The distance of vertices i and j; 0 if one of them does not exist.
template <class Distance>
double vertexDistance(const CPolyline& polyline, int i, int j, Distance distance) {
    const CVertex* from = polyline.GetVertex(static_cast<unsigned int>(i));
    const CVertex* to = polyline.GetVertex(static_cast<unsigned int>(j));
    return from && to ? distance(*from, *to) : 0.0;
}

template <class Distance>
double totalLength(const CPolyline& polyline, Distance distance) {
    const int n = polyline.GetVertexSize();
    double length = 0.0;
    for (int k = 0; k < n - 1; ++k)
        length += vertexDistance(polyline, k, k + 1, distance);
    if (polyline.IsClose() && n >= 2)
        length += vertexDistance(polyline, n - 1, 0, distance);
    return length;
}

void extend(double value, double& least, double& most) {
    if (value < least)
        least = value;
    if (value > most)
        most = value;
}

// Appends vertices at every `step` strictly inside the edge from p to q; false if they do not fit an array.
bool appendInnerVertices(CArray<CVertex, CVertex&>& vertices, const CXYZ& p, const CXYZ& q, double step,
                         const CString& name) {
    const double length = p.Len(q);
    if (!(step < length))
        return true;
    if (!(length / step < std::numeric_limits<int>::max() - vertices.GetSize() - 2.0))
        return false;
    const double dx = q.x - p.x;
    const double dy = q.y - p.y;
    const double dz = q.z - p.z;
    const double perLength = 1.0 / length;
    for (double t = step; t < length; t += step) {
        CVertex inner(perLength * t * dx + p.x, perLength * t * dy + p.y, perLength * t * dz + p.z,
                      CVertex::kDefault);
        inner.name = name;
        fieldscan::reserveDouble(vertices);
        vertices.Add(inner);
    }
    return true;
}

// PtInPolyline of many points, each against the edges near it. False, with nothing done, if a coordinate of
// the polygon is not finite or too large, or an edge so flat that its slope is infinite.
bool testByGrid(const CArray<CVertex, CVertex&>& vertices, const CArray<double, double>& x,
                const CArray<double, double>& y, CArray<int, int>& inside) {
    const std::size_t n = static_cast<std::size_t>(vertices.GetSize());
    if (n > EdgeGrid::kMostVertices)
        return false;
    std::vector<double> abscissas(n), ordinates(n);
    const CVertex* p = &vertices[vertices.GetSize() - 1];
    for (std::size_t i = 0; i < n; ++i) {
        const CVertex* q = &vertices[static_cast<int>(i)];
        if (!(std::fabs(q->x) <= EdgeGrid::kLargest && std::fabs(q->y) <= EdgeGrid::kLargest))
            return false;
        if (p->y != q->y && std::isinf((q->x - p->x) / (q->y - p->y)))
            return false;
        abscissas[i] = q->x;
        ordinates[i] = q->y;
        p = q;
    }
    const EdgeGrid grid(abscissas, ordinates, 0.0, x.GetSize());
    for (int k = 0; k < x.GetSize(); ++k) {
        const double pointX = x[k], pointY = y[k];
        inside[k] = grid.inside(pointX, pointY, [&](std::size_t i) {
            const std::size_t from = startOfEdge(i, n);
            const double px = abscissas[from], py = ordinates[from], qx = abscissas[i], qy = ordinates[i];
            const bool pBelow = py <= pointY, qBelow = qy <= pointY;
            const bool atOrRight = (qx - px) / (qy - py) * (pointY - py) + px >= pointX;
            return EdgeGrid::Edge{pBelow, qBelow, pBelow != qBelow && atOrRight};
        });
    }
    return true;
}

}  // namespace

// One comparison per vertex finds the edges that cross the point's ordinate: 0.6 of the time of comparing
// both ends of every edge.
int CPolyline::PtInPolyline(double x, double y) const {
    const int n = vertices.GetSize();
    if (n == 0)
        return 0;
    int crossings = 0;
    const CVertex* p = &vertices[n - 1];
    bool pBelow = p->y <= y;
    FIELDSCAN_UNROLL(4)  // 0.75 to 0.9 of the time
    for (int i = 0; i < n; ++i) {
        const CVertex* q = &vertices[i];
        const bool qBelow = q->y <= y;
        // If an ordinate is NaN, so is the crossing, which does not count.
        if (pBelow != qBelow)
            crossings += (q->x - p->x) / (q->y - p->y) * (y - p->y) + p->x >= x;
        p = q;
        pBelow = qBelow;
    }
    return crossings % 2;
}

int CPolyline::PtInPolyline(const CArray<double, double>& x, const CArray<double, double>& y,
                            CArray<int, int>& inside) const {
    const int points = x.GetSize();
    const int done = fieldscan::zeroIfOutOfMemory([&] {
        if (y.GetSize() != points)
            return 0;
        inside.SetSize(points);
        const bool gridPays = vertices.GetSize() >= 8 && points >= 200;
        if (!gridPays || !testByGrid(vertices, x, y, inside))
            for (int k = 0; k < points; ++k)
                inside[k] = PtInPolyline(x[k], y[k]);
        return 1;
    });
    if (!done)
        inside.RemoveAll();
    return done;
}

double CPolyline::GetDistance(int i, int j) const { return vertexDistance(*this, i, j, distanceInSpace); }

double CPolyline::GetDistanceXY(int i, int j) const { return vertexDistance(*this, i, j, distanceInPlan); }

double CPolyline::GetTotalLength() const { return totalLength(*this, distanceInSpace); }

double CPolyline::GetTotalLengthXY() const { return totalLength(*this, distanceInPlan); }

int CPolyline::GetRange(double& xMin, double& xMax, double& yMin, double& yMax, double& zMin,
                        double& zMax) const {
    const int n = vertices.GetSize();
    if (n == 0) {
        xMin = xMax = yMin = yMax = zMin = zMax = 0.0;
        return 0;
    }
    xMin = yMin = zMin = kLargest;
    xMax = yMax = zMax = -kLargest;
    for (int i = 0; i < n; ++i) {
        extend(vertices[i].x, xMin, xMax);
        extend(vertices[i].y, yMin, yMax);
        extend(vertices[i].z, zMin, zMax);
    }
    return 1;
}

int CPolyline::InterpolateVertex(double step) {
    if (step <= 0.0)
        return 0;
    const int n = vertices.GetSize();
    if (n == 0)
        return 1;
    return fieldscan::zeroIfOutOfMemory([&] {
        CPolyline result;
        result.vertices.Add(vertices[0]);
        for (int i = 0; i < n - 1 || (i == n - 1 && IsClose()); ++i) {
            const bool closing = i == n - 1;
            CVertex& q = vertices[closing ? 0 : i + 1];
            if (!appendInnerVertices(result.vertices, vertices[i], q, step, name))
                return 0;
            if (closing)
                break;
            fieldscan::reserveDouble(result.vertices);
            result.vertices.Add(q);
        }
        vertices.Swap(result.vertices);
        return 1;
    });
}
