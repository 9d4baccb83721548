// Inside or outside by counting the crossed edges (crossing-number rule), angles measured from the leftmost
// vertex in degrees; nothing is prepared beforehand.
#include "benchmarks/outline_steps.h"

#include <fieldscan/attitude.h>

#include <cmath>

namespace {

using Indices = CArray<int, int&>;
using Directions = CArray<CWPK, CWPK&>;

constexpr double kRadians = 0.017453292519943295, kDegrees = 57.29577951308232;
constexpr double kHalfTurn = kRadians * 180.0;

void angle0To360(double& a) {
    for (;;)
        if (a > 360.0)
            a -= 360.0;
        else if (a < 0.0)
            a += 360.0;
        else
            return;
}

double difference(double a, double b) {
    angle0To360(a);
    angle0To360(b);
    double r = std::fabs(a - b);
    if (r > 180.0)
        r = 360.0 - r;
    else if (-2.220446049250313e-16 <= r && r <= 2.220446049250313e-16)
        return 0.0;
    if (b <= a - 180.0)
        return r;
    if (b <= a)
        return -r;
    if (a + 180.0 <= b)
        return -r;
    return r;
}

double differenceOver0(double a, double b) {
    double d = difference(a, b);
    if (d < 0.0)
        d += 360.0;
    return d;
}

double sinceLast(const Directions& outline, int i) {
    return outline[i].kappa - outline[i == 0 ? outline.GetSize() - 1 : i - 1].kappa;
}

bool crossesZero(const Directions& outline) {
    const int n = outline.GetSize();
    for (int i = 0; i < n; ++i)
        if (std::fabs(outline[i].kappa - outline[i == n - 1 ? 0 : i + 1].kappa) >= kHalfTurn)
            return true;
    return false;
}

void divide(const Directions& outline, Indices& after, Indices& before) {
    const int n = outline.GetSize();
    int start = 0;
    while (start < n - 1 &&
           !(sinceLast(outline, start) < 0.0 && std::fabs(sinceLast(outline, start)) >= kHalfTurn))
        ++start;
    bool afterWrap = false;
    for (int k = 0; k < n; ++k) {
        int i = (start + k) % n;
        const double d = sinceLast(outline, i);
        if (std::fabs(d) >= kHalfTurn)
            afterWrap = d < 0.0;
        (afterWrap ? after : before).Add(i);
    }
}

struct Range {
    double left = 360.0, right = -1.0, top = 360.0, bottom = -1.0;
};

Range rangeOf(const CPolyline& outline) {
    Directions directions;
    directions.SetSize(outline.GetVertexSize());
    for (int k = 0; k < outline.GetVertexSize(); ++k) {
        const CVertex vertex = *outline.GetVertex(static_cast<unsigned>(k));
        double zenith = 90.0 - vertex.y;
        angle0To360(zenith);
        directions[k] = CWPK(zenith * kRadians, 0.0, vertex.x * kRadians);
    }
    Range range;
    if (crossesZero(directions)) {
        Indices after, before;
        divide(directions, after, before);
        for (int k = 0; k < before.GetSize(); ++k)
            if (range.left >= directions[before[k]].kappa)
                range.left = directions[before[k]].kappa;
        for (int k = 0; k < after.GetSize(); ++k)
            if (range.right <= directions[after[k]].kappa)
                range.right = directions[after[k]].kappa;
    } else {
        for (int k = 0; k < directions.GetSize(); ++k) {
            if (range.left >= directions[k].kappa)
                range.left = directions[k].kappa;
            if (range.right <= directions[k].kappa)
                range.right = directions[k].kappa;
        }
    }
    for (int k = 0; k < directions.GetSize(); ++k) {
        if (range.top >= directions[k].omega)
            range.top = directions[k].omega;
        if (range.bottom <= directions[k].omega)
            range.bottom = directions[k].omega;
    }
    range.left *= kDegrees;
    range.right *= kDegrees;
    for (double* zenith : {&range.top, &range.bottom}) {
        *zenith = 90.0 - *zenith * kDegrees;
        angle0To360(*zenith);
    }
    return range;
}

}  // namespace

int isInsideByTheSteps(const CPolyline& outline, double h, double v) {
    const int n = outline.GetVertexSize();
    if (n < 1)
        return 0;
    // rangeOf goes through radians; this is the vertex itself.
    const double edge = rangeOf(outline).left;
    double left = HUGE_VAL;
    for (int i = 0; i < n; ++i) {
        const double x = outline.GetVertex(static_cast<unsigned>(i))->x;
        if (x * kRadians * kDegrees == edge && x < left)
            left = x;
    }
    const double point = differenceOver0(left, h);
    int count = 0;
    for (int i = 0; i < n; ++i) {
        const CVertex p = *outline.GetVertex(static_cast<unsigned>(i));
        const CVertex q = *outline.GetVertex(static_cast<unsigned>(i == n - 1 ? 0 : i + 1));
        const double xi = differenceOver0(left, p.x), xj = differenceOver0(left, q.x);
        const double di = difference(v, p.y), dj = difference(v, q.y);
        if (!((di <= 0.0 && dj > 0.0) || (di > 0.0 && dj <= 0.0)))
            continue;
        const double w = (dj - di) * -1.0;
        const double crossing = w == 0.0 ? xi : (xj - xi) / w * di + xi;
        if (crossing >= point)
            ++count;
    }
    return count % 2;
}
