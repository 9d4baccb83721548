#include <fieldscan/precision.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <numeric>
#include <utility>
#include <vector>

#include "platform/framework/out_of_memory.h"

using namespace fieldscan;

namespace {

constexpr double kEpsilon = std::numeric_limits<double>::epsilon();
constexpr double kNotControlled = 1e-8;
constexpr double kSolved = 4.0;  // times what rounding may leave; solved systems need less than 0.2
constexpr int kRefined = 45000;  // equations from which N in double is not good enough: docs/adjustment.md

using Column = std::vector<double>;

// [M; I], the columns of M scaled to length 1, becomes [Q; U] with M U = Q: Q^T Q = I in the first `rank`
// columns, M U = 0 in the others. So U U^T is the inverse of M^T M when there are no others; else they span
// the null space of M.
//
// Modified Gram-Schmidt with pivoting, each column orthogonalised twice (Bjorck, Numerical Methods for Least
// Squares Problems, 2.4): Q is orthonormal to a few n eps whatever the condition. The next column is the one
// of which most is left, a part d of its length. Its direction errs by eps / d, and the columns that follow
// have at most d in it: they err by eps, and of a dependent one a few n eps are left. Orthogonalised once, an
// equation that nothing controls gets r up to 1e-8 where columns differ by 1e-3 of themselves, 1e-4 at 1e-7;
// twice, 1e-15.
struct Orthonormal {
    Orthonormal(std::vector<Column> matrix, int rows) : columns(std::move(matrix)), m(rows) {
        const std::size_t n = columns.size();
        const double least = std::max(1e-13, 16.0 * static_cast<double>(n) * kEpsilon);
        for (Column& column : columns) {
            lengths.push_back(length(column));
            if (lengths.back() > 0.0)
                multiply(column, 1.0 / lengths.back());
            column.resize(column.size() + n);
            column[column.size() - n + lengths.size() - 1] = 1.0;
        }
        for (; rank < n; ++rank) {
            std::size_t most = rank;
            double left = 0.0;
            for (std::size_t i = rank; i < n; ++i) {
                const double candidate = length(columns[i]);
                if (candidate > left) {
                    left = candidate;
                    most = i;
                }
            }
            Column& next = columns[rank];
            next.swap(columns[most]);
            for (std::size_t i = 0; i < rank; ++i)
                separate(next, columns[i]);
            left = length(next);
            if (!(left > least))
                return;
            multiply(next, 1.0 / left);
            for (std::size_t i = rank + 1; i < n; ++i)
                separate(columns[i], next);
        }
    }

    // In eight partial sums: one would wait for each addition.
    double product(const Column& a, const Column& b) const {
        double sums[8] = {};
        const double *x = a.data(), *y = b.data();
        std::ptrdiff_t k = 0;
        for (; k + 8 <= m; k += 8)
            for (int i = 0; i < 8; ++i)
                sums[i] += x[k + i] * y[k + i];
        for (; k < m; ++k)
            sums[0] += x[k] * y[k];
        return std::accumulate(sums, sums + 8, 0.0);
    }
    double length(const Column& a) const { return std::sqrt(product(a, a)); }
    static void multiply(Column& column, double factor) {
        for (double& element : column)
            element *= factor;
    }
    // Makes `column` orthogonal to `unit`.
    void separate(Column& column, const Column& unit) const {
        const double part = product(column, unit);
        for (std::size_t k = 0; k < column.size(); ++k)
            column[k] -= part * unit[k];
    }

