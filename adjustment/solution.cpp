// How CLeastSq solves N x = A^T P l and computes the cofactors Q = N^-1: three ways, and which one is taken.
//
//   A  m x n coefficients     l  observations       P  weights          N = A^T P A
//   x  unknowns               v = l - A x           eps = 2^-52         pll = l^T |P| l
//
//   way                   when                              x and Q err by   2000 x 4   5000 x 30
//   1 N in double         VIF <= 64, m eps <= 1e-11, no     some 1e-14          3 us      170 us
//                         unknown cancels, no negative
//                         weight
//   2 N in double-double  else, VIF n error <= 2^-48, up    the last digit     10 us      530 us
//                         to 512 unknowns, no negative
//                         weight; or N was entered
//   3 orthonormal         else                              the last digit    160 us     5600 us
//     equations
//
//   VIF      variance inflation factor, largest N_ii Q_ii of way 1: how much correlations cost x and Q
//   m eps    how much forming N in the order of the equations may cost them
//   cancels  |x_i| <= sqrt(pll Q_ii) (Cauchy-Schwarz). x_i cancels when it and its standard deviation are
//            below 1/256 of that: two or three digits are lost
//   error    of N in double-double, sqrt(n) (m / 8 + 8) 2^-105. So way 2 reaches VIFs of 7e13 with 2000 x 4,
//            of 1e12 with 5000 x 30
//
// (Times of Solve() on an AMD EPYC with AVX-512.)
//
// Way 1: Cholesky (PIChores; NewChores beyond 16 unknowns) or the sweep operator (SwpMat; NewChores up to 16,
// where it takes 0.3 to 0.85 of the time).
//
// Way 2 begins with x and Q of way 1. Q is improved by Schulz's iteration (ExactGram::improveInverse), x by
// iterative refinement with the residuals A^T P l - N x; where the error of N could show in an unknown, with
// those of the equations, A^T P (l - A x).
//
// Way 3 needs nothing of way 1: a root Z of Q = Z Z^T is computed from the equations
// (numerics/orthonormal.h), x by refinement with the residuals of the equations.
//
// Normal equations that were entered by SetNoeq, or no longer belong to the equations, are taken as exact: x
// is refined with b - N x, and Q by Schulz's iteration for VIFs above 64. They are refused where 64 n eps VIF
// > 1: N_kk / VIF is the last pivot where unknown k comes last, and may be rounding then (isSingularPivot).
#include <fieldscan/least_squares.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <numeric>
#include <vector>

#include "numerics/exact_sums.h"
#include "numerics/gram.h"
#include "numerics/iterative_refinement.h"
#include "numerics/orthonormal.h"
#include "numerics/sweep.h"
#include "numerics/triangle.h"
#include "numerics/workspace.h"
#include "platform/framework/out_of_memory.h"

using namespace fieldscan;

