// What is wrong with an outline.
#include <fieldscan/scan_area.h>

#include <cmath>
#include <cstddef>
#include <vector>

#include "geometry/angle_constants.h"
#include "platform/framework/line_text.h"
#include "scanarea/coincidence.h"

using namespace fieldscan;

namespace {

// A vertex in the plane of horizontal and zenith angles, radians, taken apart at the zero direction.
struct Place {
    double x, y;
};

int signOf(double value) { return value < 0.0 ? -1 : 1; }

// The turns to add to an angle that lies `step` beyond the one before it, so that it is the short way off.
int turnsOver(double step, bool halfTurnWraps) {
    const double size = std::fabs(step);
    return size > kPi || (halfTurnWraps && size == kPi) ? -signOf(step) : 0;
}

// Lays the outline out in the plane; the places count whole turns, so that equal directions have equal
// places. Returns the first edge that no such plane has, or -1: see CheckOutline, -3.
int layOut(const CArray<CWPK, CWPK&>& outline, std::vector<Place>& places) {
    const int n = outline.GetSize();
    int turns = 0, verticalTurns = 0, lastWrap = -1;
    double least = outline[0].kappa, most = least;
    for (int i = 0; i < n; ++i) {
        const CWPK& p = outline[i];
        const CWPK& q = outline[i == n - 1 ? 0 : i + 1];
        places.push_back({p.kappa + turns * kFullTurn, p.omega + verticalTurns * kFullTurn});
        const double step = q.kappa - p.kappa;
        const int wrap = turnsOver(step, true), verticalWrap = turnsOver(q.omega - p.omega, false);
        if (std::fabs(step + wrap * kFullTurn) >= kPi - kCoincident)
            return i;
        turns += wrap;
        verticalTurns += verticalWrap;
        if (wrap != 0 || verticalWrap != 0)
            lastWrap = i;
        const double x = q.kappa + turns * kFullTurn;
        least = std::fmin(least, x);
        most = std::fmax(most, x);
        if (most - least >= kFullTurn - kCoincident)
            return i;
    }
    return turns != 0 || verticalTurns != 0 ? lastWrap : -1;
}

// On which side of the line from a to b the place lies: -1, 1, or 0 on it. A vertex that a and b share gives
// exactly 0, whatever its coordinates: two equal products.
int sideOf(const Place& a, const Place& b, const Place& place) {
    const double dx = b.x - a.x, dy = b.y - a.y;
    const double area = dx * (place.y - a.y) - dy * (place.x - a.x);
    return std::fabs(area) <= kCoincident * std::sqrt(dx * dx + dy * dy) ? 0 : signOf(area);
}

bool cross(const Place& a, const Place& b, const Place& c, const Place& d) {
    const bool apart = std::fmax(a.x, b.x) < std::fmin(c.x, d.x) ||
                       std::fmax(c.x, d.x) < std::fmin(a.x, b.x) ||
                       std::fmax(a.y, b.y) < std::fmin(c.y, d.y) || std::fmax(c.y, d.y) < std::fmin(a.y, b.y);
    return !apart && sideOf(a, b, c) * sideOf(a, b, d) < 0 && sideOf(c, d, a) * sideOf(c, d, b) < 0;
}

// The first edge that crosses another one, or -1.
int crossingEdge(const std::vector<Place>& places) {
    const std::size_t n = places.size();
    for (std::size_t i = 0; i < n; ++i)
        for (std::size_t k = i + 1; k < n; ++k)
            if (cross(places[i], places[i + 1 == n ? 0 : i + 1], places[k], places[k + 1 == n ? 0 : k + 1]))
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
    int different = 0;
    for (int i = 0; i < n; ++i)
        different += sameDirection(outlineAngles[i], outlineAngles[i > 0 ? i - 1 : n - 1]) ? 0 : 1;
    if (different < 3)
        return -1;
    for (int i = 0; i < n; ++i) {
        if (!std::isfinite(outlineAngles[i].omega) || !std::isfinite(outlineAngles[i].kappa)) {
            faulty = i;
            return -2;
        }
    }
    return zeroIfOutOfMemory([&] {
        std::vector<Place> places;
        places.reserve(static_cast<std::size_t>(n));
        faulty = layOut(outlineAngles, places);
        if (faulty >= 0)
            return -3;
        faulty = crossingEdge(places);
        return faulty >= 0 ? -4 : 1;
    });
}
