// CheckPairs of the plane transformations.
#include <fieldscan/helmert.h>
#include <fieldscan/precision.h>

#include <initializer_list>

#include "adjustment/name_pairs.h"

using namespace fieldscan;

namespace {

enum { kUnknown = 0, kSpread = 1, kTooFew = -1, kCoincident = -2, kOnOneLine = -3 };

void enter(CLeastSq& equations, std::initializer_list<double> row) {
    int column = 0;
    for (const double coefficient : row)
        equations.SetObeq(column++, coefficient);
}

// Points on one line determine a similarity, but not the plane x, y, 1 over them; coincident ones neither.
int checkPairs(const PointArray& source, const PointArray& target, int fewest, int onOneLine) {
    const int pairs = source.GetSize();
    if (pairs < fewest || target.GetSize() != pairs)
        return kTooFew;
    CLeastSq similarity(2 * pairs, 4), plane(pairs, 3);  // of equations
    for (int i = 0; i < pairs; ++i) {
        const double x = source[i].x, y = source[i].y;
        enter(similarity, {x, -y, 1.0, 0.0, target[i].x});
        enter(similarity, {y, x, 0.0, 1.0, target[i].y});
        enter(plane, {x, y, 1.0});
    }
    CArray<int, int> undetermined;
    const int similarityDefect = CPrecision::CalDefect(similarity, undetermined);
    const int planeDefect = CPrecision::CalDefect(plane, undetermined);
    if (similarityDefect < 0 || planeDefect < 0)
        return kUnknown;
    if (similarityDefect > 0)
        return kCoincident;
    return planeDefect > 0 ? onOneLine : kSpread;
}

}  // namespace

int CHelmert::CheckPairs() const { return checkPairs(sourcePoints, targetPoints, 2, -kOnOneLine); }
int CPlaneAffine::CheckPairs() const { return checkPairs(sourcePoints, targetPoints, 3, kOnOneLine); }