    std::vector<Column> columns;
    std::ptrdiff_t m;
    std::size_t rank = 0;
    Column lengths;  // of the columns of M
};

const double* rowOf(const CLeastSq& adjustment, int k) {
    return adjustment.Obeq.GetData() + static_cast<std::ptrdiff_t>(k) * (adjustment.parameterNumber + 1);
}

// The columns of sqrt(P) A; none for equations that the header refuses.
std::vector<Column> weightedColumns(const CLeastSq& adjustment) {
    const int m = adjustment.ObeqSize, n = adjustment.parameterNumber;
    if (m < 1 || n < 1 || adjustment.Obeq.GetSize() < (n + 1LL) * m || adjustment.Weight.GetSize() < m)
        return {};
    std::vector<Column> columns(static_cast<std::size_t>(n));
    for (Column& column : columns)
        column.reserve(static_cast<std::size_t>(m) + columns.size());
    for (int k = 0; k < m; ++k) {
        const double* element = rowOf(adjustment, k);
        const double root = std::sqrt(adjustment.Weight[k]);  // NaN of a negative weight
        if (!std::all_of(element, element + n + 1,
                         [=](double a) { return std::fabs(a) <= 1e140 && std::fabs(root * a) <= 1e140; }))
            return {};
        for (Column& column : columns)
            column.push_back(root * *element++);
    }
    return columns;
}

// Residuals, their sum of squares, the degrees of freedom. False unless the unknowns solve the equations:
// Q^T sqrt(P) v is 0 then but for rounding, which grows with the terms of v: n eps of computing it, m eps of
// forming N in double.
bool fillResiduals(const CLeastSq& adjustment, const Orthonormal& basis, CPrecision& to) {
    const int m = adjustment.ObeqSize, n = adjustment.parameterNumber;
    Column weighted, terms;
    to.equations.SetSize(m);
    for (int k = 0; k < m; ++k) {
        const double* const row = rowOf(adjustment, k);
        double computed = 0.0, term = std::fabs(row[n]);
        for (int i = 0; i < n; ++i) {
            computed += row[i] * adjustment.Bcor[i];
            term += std::fabs(row[i] * adjustment.Bcor[i]);
        }
        const double v = row[n] - computed, weight = adjustment.Weight[k];
        weighted.push_back(std::sqrt(weight) * v);
        terms.push_back(std::sqrt(weight) * term);
        to.equations[k].residual = v;
        to.sumOfSquares += weight * v * v;
        to.degreesOfFreedom += weight > 0.0 ? 1 : 0;
    }
    to.degreesOfFreedom -= n;
    const double rounding = kSolved * (n + std::min(m, kRefined)) * kEpsilon * basis.length(terms);
    return std::isfinite(to.sumOfSquares) &&
           std::all_of(basis.columns.begin(), basis.columns.end(), [&](const Column& column) {
               return std::fabs(basis.product(weighted, column)) <= rounding;
           });
}

bool fillFigures(const CLeastSq& adjustment, double delta0, CPrecision& to) {
    const int m = adjustment.ObeqSize, n = adjustment.parameterNumber;
    const Orthonormal basis(weightedColumns(adjustment), m);
    const std::vector<Column>& columns = basis.columns;
    if (columns.empty() || basis.rank < columns.size() || adjustment.Bcor.GetSize() != n ||
        !fillResiduals(adjustment, basis, to) || to.degreesOfFreedom < 1)
        return false;
    to.estimatedSigma0 = std::sqrt(to.sumOfSquares / to.degreesOfFreedom);
    double largest = -1.0;
    for (int k = 0; k < m; ++k) {
        CEquationPrecision& equation = to.equations[k];  // 0, but for the residual
        double cofactor = 0.0;                           // p a Q a^T
        for (const Column& column : columns)
            cofactor += column.begin()[k] * column.begin()[k];
        equation.redundancy = adjustment.Weight[k] > 0.0 ? std::max(0.0, 1.0 - cofactor) : 0.0;
        equation.controlled = equation.redundancy > kNotControlled ? 1 : 0;
        equation.detectable = std::numeric_limits<double>::max();
        if (!equation.controlled)
            continue;
        const double root = std::sqrt(adjustment.Weight[k]), rootR = std::sqrt(equation.redundancy);
        const double ratio = equation.residual * root / rootR;
        equation.standardized = ratio / to.sigma0;
        equation.tau = to.estimatedSigma0 > 0.0 ? ratio / to.estimatedSigma0 : 0.0;
        equation.detectable = delta0 * to.sigma0 / root / rootR;
        if (std::fabs(equation.standardized) > largest) {
            largest = std::fabs(equation.standardized);
            to.largest = k;
        }
    }
    to.parameterNumber = n;
    to.cofactors.SetSize(n * n);
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j) {
            double sum = 0.0;
            for (const Column& column : columns)
                sum += column.begin()[m + i] * column.begin()[m + j];
            to.cofactors[i * n + j] = sum / basis.lengths.begin()[i] / basis.lengths.begin()[j];
        }
    return true;
}

}  // namespace

