// CPrecision: redundancies, tests of residuals, cofactors and rank from the orthonormal columns Q and the
// root U of the cofactors, sqrt(P) A U = Q (numerics/gram_schmidt.h). Legend and sources:
// fieldscan/precision.h.
#include <fieldscan/precision.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <utility>
#include <vector>

#include "numerics/gram_schmidt.h"
#include "platform/framework/out_of_memory.h"

using namespace fieldscan;

namespace {

constexpr double kEpsilon = std::numeric_limits<double>::epsilon();
constexpr double kNotControlled = 1e-8;
constexpr double kSolved = 4.0;  // times what rounding may leave; solved systems leave less than 0.2

// With more equations N is not formed in double, whose sums may err by m eps (solution.cpp).
constexpr int kMostInDouble = 45000;
static_assert(kMostInDouble * kEpsilon <= 1e-11 && (kMostInDouble + 100) * kEpsilon > 1e-11);

const double* rowOf(const CLeastSq& adjustment, int k) {
    return adjustment.Obeq.GetData() + static_cast<std::ptrdiff_t>(k) * (adjustment.parameterNumber + 1);
}

// The columns of sqrt(P) A; none when there are no equations or one is refused (CalDefect).
std::vector<Column> weightedColumns(const CLeastSq& adjustment) {
    const int m = adjustment.ObeqSize, n = adjustment.parameterNumber;
    if (m < 1 || n < 1 || adjustment.Obeq.GetSize() < (n + 1LL) * m || adjustment.Weight.GetSize() < m)
        return {};
    std::vector<Column> columns(static_cast<std::size_t>(n));
    for (Column& column : columns)
        column.reserve(static_cast<std::size_t>(m) + columns.size());
    for (int k = 0; k < m; ++k) {
        const double* element = rowOf(adjustment, k);
        const double root = std::sqrt(adjustment.Weight[k]);  // NaN for a negative weight
        if (!std::all_of(element, element + n + 1,
                         [=](double a) { return std::fabs(a) <= 1e140 && std::fabs(root * a) <= 1e140; }))
            return {};
        for (Column& column : columns)
            column.push_back(root * *element++);
    }
    return columns;
}

// Residuals, their sum of squares and the degrees of freedom. False unless the unknowns solve the equations:
// then Q^T sqrt(P) v is 0 but for rounding, relative to the terms of v: n eps from computing v, and up to m
// eps from forming N in double.
bool fillResiduals(const CLeastSq& adjustment, const GramSchmidt& basis, CPrecision& to) {
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
    const double rounding =
        kSolved * (n + std::min(m, kMostInDouble)) * kEpsilon * std::sqrt(innerProduct(terms, terms, m));
    return std::isfinite(to.sumOfSquares) &&
           std::all_of(basis.columns.begin(), basis.columns.end(), [&](const Column& column) {
               return std::fabs(innerProduct(weighted, column, m)) <= rounding;
           });
}

bool fillFigures(const CLeastSq& adjustment, double delta0, CPrecision& to) {
    const int m = adjustment.ObeqSize, n = adjustment.parameterNumber;
    const GramSchmidt basis(weightedColumns(adjustment), m);
    const std::vector<Column>& columns = basis.columns;
    if (columns.empty() || basis.rank < columns.size() || adjustment.Bcor.GetSize() != n ||
        !fillResiduals(adjustment, basis, to) || to.degreesOfFreedom < 1)
        return false;
    to.estimatedSigma0 = std::sqrt(to.sumOfSquares / to.degreesOfFreedom);
    double largest = -1.0;
    for (int k = 0; k < m; ++k) {
        CEquationPrecision& equation = to.equations[k];  // all 0 but the residual
        double leverage = 0.0;                           // p a Q a^T
        for (const Column& column : columns)
            leverage += column.begin()[k] * column.begin()[k];
        equation.redundancy = adjustment.Weight[k] > 0.0 ? std::max(0.0, 1.0 - leverage) : 0.0;
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

// From the eigenvalues and an eigenvector of the cofactors of the two unknowns.
int CPrecision::CalEllipse(int i, int j, double sigma, double& major, double& minor,
                           double& direction) const {
    constexpr double kPi = 3.141592653589793;
    const int n = parameterNumber;
    if (i < 0 || j < 0 || i >= n || j >= n || i == j)
        return 0;
    const double qii = cofactors[i * n + i], qjj = cofactors[j * n + j], qij = cofactors[i * n + j];
    const double root = std::sqrt((qii - qjj) * (qii - qjj) + 4.0 * qij * qij);
    major = sigma * std::sqrt(0.5 * (qii + qjj + root));
    // The product of the eigenvalues over the larger: (qii + qjj - root) / 2 cancels for a narrow ellipse.
    minor = sigma * std::sqrt(std::max(0.0, (qii * qjj - qij * qij) / (0.5 * (qii + qjj + root))));
    direction = 0.5 * std::atan2(2.0 * qij, qii - qjj);
    if (direction < 0.0)
        direction += kPi;
    if (!(direction < kPi))  // it was a rounding step below 0
        direction = 0.0;
    return 1;
}

// An unknown is determined when it is 0 in all vectors of the null space.
int CPrecision::CalDefect(const CLeastSq& adjustment, CArray<int, int>& undetermined) {
    constexpr double kUndetermined = 1e-8;
    undetermined.RemoveAll();
    int defect = -1;
    zeroIfOutOfMemory([&] {
        const GramSchmidt basis(weightedColumns(adjustment), adjustment.ObeqSize);
        const int n = static_cast<int>(basis.columns.size());
        std::vector<Column> unnoticed;  // changes of the unknowns that no equation notices
        for (std::size_t c = basis.rank; c < basis.columns.size(); ++c)
            unnoticed.emplace_back(basis.columns[c].begin() + adjustment.ObeqSize, basis.columns[c].end());
        const GramSchmidt nullSpace(std::move(unnoticed), n);
        CArray<int, int> found;
        for (int i = 0; i < n; ++i) {
            double part = 0.0;
            for (const Column& column : nullSpace.columns)
                part += column.begin()[i] * column.begin()[i];
            if (part > kUndetermined * kUndetermined)
                found.Add(i);
        }
        undetermined.Swap(found);
        defect = n > 0 ? static_cast<int>(nullSpace.columns.size()) : -1;
        return 1;
    });
    return defect;
}
