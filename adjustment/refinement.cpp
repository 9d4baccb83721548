#include "adjustment/refinement.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <numeric>
#include <vector>

#include "adjustment/double_double.h"
#include "adjustment/orthogonal_factor.h"

namespace fieldscan {

namespace {

using Vector = std::vector<double>;
using ExactVector = std::vector<DoubleDouble>;

std::size_t count(int n) { return static_cast<std::size_t>(n); }

// (hi, lo)[j] += row[j] a for begin <= j < end.
void addMultiple(double a, const double* row, int begin, int end, double* __restrict hi,
                 double* __restrict lo) {
    for (int j = begin; j < end; ++j) {
        const DoubleDouble sum = DoubleDouble{hi[j], lo[j]} + exactProduct(row[j], a);
        hi[j] = sum.hi;
        lo[j] = sum.lo;
    }
}

// U^-1, rows of n + 1, computed in double-double and rounded: A U^-1 has lost its orthonormal columns where
// the rounding errors of an inversion in double multiply those of A.
Vector exactlyInverted(const Vector& factor, int n) {
    const std::size_t length = count(n) + 1;
    Vector inverted(factor.size(), 0.0);
    ExactVector column(count(n));
    for (int j = 0; j < n; ++j) {
        for (int i = j; i >= 0; --i) {
            const double* u = factor.data() + count(i) * length;
            DoubleDouble sum{i == j ? 1.0 : 0.0, 0.0};
            for (int k = i + 1; k <= j; ++k)
                sum = sum + column[count(k)] * -u[k];
            column[count(i)] = sum / u[i];
            inverted[count(i) * length + count(j)] = column[count(i)].hi;
        }
    }
    return inverted;
}

// Row a of A becomes row b of A W, in the length of the row.
void multiplyRow(const double* a, const Vector& w, int n, double* __restrict b) {
    const std::size_t length = count(n) + 1;
    std::fill(b, b + n, 0.0);
    for (int i = 0; i < n; ++i) {
        if (a[i] == 0.0)  // most of an equation of a network
            continue;
        const double* row = w.data() + count(i) * length;
        for (int j = i; j < n; ++j)
            b[j] += a[i] * row[j];
    }
}

// The same, rounded once; `low` is for the lower parts of the sums.
void multiplyRowExactly(const double* a, const Vector& w, int n, double* b, Vector& low) {
    const std::size_t length = count(n) + 1;
    std::fill(b, b + n, 0.0);
    std::fill(low.begin(), low.end(), 0.0);
    for (int i = 0; i < n; ++i)
        if (a[i] != 0.0)
            addMultiple(a[i], w.data() + count(i) * length, i, n, b, low.data());
}

// S = B^T P B, B = A W.
Vector orthonormalityOf(const Equations& equations, const Vector& w, bool exactly) {
    constexpr int kBlock = 64;  // rows of B at a time
    const int n = equations.n;
    const std::size_t length = count(n) + 1;
    Vector normal(count(n) * length, 0.0), block(kBlock * length, 0.0), low(count(n));
    for (int first = 0; first < equations.m; first += kBlock) {
        const int rows = std::min(kBlock, equations.m - first);
        for (int k = 0; k < rows; ++k) {
            const double* a = equations.rows + count(first + k) * length;
            double* b = block.data() + count(k) * length;
            if (exactly)
                multiplyRowExactly(a, w, n, b, low);
            else
                multiplyRow(a, w, n, b);
        }
        addToNormal({block.data(), equations.weights + first, rows, n}, normal.data());
    }
    return normal;
}

// Z, rows of n + 1; empty when the triangle is not near the true one.
Vector rootOfCofactors(const Equations& equations, Vector factor, bool exactly) {
    constexpr double kNear = 0.25;  // of S to a diagonal matrix, in a pivot
    const int n = equations.n;
    const std::size_t length = count(n) + 1;
    if (exactly)
        factor = exactlyInverted(factor, n);
    else
        invertTriangle(factor.data(), n);
    const Vector& w = factor;
    const Vector normal = orthonormalityOf(equations, w, exactly);
    Vector correction(normal.size());
    if (!(choleskyFactor(normal.data(), n, 0.0, correction.data()) > kNear))
        return {};
    invertTriangle(correction.data(), n);
    Vector root(normal.size(), 0.0);
    for (int i = 0; i < n; ++i)
        for (int k = i; k < n; ++k)
            for (int j = k; j < n; ++j)
                root[count(i) * length + count(j)] +=
                    w[count(i) * length + count(k)] * correction[count(k) * length + count(j)];
    return root;
}

// A^T P (l - A x), rounded to double.
Vector misclosure(const Equations& equations, const ExactVector& x) {
    const int n = equations.n;
    ExactVector sums(count(n), DoubleDouble{0.0, 0.0});
    const double* a = equations.rows;
    for (int k = 0; k < equations.m; ++k, a += n + 1) {
        DoubleDouble residual{a[n], 0.0};
        for (int i = 0; i < n; ++i)
            residual = residual + x[count(i)] * -a[i];
        residual = residual * equations.weights[k];
        for (int i = 0; i < n; ++i)
            sums[count(i)] = sums[count(i)] + residual * a[i];
    }
    Vector rounded;
    for (const DoubleDouble& sum : sums)
        rounded.push_back(sum.hi);
    return rounded;
}

// Z Z^T vector.
Vector timesRoots(const Vector& root, int n, const Vector& vector) {
    const std::size_t length = count(n) + 1;
    Vector inner(count(n), 0.0), result(count(n), 0.0);
    for (int i = 0; i < n; ++i)
        for (int j = i; j < n; ++j)
            inner[count(j)] += root[count(i) * length + count(j)] * vector[count(i)];
    for (int i = 0; i < n; ++i)
        for (int j = i; j < n; ++j)
            result[count(i)] += root[count(i) * length + count(j)] * inner[count(j)];
    return result;
}

Vector timesSymmetric(const double* matrix, int n, const Vector& vector) {
    Vector result(count(n), 0.0);
    for (int i = 0; i < n; ++i, matrix += n + 1)
        for (int j = 0; j < n; ++j)
            result[count(i)] += matrix[j] * vector[count(j)];
    return result;
}

// What the unknowns amount to in the observations at most. With the observations themselves it is the scale
// that the rounding of residuals is a part of.
double sizeInObservations(const double* normal, int n, const ExactVector& x) {
    double size = 0.0;
    for (int i = 0; i < n; ++i)
        size = std::max(size, std::fabs(x[count(i)].hi) * std::sqrt(normal[i * (n + 1) + i]));
    return size;
}

// Adds corrections cofactors(A^T P (l - A x)) until they end, as measured by |A correction|, the change of
// the adjusted observations: as a rule each is smaller than the one before by the condition of A times a
// rounding step. The single unknowns need not shrink, and a single step tells little about the others, since
// it may be dominated by what is solved almost exactly. The end is kFinal of the scale, or below kRounding of
// it, where the rounding of the double-double residuals begins to show, a step that does not halve the last
// one.
//
// An unknown that can neither change the observations by as much nor be told from the last correction is 0:
// else one whose true value is 0 would be left as the rest of a cancellation.
template <class Cofactors>
bool improve(const Equations& equations, const double* normal, const double* inverse, Cofactors cofactors,
             double* solution) {
    constexpr double kFinal = 0x1p-100;
    constexpr double kRounding = 0x1p-80;
    constexpr double kUncertain = 64.0;  // corrections
    constexpr int kMostSteps = 30;
    const int n = equations.n;
    ExactVector x;
    for (int i = 0; i < n; ++i)
        x.push_back({solution[i], 0.0});
    Vector correction;
    const double observations = std::sqrt(squaredLength(equations));
    double change = std::numeric_limits<double>::infinity(), smallest = 0.0;
    bool ended = false;
    for (int step = 0; step < kMostSteps && !ended; ++step) {
        const Vector sums = misclosure(equations, x);
        correction = cofactors(sums);
        const double last = change;
        change =
            std::sqrt(std::fabs(std::inner_product(correction.begin(), correction.end(), sums.begin(), 0.0)));
        for (int i = 0; i < n; ++i)
            x[count(i)] = x[count(i)] + DoubleDouble{correction[count(i)], 0.0};
        const double scale = std::max(observations, sizeInObservations(normal, n, x));
        if (!std::isfinite(change) || !std::isfinite(scale))
            return false;
        smallest = kFinal * scale;
        ended = change <= smallest || (change <= kRounding * scale && change > 0.5 * last);
    }
    if (!ended)
        return false;
    for (int i = 0; i < n; ++i) {
        const double value = x[count(i)].hi;
        const double negligible = std::max(change, smallest) * std::sqrt(inverse[i * (n + 1) + i]);
        const double uncertain = kUncertain * std::fabs(correction[count(i)]);
        solution[i] = std::fabs(value) <= std::min(negligible, uncertain) ? 0.0 : value;
    }
    return true;
}

}  // namespace

double squaredLength(const Equations& equations) {
    const std::size_t length = count(equations.n) + 1;
    double squares = 0.0;
    for (int k = 0; k < equations.m; ++k) {
        const double l = equations.rows[count(k) * length + count(equations.n)];
        squares += l * l * std::fabs(equations.weights[k]);
    }
    return squares;
}

bool refine(const Equations& equations, const double* normal, double tolerance, double correlation,
            double* solution, double* inverse) {
    constexpr double kMild = 1e4;        // B in double then errs by about 1e-14
    constexpr double kSafePivot = 1e-7;  // of its diagonal
    const int n = equations.n;
    const bool exactly = !(correlation <= kMild);
    // Without a square root there are no weighted equations: N's own triangle has to do.
    const bool rootless = std::any_of(equations.weights, equations.weights + equations.m,
                                      [](double weight) { return weight < 0.0; });
    Vector factor(count(n) * (count(n) + 1)), root;
    if (choleskyFactor(normal, n, tolerance, factor.data()) > (rootless ? 0.0 : kSafePivot))
        root = rootOfCofactors(equations, factor, exactly);
    if (root.empty() && !rootless && orthogonalFactor(equations, factor.data()))
        root = rootOfCofactors(equations, factor, exactly);
    if (root.empty())
        return false;
    multiplyByTranspose(root.data(), n, inverse);
    return improve(
        equations, normal, inverse, [&](const Vector& sums) { return timesRoots(root, n, sums); }, solution);
}

bool refineSolution(const Equations& equations, const double* normal, const double* inverse,
                    double* solution) {
    const int n = equations.n;
    return improve(
        equations, normal, inverse, [&](const Vector& sums) { return timesSymmetric(inverse, n, sums); },
        solution);
}

}  // namespace fieldscan