CPrecision::CPrecision() { Init(); }

void CPrecision::Init() {
    sigma0 = estimatedSigma0 = sumOfSquares = 0.0;
    parameterNumber = degreesOfFreedom = 0;
    largest = -1;
    equations.RemoveAll();
    cofactors.RemoveAll();
}

int CPrecision::CalFigures(const CLeastSq& adjustment, double sigma, double delta0) {
    Init();
    sigma0 = sigma;
    const bool positive = sigma > 0.0 && delta0 > 0.0 && std::isfinite(sigma) && std::isfinite(delta0);
    if (positive && zeroIfOutOfMemory([&] { return fillFigures(adjustment, delta0, *this) ? 1 : 0; }))
        return 1;
    Init();
    return 0;
}

int CPrecision::TestGlobal(double level, double& lower, double& upper) const {
    if (degreesOfFreedom < 1 || !(level >= 1e-15 && level < 1.0))
        return -1;
    lower = ChiSquareQuantile(0.5 * level, degreesOfFreedom);
    upper = ChiSquareQuantile(1.0 - 0.5 * level, degreesOfFreedom);
    const double statistic = sumOfSquares / sigma0 / sigma0;
    return statistic >= lower && statistic <= upper ? 1 : 0;
}

// Eigenvalues and eigenvector of the cofactors of the two unknowns.
int CPrecision::CalEllipse(int i, int j, double sigma, double& major, double& minor,
                           double& direction) const {
    constexpr double kPi = 3.141592653589793;
    const int n = parameterNumber;
    if (i < 0 || j < 0 || i >= n || j >= n || i == j)
        return 0;
    const double qii = cofactors[i * n + i], qjj = cofactors[j * n + j], qij = cofactors[i * n + j];
    const double root = std::sqrt((qii - qjj) * (qii - qjj) + 4.0 * qij * qij);
    major = sigma * std::sqrt(0.5 * (qii + qjj + root));
    // Not (qii + qjj - root) / 2, of which a narrow ellipse leaves no digit.
    minor = sigma * std::sqrt(std::max(0.0, (qii * qjj - qij * qij) / (0.5 * (qii + qjj + root))));
    direction = 0.5 * std::atan2(2.0 * qij, qii - qjj);
    if (direction < 0.0)
        direction += kPi;
    if (!(direction < kPi))  // a rounding step below 0
        direction = 0.0;
    return 1;
}

// An unknown is determined when no vector of the null space has a part of it.
int CPrecision::CalDefect(const CLeastSq& adjustment, CArray<int, int>& undetermined) {
    constexpr double kPart = 1e-8;
    undetermined.RemoveAll();
    int defect = -1;
    zeroIfOutOfMemory([&] {
        const Orthonormal basis(weightedColumns(adjustment), adjustment.ObeqSize);
        const int n = static_cast<int>(basis.columns.size());
        std::vector<Column> unnoticed;
        for (std::size_t c = basis.rank; c < basis.columns.size(); ++c)
            unnoticed.emplace_back(basis.columns[c].begin() + adjustment.ObeqSize, basis.columns[c].end());
        const Orthonormal nullSpace(std::move(unnoticed), n);
        CArray<int, int> found;
        for (int i = 0; i < n; ++i) {
            double part = 0.0;
            for (const Column& column : nullSpace.columns)
                part += column.begin()[i] * column.begin()[i];
            if (part > kPart * kPart)
                found.Add(i);
        }
        undetermined.Swap(found);
        defect = n > 0 ? static_cast<int>(nullSpace.columns.size()) : -1;
        return 1;
    });
    return defect;
}
