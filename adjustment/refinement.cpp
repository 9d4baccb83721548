#include "adjustment/refinement.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <numeric>
#include <vector>

#include "adjustment/buffer.h"
#include "adjustment/double_double.h"
#include "adjustment/exact_normal_kernels.h"
#include "adjustment/normal_kernels.h"
#include "adjustment/orthogonal_factor.h"
#include "adjustment/refinement_kernels.h"
#include "platform/framework/instruction_set.h"

namespace fieldscan {

namespace {

using Vector = std::vector<double>;

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

// A^T P (l - A x), rounded to double, from the equations.
class Misclosure {
public:
    explicit Misclosure(const Equations& equations)
        : m_equations(equations), m_buffer(kernelBuffer(equations.n)) {}

    void operator()(const double* high, const double* low, double* sums) {
        FIELDSCAN_CHOSEN(refinementKernels).misclosure(m_equations, high, low, m_buffer.data(), sums);
    }

private:
    const Equations& m_equations;
    Vector m_buffer;
};

// Z Z^T vector.
void timesRoots(const Vector& root, int n, const double* vector, double* result) {
    const std::size_t length = count(n) + 1;
    Vector inner(count(n), 0.0);
    std::fill(result, result + n, 0.0);
    for (int i = 0; i < n; ++i)
        for (int j = i; j < n; ++j)
            inner[count(j)] += root[count(i) * length + count(j)] * vector[i];
    for (int i = 0; i < n; ++i)
        for (int j = i; j < n; ++j)
            result[i] += root[count(i) * length + count(j)] * inner[count(j)];
}

void timesSymmetric(const double* matrix, int n, const double* vector, double* result) {
    for (int i = 0; i < n; ++i, matrix += n + 1)
        result[i] = std::inner_product(matrix, matrix + n, vector, 0.0);
}

// What the unknowns amount to in the observations at most. With the observations themselves it is the scale
// that the rounding of residuals is a part of.
double sizeInObservations(const double* normal, int n, const double* x) {
    double size = 0.0;
    for (int i = 0; i < n; ++i)
        size = std::max(size, std::fabs(x[i]) * std::sqrt(normal[i * (n + 1) + i]));
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
// change no unknown by more than kUnseen of it, nor could the error of the misclosures, of up to `noise`
// times the scale. For unknowns near 0 the end is kFinal of the scale, or below kRounding of it, where the
// rounding of the double-double residuals begins to show, a step that does not halve the last one. There, an
// unknown that can neither change the observations by as much nor be told from the last correction is 0: else
// one whose true value is 0 would be left as the rest of a cancellation. With noise there is no such end:
// false.
template <class Misclosures, class Cofactors>
bool improve(Misclosures misclosures, double observations, const double* normal, const double* inverse, int n,
             Cofactors cofactors, double rate, double noise, double* solution) {
    constexpr double kUnseen = 0x1p-57;
    constexpr double kFinal = 0x1p-100;
    constexpr double kRounding = 0x1p-80;
    constexpr double kUncertain = 64.0;  // corrections
    constexpr int kMostSteps = 30;
    const int rowLength = exactRowLength(n);
    Vector vectors(4 * count(rowLength));
    double* const high = vectors.data();
    double* const low = high + rowLength;
    double* const sums = low + rowLength;
    double* const correction = sums + rowLength;
    std::copy(solution, solution + n, high);
    double change = std::numeric_limits<double>::infinity(), smallest = 0.0;
    bool ended = false, unseen = false;
    for (int step = 0; step < kMostSteps && !ended && !unseen; ++step) {
        misclosures(high, low, sums);
        cofactors(sums, correction);
        const double last = change;
        change = std::sqrt(std::fabs(std::inner_product(correction, correction + n, sums, 0.0)));
        for (int i = 0; i < n; ++i) {
            const DoubleDouble x = DoubleDouble{high[i], low[i]} + DoubleDouble{correction[i], 0.0};
            high[i] = x.hi;
            low[i] = x.lo;
        }
        const double scale = std::max(std::sqrt(observations), sizeInObservations(normal, n, high));
        if (!std::isfinite(change) || !std::isfinite(scale))
            return false;
        smallest = kFinal * scale;
        ended = change <= std::max(smallest, noise * scale) ||
                (change <= kRounding * scale && change > 0.5 * last);
        const double next =
            std::max(change * std::max(rate, change / last) / kUnseen, noise * scale / kEpsilon);
        unseen = true;
        for (int i = 0; i < n; ++i)
            unseen = unseen && next * std::sqrt(inverse[i * (n + 2)]) <= std::fabs(high[i]);
    }
    std::copy(high, high + n, solution);
    if (unseen || noise > 0.0)
        return unseen;
    for (int i = 0; i < n; ++i) {
        const double negligible = std::max(change, smallest) * std::sqrt(inverse[i * (n + 2)]);
        const double uncertain = kUncertain * std::fabs(correction[i]);
        if (std::fabs(solution[i]) <= std::min(negligible, uncertain))
            solution[i] = 0.0;
    }
    return ended;
}

double rateOf(const double* normal, const double* inverse, int n) {
    return n * kEpsilon * std::sqrt(correlationOf(normal, inverse, n));
}

// ---- Normal equations in double-double ----

// Powers of two, at least the lengths of the columns and of the observations. False when products could
// overflow, or their rests underflow, and when the observations are 0.
bool scalesOf(const double* normal, int n, double observations, double* scales) {
    constexpr double kLeast = 0x1p-800, kMost = 0x1p800;
    for (int i = 0; i <= n; ++i) {
        const double square = i < n ? normal[i * (n + 2)] : observations;
        if (!(square >= kLeast && square <= kMost))
            return false;
        scales[i] = std::ldexp(1.0, std::ilogb(std::sqrt(square)) + 1);
    }
    return true;
}

// V becomes 2 V - V N V, which has twice the correct digits, until these are all. False when they do not
// double; V is of no use then.
bool improveInverse(const double* exactNormal, int n, double* inverse) {
    constexpr double kLast = 0x1p-30;  // the next correction would be the square
    constexpr int kMostSteps = 3;
    const int length = n + 1, rowLength = exactRowLength(n);
    Vector room(count(n) * count(rowLength + length));
    double* const residuals = room.data();
    double* const correction = residuals + n * rowLength;
    for (int step = 0; step < kMostSteps; ++step) {
        FIELDSCAN_CHOSEN(exactNormalKernels).inverseResiduals(exactNormal, inverse, n, residuals);
        std::fill(correction, correction + n * length, 0.0);
        double largest = 0.0;
        for (int i = 0; i < n; ++i) {
            double* const row = correction + i * length;
            for (int k = 0; k < n; ++k)
                for (int j = i; j < n; ++j)
                    row[j] += residuals[i * rowLength + k] * inverse[k * length + j];
            for (int j = i; j < n; ++j)
                largest = std::max(largest,
                                   row[j] * row[j] / (inverse[i * (length + 1)] * inverse[j * (length + 1)]));
        }
        if (!(largest < 0.1))
            return false;
        for (int i = 0; i < n; ++i)
            for (int j = i; j < n; ++j)
                inverse[i * length + j] += correction[i * length + j];
        mirror(inverse, n);
        if (largest <= kLast * kLast)
            return true;
    }
    return false;
}

// What refineFew has made exact.
enum class Exactness { no, cofactors, all };

// From N and A^T P l in double-double: the cofactors, and the unknowns too where their own rounding, enlarged
// by the correlations, can change none by a unit of its last place. `inverse` begins as that of N; what it
// holds is of no use behind Exactness::no. (Takes 0.3 of the time of orthonormal equations at 2000 x 4, 0.5
// at 500 x 12, 0.6 at 5000 x 30.)
Exactness refineFew(const Equations& equations, bool unitWeights, const double* normal, double correlation,
                    double observations, double* solution, double* inverse) {
    constexpr int kMost = 32;           // unknowns: beyond, the orthonormal equations are as fast
    constexpr double kError = 0x1p-48;  // of a cofactor
    const int n = equations.n;
    const double error = std::sqrt(n) * kExactError * (equations.m / 8.0 + 8.0);
    if (n > kMost || !(correlation * n * error <= kError))
        return Exactness::no;
    double scales[kMost + 1];
    if (!scalesOf(normal, n, observations, scales))
        return Exactness::no;
    const ExactNormalKernels& kernels = FIELDSCAN_CHOSEN(exactNormalKernels);
    const int size = exactNormalSize(n);
    Buffer buffer(size + exactBufferSize(n));
    double* const exactNormal = buffer.data();
    kernels.form(equations, unitWeights, scales, exactNormal + size, exactNormal);
    if (!improveInverse(exactNormal, n, inverse))
        return Exactness::no;
    const auto misclosures = [&](const double* high, const double* low, double* sums) {
        kernels.misclosure(exactNormal, high, low, n, sums);
    };
    const auto cofactors = [&](const double* sums, double* product) {
        timesSymmetric(inverse, n, sums, product);
    };
    return improve(misclosures, observations, normal, inverse, n, cofactors, rateOf(normal, inverse, n),
                   std::sqrt(correlation) * error, solution)
               ? Exactness::all
               : Exactness::cofactors;
}

}  // namespace

bool refine(const Equations& equations, double observations, const double* normal, double tolerance,
            double correlation, double* solution, double* inverse) {
    constexpr double kMild = 1e4;     // B in double then errs by about 1e-14
    constexpr double kStrong = 1e12;  // B in slices then errs by about 1e-16
    // Of its diagonal: what rounding alone has made. S tells whether the triangle is near the true one.
    constexpr double kSafePivot = 1e-11;
    const int n = equations.n;
    const bool unitWeights = FIELDSCAN_CHOSEN(normalKernels).weightsAreOne(equations);
    // Without a square root there are no weighted equations: N's own triangle has to do.
    const bool rootless = !unitWeights && std::any_of(equations.weights, equations.weights + equations.m,
                                                      [](double weight) { return weight < 0.0; });
    const Exactness exactness =
        rootless ? Exactness::no
                 : refineFew(equations, unitWeights, normal, correlation, observations, solution, inverse);
    if (exactness == Exactness::all)
        return true;
    const auto symmetric = [=](const double* sums, double* product) {
        timesSymmetric(inverse, n, sums, product);
    };
    if (exactness == Exactness::cofactors)
        return improve(Misclosure(equations), observations, normal, inverse, n, symmetric,
                       rateOf(normal, inverse, n), 0.0, solution);
    const Product product = correlation <= kMild                         ? Product::plain
                            : correlation <= kStrong && n <= kMostSliced ? Product::sliced
                                                                         : Product::exact;
    Vector factor(count(n) * (count(n) + 1)), root, x;
    if (!(choleskyFactor(normal, n, tolerance, factor.data()) > (rootless ? 0.0 : kSafePivot) &&
          rootOfCofactors(equations, normal, factor, product, root, x)) &&
        !(!rootless && orthogonalFactor(equations, factor.data()) &&
          rootOfCofactors(equations, normal, factor, product, root, x)))
        return false;
    multiplyByTranspose(root.data(), n, inverse);
    std::copy(x.begin(), x.end(), solution);
    const auto roots = [&](const double* sums, double* result) { timesRoots(root, n, sums, result); };
    return improve(Misclosure(equations), observations, normal, inverse, n, roots,
                   rootless ? 1.0 : rateOf(normal, inverse, n), 0.0, solution);
}

bool refineSolution(const Equations& equations, double observations, const double* normal,
                    const double* inverse, double* solution) {
    const int n = equations.n;
    const auto cofactors = [=](const double* sums, double* result) {
        timesSymmetric(inverse, n, sums, result);
    };
    return improve(Misclosure(equations), observations, normal, inverse, n, cofactors,
                   (equations.m + n) * n * kEpsilon * correlationOf(normal, inverse, n), 0.0, solution);
}

}  // namespace fieldscan
