#include <fieldscan/least_squares.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

#include "adjustment/normal_equations.h"
#include "adjustment/refinement.h"
#include "adjustment/sweep.h"
#include "platform/framework/out_of_memory.h"

using namespace fieldscan;

namespace {

constexpr double kHarmlessCorrelation = 64.0;
constexpr double kHarmlessCancellation = 256.0;

bool allFinite(const CArray<double, double>& array) {
    return std::all_of(array.GetData(), array.GetData() + array.GetSize(),
                       [](double value) { return std::isfinite(value); });
}

// How many times the correlations with the others enlarge the cofactor of an unknown: the solution and the
// cofactors lose about as many units of their last place. Largest of N_ii (N^-1)_ii.
double largestCorrelation(const double* normal, const double* inverse, int n) {
    const std::ptrdiff_t next = n + 2;
    double largest = 1.0;
    for (int i = 0; i < n; ++i) {
        const double enlarged = normal[i * next] * inverse[i * next];
        if (!(enlarged <= largest))
            largest = enlarged;
    }
    return largest;
}

// Whether an unknown is a small difference of large sums, which costs it digits: what the observations would
// let it be exceeds kHarmlessCancellation times what it is. Below their standard deviation unknowns count as
// that large: else the last, tiny corrections of an iteration would call for digits that mean nothing. NaN
// counts as cancelled. `observations` is l^T |P| l.
bool isCancelled(const Equations& equations, double observations, const double* normal, const double* inverse,
                 const double* solution) {
    const int n = equations.n;
    const std::ptrdiff_t length = n + 1;
    double residuals = observations;
    for (int i = 0; i < n; ++i)
        residuals -= normal[i * length + n] * solution[i];
    const double variance = std::max(0.0, residuals) / std::max(1, equations.m - n);
    for (int i = 0; i < n; ++i) {
        const double cofactor = inverse[i * length + i];
        const double square = std::max(solution[i] * solution[i], variance * cofactor);
        if (!(observations * cofactor <= kHarmlessCancellation * kHarmlessCancellation * square))
            return true;
    }
    return false;
}

// N = L D L^T: `factor` holds L^T above its diagonal, and D on it. False when a pivot is singular.
bool factorLdl(const double* normal, int n, double tolerance, double* factor) {
    const std::ptrdiff_t length = n + 1;
    std::copy(normal, normal + n * length, factor);
    for (int k = 0; k < n; ++k) {
        double* pivotRow = factor + k * length;
        const double pivot = pivotRow[k];
        if (isSingularPivot(pivot, normal[k * length + k], n, tolerance))
            return false;
        for (int i = k + 1; i < n; ++i) {
            double* row = factor + i * length;
            const double multiple = pivotRow[i] / pivot;
            for (int j = i; j < n; ++j)
                row[j] -= multiple * pivotRow[j];
        }
        for (int j = k + 1; j < n; ++j)
            pivotRow[j] /= pivot;
    }
    return true;
}

// `vector` becomes the solution of L D L^T x = vector.
void substituteLdl(const double* factor, int n, double* vector) {
    const std::ptrdiff_t length = n + 1;
    for (int k = 0; k < n; ++k)
        for (int j = k + 1; j < n; ++j)
            vector[j] -= factor[k * length + j] * vector[k];
    for (int k = n - 1; k >= 0; --k) {
        vector[k] /= factor[k * length + k];
        for (int j = k + 1; j < n; ++j)
            vector[k] -= factor[k * length + j] * vector[j];
    }
}

}  // namespace

// Each method reads Noeq, uses work and leaves Bcor and the inverse; false when a pivot is singular.

bool CLeastSq::solveByCholesky() {
    constexpr int kSwept = 16;  // unknowns up to which sweeping takes 0.3 to 0.85 of the time
    if (parameterNumber <= kSwept)
        return solveBySweeping();
    return LUDivid() && ForwardSubstiotution() && BackwardSubstiotution() && CalLInverse() &&
           CalNoeqInverse();
}

