#include "adjustment/refinement.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <numeric>
#include <vector>

#include "adjustment/double_double.h"
#include "adjustment/orthogonal_factor.h"
#include "adjustment/refinement_kernels.h"
#include "platform/framework/instruction_set.h"

namespace fieldscan {

namespace {

using Vector = std::vector<double>;
using ExactVector = std::vector<DoubleDouble>;

constexpr double kEpsilon = std::numeric_limits<double>::epsilon();

std::size_t count(int n) { return static_cast<std::size_t>(n); }

Vector kernelBuffer(int n) { return Vector(count(n + 8) * kRefinementBuffer); }

// How A W is computed; by the errors that its columns can bear.
enum class Product { plain, sliced, exact };

// W's slice and rest, one behind the other; column j is measured by its largest element.
Vector slicesOf(const Vector& w, const Vector& units) {
    const std::size_t n = units.size(), length = n + 1;
    Vector slices(2 * w.size(), 0.0);
    for (std::size_t j = 0; j < n; ++j) {
        double largest = 0.0;
        for (std::size_t i = 0; i <= j; ++i)
            largest = std::max(largest, std::fabs(w[i * length + j]) * units[i]);
        for (std::size_t i = 0; i <= j; ++i) {
            const std::size_t at = i * length + j;
            const double c = largest * kSlice / units[i];
            slices[at] = (w[at] + c) - c;
            slices[at + w.size()] = w[at] - slices[at];
        }
    }
    return slices;
}

// Powers of two near the lengths of the columns of A.
Vector unitsOf(const double* normal, int n) {
    Vector units(count(n));
    for (int i = 0; i < n; ++i)
        units[count(i)] = std::ldexp(1.0, std::ilogb(std::sqrt(normal[i * (n + 2)])));
    return units;
}

// S | B^T P l, S = B^T P B, B = A W.
Vector orthonormalityOf(const Equations& equations, const double* normal, const Vector& w, Product product) {
    constexpr int kBlock = 256;  // rows of B at a time
    const RefinementKernels& kernels = FIELDSCAN_CHOSEN(refinementKernels);
    const int n = equations.n;
    const std::size_t length = count(n) + 1;
    Vector sums(count(n) * length, 0.0), block(count(std::min(kBlock, equations.m)) * length),
        buffer = kernelBuffer(n), units, slices;
    if (product == Product::sliced) {
        units = unitsOf(normal, n);
        slices = slicesOf(w, units);
    }
    for (int first = 0; first < equations.m; first += kBlock) {
        const int rows = std::min(kBlock, equations.m - first);
        const double* const a = equations.rows + count(first) * length;
        if (product == Product::plain)
            kernels.multiplyRows(a, rows, w.data(), n, buffer.data(), block.data());
        else if (product == Product::sliced)
            kernels.multiplyRowsInSlices(a, rows, slices.data(), slices.data() + w.size(), units.data(), n,
                                         buffer.data(), block.data());
        else
            kernels.multiplyRowsExactly(a, rows, w.data(), n, buffer.data(), block.data());
        addToNormal({block.data(), equations.weights + first, rows, n}, sums.data());
    }
    return sums;
}

// Z, rows of n + 1, and x = Z (A Z)^T P l, which errs in the adjusted observations by a few roundings of the
// observations. False when the triangle is not near the true one. W is computed in double-double where the
// rounding errors of an inversion in double, multiplied by those of A, would cost B its orthonormal columns.
bool rootOfCofactors(const Equations& equations, const double* normalMatrix, Vector& factor, Product product,
                     Vector& root, Vector& x) {
    constexpr double kNear = 0.25;  // of S to I, in a pivot
    const int n = equations.n;
    const std::size_t length = count(n) + 1;
    if (product != Product::plain) {
        Vector inverse(factor.size()), buffer = kernelBuffer(n);
        FIELDSCAN_CHOSEN(refinementKernels).invertExactly(factor.data(), n, buffer.data(), inverse.data());
        factor.swap(inverse);
    } else {
        invertTriangle(factor.data(), n);
    }
    const Vector& w = factor;
    const Vector normal = orthonormalityOf(equations, normalMatrix, w, product);
    Vector correction(normal.size());
    if (!(choleskyFactor(normal.data(), n, kNear, correction.data()) > kNear))
        return false;
    invertTriangle(correction.data(), n);
    root.assign(normal.size(), 0.0);
    Vector inner(count(n), 0.0);
    for (int i = 0; i < n; ++i) {
        double* const row = root.data() + count(i) * length;
        for (int k = i; k < n; ++k)
            for (int j = k; j < n; ++j)
                row[j] += w[count(i) * length + count(k)] * correction[count(k) * length + count(j)];
        for (int j = i; j < n; ++j)
            inner[count(j)] +=
                correction[count(i) * length + count(j)] * normal[count(i) * length + count(n)];
    }
    x.assign(count(n), 0.0);
    for (int i = 0; i < n; ++i)
        for (int j = i; j < n; ++j)
            x[count(i)] += root[count(i) * length + count(j)] * inner[count(j)];
    return true;
}

// A^T P (l - A x), rounded to double.
Vector misclosure(const Equations& equations, const ExactVector& x, Vector& buffer) {
    Vector high, low, sums(x.size());
    for (const DoubleDouble& unknown : x) {
        high.push_back(unknown.hi);
        low.push_back(unknown.lo);
    }
    FIELDSCAN_CHOSEN(refinementKernels)
        .misclosure(equations, high.data(), low.data(), buffer.data(), sums.data());
    return sums;
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

// Largest N_ii (N^-1)_ii.
double correlationOf(const double* normal, const double* inverse, int n) {
    double largest = 1.0;
    for (int i = 0; i < n; ++i)
        largest = std::max(largest, normal[i * (n + 2)] * inverse[i * (n + 2)]);
    return largest;
}

// Adds corrections cofactors(A^T P (l - A x)) until they end, as measured by |A correction|, the change of
// the adjusted observations: as a rule each is smaller than the one before by the condition of A times a
// rounding step. The single unknowns need not shrink, and a single step tells little about the others, since
// it may be dominated by what is solved almost exactly.
//
// The last step is the one behind which the next, if it shrinks by `rate` or as little as this one has, could
// change no unknown by more than kUnseen of it. For unknowns near 0 the end is kFinal of the scale, or below
// kRounding of it, where the rounding of the double-double residuals begins to show, a step that does not
// halve the last one. There, an unknown that can neither change the observations by as much nor be told from
// the last correction is 0: else one whose true value is 0 would be left as the rest of a cancellation.
template <class Cofactors>
bool improve(const Equations& equations, const double* normal, const double* inverse, Cofactors cofactors,
             double rate, double* solution) {
    constexpr double kUnseen = 0x1p-57;
    constexpr double kFinal = 0x1p-100;
    constexpr double kRounding = 0x1p-80;
    constexpr double kUncertain = 64.0;  // corrections
    constexpr int kMostSteps = 30;
    const int n = equations.n;
    ExactVector x;
    for (int i = 0; i < n; ++i)
        x.push_back({solution[i], 0.0});
    Vector correction, buffer = kernelBuffer(n);
    const double observations = std::sqrt(squaredLength(equations));
    double change = std::numeric_limits<double>::infinity(), smallest = 0.0;
    bool ended = false, unseen = false;
    for (int step = 0; step < kMostSteps && !ended && !unseen; ++step) {
        const Vector sums = misclosure(equations, x, buffer);
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
        const double next = change * std::max(rate, change / last);
        unseen = true;
        for (int i = 0; i < n; ++i)
            unseen = unseen && next * std::sqrt(inverse[i * (n + 2)]) <= kUnseen * std::fabs(x[count(i)].hi);
    }
    for (int i = 0; i < n; ++i)
        solution[i] = x[count(i)].hi;
    if (unseen)
        return true;
    for (int i = 0; i < n; ++i) {
        const double negligible = std::max(change, smallest) * std::sqrt(inverse[i * (n + 2)]);
        const double uncertain = kUncertain * std::fabs(correction[count(i)]);
        if (std::fabs(solution[i]) <= std::min(negligible, uncertain))
            solution[i] = 0.0;
    }
    return ended;
}

}  // namespace

bool refine(const Equations& equations, const double* normal, double tolerance, double correlation,
            double* solution, double* inverse) {
    constexpr double kMild = 1e4;     // B in double then errs by about 1e-14
    constexpr double kStrong = 1e12;  // B in slices then errs by about 1e-16
    // Of its diagonal: what rounding alone has made. S tells whether the triangle is near the true one.
    constexpr double kSafePivot = 1e-11;
    const int n = equations.n;
    const Product product = correlation <= kMild                         ? Product::plain
                            : correlation <= kStrong && n <= kMostSliced ? Product::sliced
                                                                         : Product::exact;
    // Without a square root there are no weighted equations: N's own triangle has to do.
    const bool rootless = std::any_of(equations.weights, equations.weights + equations.m,
                                      [](double weight) { return weight < 0.0; });
    Vector factor(count(n) * (count(n) + 1)), root, x;
    if (!(choleskyFactor(normal, n, tolerance, factor.data()) > (rootless ? 0.0 : kSafePivot) &&
          rootOfCofactors(equations, normal, factor, product, root, x)) &&
        !(!rootless && orthogonalFactor(equations, factor.data()) &&
          rootOfCofactors(equations, normal, factor, product, root, x)))
        return false;
    multiplyByTranspose(root.data(), n, inverse);
    std::copy(x.begin(), x.end(), solution);
    return improve(
        equations, normal, inverse, [&](const Vector& sums) { return timesRoots(root, n, sums); },
        rootless ? 1.0 : n * kEpsilon * std::sqrt(correlationOf(normal, inverse, n)), solution);
}

bool refineSolution(const Equations& equations, const double* normal, const double* inverse,
                    double* solution) {
    const int n = equations.n;
    return improve(
        equations, normal, inverse, [&](const Vector& sums) { return timesSymmetric(inverse, n, sums); },
        (equations.m + n) * n * kEpsilon * correlationOf(normal, inverse, n), solution);
}

}  // namespace fieldscan