namespace {

using Vector = std::vector<double>;

constexpr double kEpsilon = std::numeric_limits<double>::epsilon();
constexpr double kHarmlessInflation = 64.0;  // costs two digits of sixteen
constexpr double kHarmlessForming = 1e-11;   // 45000 equations
constexpr double kHarmlessCancellation = 256.0;
constexpr int kMostInDoubleDouble = 512;      // unknowns: 20 MB of partial sums
constexpr double kErrorOfCofactor = 0x1p-48;  // relative
constexpr double kRounding = 0x1p-104;        // of double-double, for each product of a residual

bool allFinite(const CArray<double, double>& array) {
    return std::all_of(array.GetData(), array.GetData() + array.GetSize(),
                       [](double value) { return std::isfinite(value); });
}

// The equations, N | A^T P l as formed from them, and pll, negated when a weight is negative; or N | b as
// entered, without equations and with pll 0. x and Q come from way 1, and `inflation` is their VIF, infinite
// when way 1 failed.
struct System {
    WeightedRows equations;
    const double* normal;
    double pll;
    double inflation;
    double* solution;
    double* inverse;
    int n;
};

// True when an unknown cancels: it is a small difference of large sums. One below its standard deviation
// counts as that large: else the last, tiny corrections of an iteration would call for meaningless digits.
// NaN cancels.
bool cancels(const System& s) {
    const std::ptrdiff_t length = s.n + 1;
    double pvv = s.pll;
    for (int i = 0; i < s.n; ++i)
        pvv -= s.normal[i * length + s.n] * s.solution[i];
    const double variance = std::max(0.0, pvv) / std::max(1, s.equations.m - s.n);
    for (int i = 0; i < s.n; ++i) {
        const double cofactor = s.inverse[i * (length + 1)];
        const double square = std::max(s.solution[i] * s.solution[i], variance * cofactor);
        if (!(s.pll * cofactor <= kHarmlessCancellation * kHarmlessCancellation * square))
            return true;
    }
    return false;
}

// True when the equations give N | A^T P l to the last bit: since the forming nothing was changed, or nothing
// that matters.
bool formsNormal(System& s) {
    const std::size_t n = static_cast<std::size_t>(s.n), length = n + 1;
    Vector normal(n * length);
    s.pll = addGram(s.equations, normal.data());
    const double* row = normal.data();
    for (std::size_t i = 0; i < n; ++i, row += length)
        if (!std::equal(row + i, row + length, s.normal + i * length + i))
            return false;
    return true;
}

// correction = Q sums.
Solve multiplyByCofactors(const System& s) {
    return [&s](const double* sums, double* correction) {
        const double* row = s.inverse;
        for (int i = 0; i < s.n; ++i, row += s.n + 1)
            correction[i] = std::inner_product(row, row + s.n, sums, 0.0);
    };
}

// x += Q A^T P (l - A x), Q as `solve` applies it.
bool refineFromEquations(const System& s, const Solve& solve, double inflation) {
    const int m = s.equations.m, n = s.n;
    const Workspace room(exactProductsRoom(n));
    const auto residual = [&](const double* high, const double* low, double* sums) {
        const double squares = FIELDSCAN_CHOSEN(sumResiduals)(s.equations, high, low, room.data(), sums);
        return m > n ? std::max(0.0, squares) / (m - n) : 0.0;
    };
    const double rate = n * kEpsilon * std::sqrt(inflation), noise = kRounding * (n + 1);
    return refineIteratively(
        {s.normal, s.inverse, n, residual, solve, std::sqrt(std::fabs(s.pll)), rate, noise, true},
        s.solution);
}

// x += Q (b - N x).
bool refineFromGram(const System& s, const ExactGram& gram, double rate, double noise, bool final) {
    const auto residual = [&gram](const double* high, const double* low, double* sums) {
        gram.residual(high, low, sums);
        return 0.0;
    };
    return refineIteratively({s.normal, s.inverse, s.n, residual, multiplyByCofactors(s),
                              std::sqrt(std::fabs(s.pll)), rate, noise, final},
                             s.solution);
}

bool solveInDoubleDouble(const System& s) {
    const double error = std::sqrt(s.n) * ExactGram::formingError(s.equations.m);
    if (s.n > kMostInDoubleDouble || !(s.inflation * s.n * error <= kErrorOfCofactor))
        return false;
    ExactGram gram(s.n);
    Vector squares(static_cast<std::size_t>(s.n) + 1, s.pll);
    for (int i = 0; i < s.n; ++i)
        squares[static_cast<std::size_t>(i)] = s.normal[i * (s.n + 2LL)];
    if (!gram.form(s.equations, squares.data()) || !gram.improveInverse(s.inverse))
        return false;
    const double root = std::sqrt(s.inflation);
    return refineFromGram(s, gram, s.n * kEpsilon * root, root * error, false) ||
           refineFromEquations(s, multiplyByCofactors(s), s.inflation);
}

bool solveOrthonormal(const System& s) {
    const std::ptrdiff_t n = s.n, length = n + 1;
    Vector root(static_cast<std::size_t>(n * length)), inner(static_cast<std::size_t>(n));
    if (!orthonormalize(s.equations, root.data()))
        return false;
    multiplyByTranspose(root.data(), s.n, s.inverse);
    std::fill(s.solution, s.solution + n, 0.0);
    const auto multiplyByRoots = [&](const double* sums, double* correction) {  // correction = Z Z^T sums
        std::fill(inner.begin(), inner.end(), 0.0);
        for (int i = 0; i < n; ++i)
            for (int j = i; j < n; ++j)
                inner[static_cast<std::size_t>(j)] +=
                    root[static_cast<std::size_t>(i * length + j)] * sums[i];
        for (int i = 0; i < n; ++i)
            correction[i] =
                std::inner_product(inner.begin() + i, inner.end(), root.begin() + i * (length + 1), 0.0);
    };
    return refineFromEquations(s, multiplyByRoots, varianceInflation(s.normal, s.inverse, s.n));
}

bool solveEntered(const System& s) {
    const auto isModerate = [](double v) { return v == 0.0 || (v * v > 0x1p-960 && v * v < 0x1p960); };
    bool moderate = true;
    for (std::ptrdiff_t i = 0, length = s.n + 1; i < s.n; ++i)
        moderate =
            moderate && isModerate(s.normal[i * (length + 1)]) && isModerate(s.normal[i * length + s.n]);
    ExactGram gram(s.n);
    gram.set(s.normal);
    if (moderate && s.inflation > kHarmlessInflation && !gram.improveInverse(s.inverse))
        return false;
    const double inflation = varianceInflation(s.normal, s.inverse, s.n), lost = s.n * kEpsilon * inflation;
    if (!(lost <= kEpsilon / kSingular))
        return false;
    // Products of others could overflow or underflow, which differs between instruction sets.
    return !moderate ||
           refineFromGram(s, gram, s.n * lost, std::sqrt(inflation) * kRounding * (s.n + 1), true);
}

}  // namespace

