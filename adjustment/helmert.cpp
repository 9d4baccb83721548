// CHelmert and CPlaneAffine: parameters by least squares, residuals, and why pairs are not solved.
// Transformation is either of the two classes.
#include <fieldscan/helmert.h>
#include <fieldscan/least_squares.h>
#include <fieldscan/precision.h>

#include <array>
#include <cmath>
#include <cstddef>

#include "adjustment/name_pairs.h"
#include "platform/framework/out_of_memory.h"

using namespace fieldscan;

namespace {

template <class Transformation>
void clearFit(Transformation& fit) {
    fit.parameters.RemoveAll();
    fit.targetPoints.RemoveAll();
    fit.sourcePoints.RemoveAll();
    fit.residuals.RemoveAll();
    fit.RMS = CXYZ(-1.0, -1.0, 0.0);
    fit.maximum.Init();
}

// Of itself, too: no member changes then.
template <class Transformation>
void copyFit(const Transformation& from, Transformation& to) {
    to.targetPoints.Copy(from.targetPoints);
    to.sourcePoints.Copy(from.sourcePoints);
    to.parameters.Copy(from.parameters);
    to.residuals.Copy(from.residuals);
    to.RMS = from.RMS;
    to.maximum = from.maximum;
}

template <class Transformation>
int pairPoints(const PointArray& first, const PointArray& second, Transformation& fit) {
    const int pairs =
        zeroIfOutOfMemory([&] { return pairByName(first, second, fit.targetPoints, fit.sourcePoints); });
    if (pairs == 0) {
        fit.targetPoints.RemoveAll();
        fit.sourcePoints.RemoveAll();
    }
    return pairs;
}

constexpr int kSimilarity = 4, kAffine = 6;  // numbers of parameters

// The equations of x' and y' of one pair: n coefficients and the observation.
template <int n>
using Equations = std::array<std::array<double, n + 1>, 2>;

Equations<kSimilarity> similarityEquations(const CXYZ& s, const CXYZ& t) {
    return {{{s.x, -s.y, 1.0, 0.0, t.x}, {s.y, s.x, 0.0, 1.0, t.y}}};
}

Equations<kAffine> affineEquations(const CXYZ& s, const CXYZ& t) {
    return {{{s.x, s.y, 0.0, 0.0, 1.0, 0.0, t.x}, {0.0, 0.0, s.x, s.y, 0.0, 1.0, t.y}}};
}

template <std::size_t length>
void enterEquation(CLeastSq& adjustment, const std::array<double, length>& equation) {
    int column = 0;
    for (const double element : equation)
        adjustment.SetObeq(column++, element);
}

// Adjusts the equations of all pairs; the unknowns become the parameters. Returns 0 with the parameters
// unchanged where that is impossible.
template <int n, class Transformation>
int adjustParameters(Transformation& fit, int fewestPairs,
                     Equations<n> (*equationsOf)(const CXYZ& source, const CXYZ& target)) {
    const int pairs = fit.targetPoints.GetSize();
    if (fit.sourcePoints.GetSize() != pairs || pairs < fewestPairs)
        return 0;
    return zeroIfOutOfMemory([&] {
        CLeastSq adjustment(2 * pairs, n);
        for (int i = 0; i < pairs; ++i)
            for (const auto& equation : equationsOf(fit.sourcePoints[i], fit.targetPoints[i]))
                enterEquation(adjustment, equation);
        if (!adjustment.Solve())
            return 0;
        fit.parameters.SetSize(n);
        for (int i = 0; i < n; ++i)
            fit.parameters[i] = adjustment.GetBcor(i);
        return 1;
    });
}

// Residuals, their root mean square over the pairs, and the largest in each coordinate.
template <class Transformation>
int computeResiduals(Transformation& fit) {
    const int pairs = fit.targetPoints.GetSize();
    if (pairs == 0 || fit.sourcePoints.GetSize() != pairs)
        return 0;
    return zeroIfOutOfMemory([&] {
        fit.residuals.SetSize(pairs);
        fit.RMS.SetXYZ(0.0, 0.0, 0.0);
        fit.maximum.Init();
        for (int i = 0; i < pairs; ++i) {
            const CXYZ& target = fit.targetPoints[i];
            CXYZ transformed(0.0, 0.0, target.z);
            if (!fit.Transform(fit.sourcePoints[i], transformed, 1))
                return 0;
            CXYZ& residual = fit.residuals[i];
            residual = transformed - target;
            residual.name = target.name;
            fit.RMS.x += residual.x * residual.x;
            fit.RMS.y += residual.y * residual.y;
            if (std::fabs(residual.x) > std::fabs(fit.maximum.x))
                fit.maximum.x = residual.x;
            if (std::fabs(residual.y) > std::fabs(fit.maximum.y))
                fit.maximum.y = residual.y;
        }
        fit.RMS.x = std::sqrt(fit.RMS.x * (1.0 / pairs));
        fit.RMS.y = std::sqrt(fit.RMS.y * (1.0 / pairs));
        return 1;
    });
}

enum { kUnknown = 0, kSpread = 1, kTooFew = -1, kCoincident = -2, kOnOneLine = -3 };

// By the ranks of two systems. Coincident points do not determine a similarity; points on one line do, but
// not a plane z = a x + b y + c over them.
int checkPairs(const PointArray& source, const PointArray& target, int fewest, int onOneLine) {
    const int pairs = source.GetSize();
    if (pairs < fewest || target.GetSize() != pairs)
        return kTooFew;
    CLeastSq similarity(2 * pairs, kSimilarity), plane(pairs, 3);
    for (int i = 0; i < pairs; ++i) {
        for (const auto& equation : similarityEquations(source[i], target[i]))
            enterEquation(similarity, equation);
        enterEquation(plane, std::array<double, 3>{source[i].x, source[i].y, 1.0});
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

// ---- CHelmert ----

CHelmert::CHelmert() { Init(); }

CHelmert::CHelmert(const CHelmert& other) { operator=(other); }

CHelmert::~CHelmert() {}

CHelmert& CHelmert::operator=(const CHelmert& other) {
    copyFit(other, *this);
    return *this;
}

void CHelmert::Init() { clearFit(*this); }

void CHelmert::Trace() {}

int CHelmert::SetPoints(const CArray<CXYZ, CXYZ&>& first, const CArray<CXYZ, CXYZ&>& second) {
    return pairPoints(first, second, *this);
}

int CHelmert::CalPara() {
    if (!adjustParameters<kSimilarity>(*this, 2, &similarityEquations))
        return 0;
    CalResiduals();
    return 1;
}

int CHelmert::CalResiduals() { return parameters.GetSize() == kSimilarity ? computeResiduals(*this) : 0; }

int CHelmert::CheckPairs() const { return checkPairs(sourcePoints, targetPoints, 2, -kOnOneLine); }

int CHelmert::Transform(const CXYZ& in, CXYZ& out, int forward) const {
    if (parameters.GetSize() != kSimilarity)
        return 0;
    const double a = parameters[0], b = parameters[1], tx = parameters[2], ty = parameters[3];
    if (forward) {
        const double x = in.x, y = in.y;
        out.x = (a * x - b * y) + tx;
        out.y = (y * a + b * x) + ty;
        return 1;
    }
    const double determinant = a * a + b * b;
    if (determinant == 0.0)
        return 0;
    const double u = in.x - tx, v = in.y - ty;
    out.x = (b * v + a * u) * (1.0 / determinant);
    out.y = (a * v - b * u) * (1.0 / determinant);
    return 1;
}

// ---- CPlaneAffine ----

CPlaneAffine::CPlaneAffine() { Init(); }

CPlaneAffine::CPlaneAffine(const CPlaneAffine& other) { operator=(other); }

CPlaneAffine::~CPlaneAffine() {}

CPlaneAffine& CPlaneAffine::operator=(const CPlaneAffine& other) {
    copyFit(other, *this);
    return *this;
}

void CPlaneAffine::Init() { clearFit(*this); }

void CPlaneAffine::Trace() {}

int CPlaneAffine::SetPoints(const CArray<CXYZ, CXYZ&>& first, const CArray<CXYZ, CXYZ&>& second) {
    return pairPoints(first, second, *this);
}

int CPlaneAffine::CalPara() {
    if (!adjustParameters<kAffine>(*this, 3, &affineEquations))
        return 0;
    CalResiduals();
    return 1;
}

int CPlaneAffine::CalResiduals() { return parameters.GetSize() == kAffine ? computeResiduals(*this) : 0; }

int CPlaneAffine::CheckPairs() const { return checkPairs(sourcePoints, targetPoints, 3, kOnOneLine); }

int CPlaneAffine::Transform(const CXYZ& in, CXYZ& out, int forward) const {
    if (parameters.GetSize() != kAffine)
        return 0;
    const double a = parameters[0], b = parameters[1], c = parameters[2], d = parameters[3];
    const double tx = parameters[4], ty = parameters[5];
    if (forward) {
        const double x = in.x, y = in.y;
        out.x = (a * x + b * y) + tx;
        out.y = (c * x + d * y) + ty;
        return 1;
    }
    const double determinant = a * d - b * c;
    if (determinant == 0.0)
        return 0;
    const double u = in.x - tx, v = in.y - ty;
    out.x = (d * u - b * v) / determinant;
    out.y = (a * v - c * u) / determinant;
    return 1;
}
