// What is wrong with an outline: unwraps it into the plane of horizontal and zenith angle, and compares all
// pairs of edges by the signs of triangle areas.
#include <fieldscan/scan_area.h>

#include <cmath>
#include <cstddef>
#include <vector>

#include "geometry/angle_constants.h"
#include "platform/framework/out_of_memory.h"
#include "scanarea/coincidence.h"

using namespace fieldscan;

namespace {

// A vertex in the plane of horizontal angle (x) and zenith angle (y), radians, whole circles counted:
// neighbours across the zero direction are close to each other.
struct PlaneVertex {
    double x, y;
};

int signOf(double value) { return value < 0.0 ? -1 : 1; }

// The whole circles to add to an angle that is `step` more than the one before it, so that the step is the
// short way.
int circlesToAdd(double step, bool halfTurnWraps) {
    const double size = std::fabs(step);
    return size > kPi || (halfTurnWraps && size == kPi) ? -signOf(step) : 0;
}

// Unwraps the outline into `plane`. Whole circles are counted as an integer, so that equal directions get
// equal coordinates. Returns the edge at which that fails (CheckOutline, -3), or -1.
int unwrapOutline(const CArray<CWPK, CWPK&>& outline, std::vector<PlaneVertex>& plane) {
    const int n = outline.GetSize();
    int circles = 0, verticalCircles = 0, lastWrap = -1;
    double least = outline[0].kappa, most = least;
    for (int i = 0; i < n; ++i) {
        const CWPK& p = outline[i];
        const CWPK& q = outline[i == n - 1 ? 0 : i + 1];
        plane.push_back({p.kappa + circles * kFullTurn, p.omega + verticalCircles * kFullTurn});
        const double step = q.kappa - p.kappa;
        const int wrap = circlesToAdd(step, true), verticalWrap = circlesToAdd(q.omega - p.omega, false);
        if (std::fabs(step + wrap * kFullTurn) >= kPi - kCoincident)
            return i;
        circles += wrap;
        verticalCircles += verticalWrap;
        if (wrap != 0 || verticalWrap != 0)
            lastWrap = i;
        const double x = q.kappa + circles * kFullTurn;
        least = std::fmin(least, x);
        most = std::fmax(most, x);
        if (most - least >= kFullTurn - kCoincident)
            return i;
    }
    return circles != 0 || verticalCircles != 0 ? lastWrap : -1;
}

// The side of the line from a to b on which `vertex` lies: -1 or 1, or 0 if it is within kCoincident of the
// line. a and b themselves give exactly 0: the two products are equal.
int sideOf(const PlaneVertex& a, const PlaneVertex& b, const PlaneVertex& vertex) {
    const double dx = b.x - a.x, dy = b.y - a.y;
    const double area = dx * (vertex.y - a.y) - dy * (vertex.x - a.x);
    return std::fabs(area) <= kCoincident * std::sqrt(dx * dx + dy * dy) ? 0 : signOf(area);
}

// True if the edges a-b and c-d cross; touching is no crossing.
bool edgesCross(const PlaneVertex& a, const PlaneVertex& b, const PlaneVertex& c, const PlaneVertex& d) {
    const bool apart = std::fmax(a.x, b.x) < std::fmin(c.x, d.x) ||
                       std::fmax(c.x, d.x) < std::fmin(a.x, b.x) ||
                       std::fmax(a.y, b.y) < std::fmin(c.y, d.y) || std::fmax(c.y, d.y) < std::fmin(a.y, b.y);
    return !apart && sideOf(a, b, c) * sideOf(a, b, d) < 0 && sideOf(c, d, a) * sideOf(c, d, b) < 0;
}

// The first edge that crosses another one, or -1.
int crossingEdge(const std::vector<PlaneVertex>& plane) {
    const std::size_t n = plane.size();
    for (std::size_t i = 0; i < n; ++i)
        for (std::size_t k = i + 1; k < n; ++k)
            if (edgesCross(plane[i], plane[i + 1 == n ? 0 : i + 1], plane[k], plane[k + 1 == n ? 0 : k + 1]))
                return static_cast<int>(i);
    return -1;
}

bool sameDirection(const CWPK& a, const CWPK& b) { return a.omega == b.omega && a.kappa == b.kappa; }

}  // namespace

int CScanArea::CheckOutline(int* edge) const {
    int ignored;
    int& faulty = edge ? *edge : ignored;
    faulty = -1;
    const int n = outlineAngles.GetSize();
    int vertices = 0;  // without those that repeat the one before
    for (int i = 0; i < n; ++i)
        vertices += sameDirection(outlineAngles[i], outlineAngles[i > 0 ? i - 1 : n - 1]) ? 0 : 1;
    if (vertices < 3)
        return -1;
    for (int i = 0; i < n; ++i) {
        if (!std::isfinite(outlineAngles[i].omega) || !std::isfinite(outlineAngles[i].kappa)) {
            faulty = i;
            return -2;
        }
    }
    return zeroIfOutOfMemory([&] {
        std::vector<PlaneVertex> plane;
        plane.reserve(static_cast<std::size_t>(n));
        faulty = unwrapOutline(outlineAngles, plane);
        if (faulty >= 0)
            return -3;
        faulty = crossingEdge(plane);
        return faulty >= 0 ? -4 : 1;
    });
}