// ---- Way 1: from Noeq to Bcor and inverse, with work; false when a pivot is singular ----

bool CLeastSq::solveByCholesky() {
    return LUDivid() && ForwardSubstiotution() && BackwardSubstiotution() && CalLInverse() &&
           CalNoeqInverse();
}

bool CLeastSq::solveBySweeping() {
    return sweep(Noeq.GetData(), parameterNumber, tolerance, work.GetData(), Bcor.GetData(),
                 inverse.GetData());
}

bool CLeastSq::solveByFaster() {
    constexpr int kSwept = 16;
    return parameterNumber <= kSwept ? solveBySweeping() : solveByCholesky();
}

int CLeastSq::NewChores() { return solveBy(&CLeastSq::solveByFaster, false); }
int CLeastSq::PIChores() { return solveBy(&CLeastSq::solveByCholesky, false); }
int CLeastSq::SwpMat() { return solveBy(&CLeastSq::solveBySweeping, false); }

int CLeastSq::Solve() { return timedSolve(&CLeastSq::LessquFast, &CLeastSq::solveByFaster); }
int CLeastSq::PISolve() { return timedSolve(&CLeastSq::Lessqu, &CLeastSq::solveByCholesky); }
int CLeastSq::SolveWithSwpMat() { return timedSolve(&CLeastSq::LessquFast, &CLeastSq::solveBySweeping); }
int CLeastSq::SolveWithReduc() { return timedSolve(nullptr, &CLeastSq::solveByFaster); }

int CLeastSq::solveBy(bool (CLeastSq::*method)(), bool justFormed) {
    if (!hasUnknowns())
        return 0;
    const int solved = zeroIfOutOfMemory([&] { return CheckNoeq() && solveExactly(method, justFormed); });
    if (!solved) {
        InitParameter(Bcor, std::numeric_limits<double>::quiet_NaN());
        InitParameter(inverse, std::numeric_limits<double>::quiet_NaN());
    }
    return solved;
}

bool CLeastSq::solveExactly(bool (CLeastSq::*method)(), bool justFormed) {
    const auto finite = [this] { return allFinite(Bcor) && allFinite(inverse); };
    const bool solved = (this->*method)() && finite();
    System s = {{}, Noeq.GetData(), 0.0, 0.0, Bcor.GetData(), inverse.GetData(), parameterNumber};
    s.inflation =
        solved ? varianceInflation(s.normal, s.inverse, s.n) : std::numeric_limits<double>::infinity();
    if (m_formed >= 0 && hasEquations(m_formed)) {
        s.equations = {Obeq.GetData(), Weight.GetData(), m_formed, s.n};
        s.pll = m_pll;
        if (justFormed || formsNormal(s)) {
            const bool positive = !std::signbit(s.pll);
            if (s.inflation <= kHarmlessInflation && m_formed * kEpsilon <= kHarmlessForming && positive &&
                !cancels(s))
                return true;
            return ((solved && positive && solveInDoubleDouble(s)) || solveOrthonormal(s)) && finite();
        }
    }
    s.pll = 0.0;
    return solved && solveEntered(s) && finite();
}

// ---- Single steps ----

int CLeastSq::LUDivid() {
    if (!hasUnknowns())
        return 0;
    return zeroIfOutOfMemory(
        [&] { return choleskyFactor(Noeq.GetData(), parameterNumber, tolerance, work.GetData()) ? 1 : 0; });
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
