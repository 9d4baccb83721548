// How CLeastSq solves N x = A^T P l, N = A^T P A, and finds the cofactors Q = N^-1.
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
//   VIF      variance inflation factor, largest N_ii Q_ii of way 1: what correlations cost x and Q
//   m eps    what forming N in its order may cost them; eps = 2^-52
//   cancels  an unknown is far smaller than what the observations would let it be, sqrt(l^T P l Q_ii), which
//            exceeds 256 times its value and its standard deviation: two or three digits are lost
//   error    of N in double-double, about (m / 8 + 8) 2^-105; so way 2 reaches VIFs of 10^13 or more
//
// (Times of Solve() on an AMD EPYC with AVX-512.)
//
// Way 1 is Cholesky (PIChores; NewChores beyond 16 unknowns) or sweeping (SwpMat; NewChores up to 16, where
// it takes 0.3 to 0.85 of the time).
//
// Way 2 begins with x and Q of way 1. Q is improved by Schulz's steps, x with the residuals A^T P l - N x, or
// with l - A x of the equations where the error of N could be seen in an unknown.
//
// Way 3 needs nothing from way 1: it computes a root Z of Q from the equations (numerics/orthonormal.h), and
// x with their residuals.
//
// Normal equations that were entered (SetNoeq), or do not belong to the equations any more, are exact as they
// are: x is refined with b - N x, and Q by Schulz's steps from a VIF of 64 on. They are refused from a VIF of
// 1 / (64 n eps) on, where the rounding of N itself could have made it singular (isSingularPivot).
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
constexpr double kLost = 1.0 / 64.0;          // VIF n eps

bool allFinite(const CArray<double, double>& array) {
    return std::all_of(array.GetData(), array.GetData() + array.GetSize(),
                       [](double value) { return std::isfinite(value); });
}

// What is solved: the equations, N | A^T P l as formed from them, and l^T |P| l, negated when a weight is
// negative; or N | b as entered, without equations. x and Q begin as what way 1 gives; `inflation` is the VIF
// of that, infinite when it gives nothing.
struct System {
    WeightedRows equations;
    const double* normal;
    double observations;
    double inflation;
    double* solution;
    double* inverse;
    int n;
};

// Whether an unknown is a small difference of large sums, which costs it digits. Below their standard
// deviation unknowns count as that large: else the last, tiny corrections of an iteration would call for
// digits that mean nothing. NaN counts as cancelled.
bool isCancelled(const System& s) {
    const std::ptrdiff_t length = s.n + 1;
    double residuals = s.observations;
    for (int i = 0; i < s.n; ++i)
        residuals -= s.normal[i * length + s.n] * s.solution[i];
    const double variance = std::max(0.0, residuals) / std::max(1, s.equations.m - s.n);
    for (int i = 0; i < s.n; ++i) {
        const double cofactor = s.inverse[i * (length + 1)];
        const double square = std::max(s.solution[i] * s.solution[i], variance * cofactor);
        if (!(s.observations * cofactor <= kHarmlessCancellation * kHarmlessCancellation * square))
            return true;
    }
    return false;
}

// Whether the equations as they are now give N | A^T P l, to the last bit: what was changed since the forming
// shows, or changes nothing.
bool addUpToNormal(System& s) {
    const std::size_t n = static_cast<std::size_t>(s.n), length = n + 1;
    Vector normal(n * length);
    s.observations = addGram(s.equations, normal.data());
    for (std::size_t i = 0; i < n; ++i)
        for (std::size_t j = i; j < length; ++j)
            if (normal[i * length + j] != s.normal[i * length + j])
                return false;
    return true;
}

// Q sums.
Solve timesInverse(const System& s) {
    return [&s](const double* sums, double* correction) {
        const double* row = s.inverse;
        for (int i = 0; i < s.n; ++i, row += s.n + 1)
            correction[i] = std::inner_product(row, row + s.n, sums, 0.0);
    };
}