bool CLeastSq::solveByLdl() {
    const int n = parameterNumber;
    const std::ptrdiff_t length = n + 1;
    double* const factor = work.GetData();
    if (!factorLdl(Noeq.GetData(), n, tolerance, factor))
        return false;
    for (int i = 0; i < n; ++i)
        Bcor[i] = Noeq[static_cast<int>(i * length) + n];
    substituteLdl(factor, n, Bcor.GetData());
    for (int i = 0; i < n; ++i) {
        double* row = inverse.GetData() + i * length;
        std::fill(row, row + length, 0.0);
        row[i] = 1.0;
        substituteLdl(factor, n, row);
    }
    mirror(inverse.GetData(), n);
    return true;
}

bool CLeastSq::solveBySweeping() {
    return sweep(Noeq.GetData(), parameterNumber, tolerance, work.GetData(), Bcor.GetData(),
                 inverse.GetData());
}

int CLeastSq::NewChores() { return solveBy(&CLeastSq::solveByCholesky); }
int CLeastSq::PIChores() { return solveBy(&CLeastSq::solveByLdl); }
int CLeastSq::SwpMat() { return solveBy(&CLeastSq::solveBySweeping); }

int CLeastSq::solveBy(bool (CLeastSq::*method)()) {
    if (!hasUnknowns())
        return 0;
    const int solved = zeroIfOutOfMemory([&] { return CheckNoeq() && solveAndRefine(method); });
    if (!solved) {
        InitParameter(Bcor, std::numeric_limits<double>::quiet_NaN());
        InitParameter(inverse, std::numeric_limits<double>::quiet_NaN());
    }
    return solved;
}

bool CLeastSq::solveAndRefine(bool (CLeastSq::*method)()) {
    const auto finite = [this] { return allFinite(Bcor) && allFinite(inverse); };
    const bool direct = (this->*method)() && finite();
    if (m_formed < 0 || !hasEquations(m_formed))
        return direct;
    const Equations equations{Obeq.GetData(), Weight.GetData(), m_formed, parameterNumber};
    const double* normal = Noeq.GetData();
    if (!direct) {
        InitBcor();
        const double unknown = std::numeric_limits<double>::infinity();
        return refine(equations, m_observations, normal, tolerance, unknown, Bcor.GetData(),
                      inverse.GetData()) &&
               finite();
    }
    const double correlation = largestCorrelation(normal, inverse.GetData(), equations.n);
    if (correlation > kHarmlessCorrelation)
        return refine(equations, m_observations, normal, tolerance, correlation, Bcor.GetData(),
                      inverse.GetData()) &&
               finite();
    return !isCancelled(equations, m_observations, normal, inverse.GetData(), Bcor.GetData()) ||
           (refineSolution(equations, m_observations, normal, inverse.GetData(), Bcor.GetData()) && finite());
}

// ---- Single steps ----

int CLeastSq::LUDivid() {
    if (!hasUnknowns())
        return 0;
    return zeroIfOutOfMemory([&] {
        return choleskyFactor(Noeq.GetData(), parameterNumber, tolerance, work.GetData()) > 0.0 ? 1 : 0;
    });
}

int CLeastSq::ForwardSubstiotution() {
    if (!hasUnknowns())
        return 0;
    const int n = parameterNumber;
    for (int i = 0; i < n; ++i)
        Bcor[i] = work[i * (n + 1) + n];
    solveTransposed(work.GetData(), n, Bcor.GetData());
    for (int i = 0; i < n; ++i)
        work[i * (n + 1) + n] = Bcor[i];
    return 1;
}

int CLeastSq::BackwardSubstiotution() {
    if (!hasUnknowns())
        return 0;
    const int n = parameterNumber;
    for (int i = 0; i < n; ++i)
        Bcor[i] = work[i * (n + 1) + n];
    solveUpper(work.GetData(), n, Bcor.GetData());
    return 1;
}

int CLeastSq::CalLInverse() {
    if (!hasUnknowns())
        return 0;
    invertTriangle(work.GetData(), parameterNumber);
    return 1;
}

int CLeastSq::CalNoeqInverse() {
    if (!hasUnknowns())
        return 0;
    return zeroIfOutOfMemory([&] {
        multiplyByTranspose(work.GetData(), parameterNumber, inverse.GetData());
        return 1;
    });
}