// x += Q A^T P (l - A x).
bool refineFromEquations(const System& s, const Solve& solve, double inflation) {
    const int m = s.equations.m, n = s.n;
    const Workspace room(exactProductsRoom(n));
    const auto residual = [&](const double* high, const double* low, double* sums) {
        const double squares = FIELDSCAN_CHOSEN(sumResiduals)(s.equations, high, low, room.data(), sums);
        return m > n ? std::max(0.0, squares) / (m - n) : 0.0;
    };
    const double rate = n * kEpsilon * std::sqrt(inflation), noise = kRounding * (n + 1);
    return refineIteratively(
        {s.normal, s.inverse, n, residual, solve, std::sqrt(std::fabs(s.observations)), rate, noise, true},
        s.solution);
}

// x += Q (b - N x).
bool refineFromGram(const System& s, const ExactGram& gram, double rate, double noise, bool final) {
    const auto residual = [&gram](const double* high, const double* low, double* sums) {
        gram.residual(high, low, sums);
        return 0.0;
    };
    return refineIteratively({s.normal, s.inverse, s.n, residual, timesInverse(s),
                              std::sqrt(std::fabs(s.observations)), rate, noise, final},
                             s.solution);
}

bool solveInDoubleDouble(const System& s) {
    const double error = std::sqrt(s.n) * ExactGram::formingError(s.equations.m);
    if (s.n > kMostInDoubleDouble || !(s.inflation * s.n * error <= kErrorOfCofactor))
        return false;
    ExactGram gram(s.n);
    Vector squares(static_cast<std::size_t>(s.n) + 1, s.observations);
    for (int i = 0; i < s.n; ++i)
        squares[static_cast<std::size_t>(i)] = s.normal[i * (s.n + 2LL)];
    if (!gram.form(s.equations, squares.data()) || !gram.improveInverse(s.inverse))
        return false;
    const double root = std::sqrt(s.inflation);
    return refineFromGram(s, gram, s.n * kEpsilon * root, root * error, false) ||
           refineFromEquations(s, timesInverse(s), s.inflation);
}

bool solveOrthonormal(const System& s) {
    const std::ptrdiff_t n = s.n, length = n + 1;
    Vector root(static_cast<std::size_t>(n * length)), inner(static_cast<std::size_t>(n));
    if (!orthonormalize(s.equations, root.data()))
        return false;
    multiplyByTranspose(root.data(), s.n, s.inverse);
    std::fill(s.solution, s.solution + n, 0.0);
    const auto timesRoots = [&](const double* sums, double* correction) {  // Z Z^T sums
        std::fill(inner.begin(), inner.end(), 0.0);
        for (int i = 0; i < n; ++i)
            for (int j = i; j < n; ++j)
                inner[static_cast<std::size_t>(j)] +=
                    root[static_cast<std::size_t>(i * length + j)] * sums[i];
        for (int i = 0; i < n; ++i)
            correction[i] =
                std::inner_product(inner.begin() + i, inner.end(), root.begin() + i * (length + 1), 0.0);
    };
    return refineFromEquations(s, timesRoots, varianceInflation(s.normal, s.inverse, s.n));
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
    if (!(lost <= kLost))
        return false;
    // Products of others could overflow or underflow, by instruction sets differently.
    return !moderate ||
           refineFromGram(s, gram, s.n * lost, std::sqrt(inflation) * kRounding * (s.n + 1), true);
}

}  // namespace

// Each method reads Noeq, uses work and leaves Bcor and the inverse; false when a pivot is singular.

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
        s.observations = m_observations;
        if (justFormed || addUpToNormal(s)) {
            const bool positive = !std::signbit(s.observations);
            if (s.inflation <= kHarmlessInflation && m_formed * kEpsilon <= kHarmlessForming && positive &&
                !isCancelled(s))
                return true;
            return ((solved && positive && solveInDoubleDouble(s)) || solveOrthonormal(s)) && finite();
        }
    }
    s.observations = 0.0;
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
