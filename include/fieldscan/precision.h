// CPrecision: reliability of an adjustment, search for blunders, and unknowns that the equations do not
// determine.
#ifndef FIELDSCAN_PRECISION_H
#define FIELDSCAN_PRECISION_H

#include <fieldscan/export.h>
#include <fieldscan/framework/array.h>
#include <fieldscan/least_squares.h>

// Figures of one equation with row a, observation l and weight p. Q = N^-1 are the cofactors. An equation of
// weight 0 is out: `detectable` is the largest double, and all but the residual is 0.
struct CEquationPrecision {
    double residual;      // v = l - a x, the sign of CLeastSq; in units of l
    double redundancy;    // r = 1 - p a Q a^T, 0 .. 1; their sum is degreesOfFreedom
    double standardized;  // v / (sigma0 sqrt(r / p)) with the given sigma0: normally distributed (Baarda's w)
    double tau;           // the same with estimatedSigma0: tau distribution (Pope); 0 where that is 0
    double detectable;    // smallest detectable error of l: delta0 sigma0 / sqrt(p r), in units of l
    // 1; 0 when r <= 1e-8: no other equation controls this one. Then standardized and tau are 0, and
    // detectable is the largest double. A blunder of l changes v by r times its size. At r = 1e-8 a blunder
    // of 1 m, 1000 standard deviations of 1 mm, changes v by 1e-8 m: a few times the rounding of coordinates
    // of 5e6 m.
    int controlled;
};

// Reliability of a solved adjustment with uncorrelated observations, by data snooping (Baarda, A testing
// procedure for use in geodetic networks, 1968; Pope, The statistics of residuals and the detection of
// outliers, 1976):
//
//     CPrecision precision;
//     if (adjustment.Solve() && precision.CalFigures(adjustment, sigma0) && precision.largest >= 0)
//         // |precision.equations[precision.largest].standardized| > 3.29: take that one out, solve again
//
// SetWeight(k, 0.0) takes out equation k. v / r estimates the blunder of l: it is the misclosure of the
// equation against the adjustment without it. A blunder spreads over all residuals, so take out one equation
// at a time.
//
// Only Obeq, Weight and Bcor are read. The cofactors are computed anew, so CalVarianceOfEstimate may have
// been called or not. By Gram-Schmidt with pivoting of sqrt(P) A, each column orthogonalised twice (Bjorck,
// Numerical Methods for Least Squares Problems, 2.4). The same bits on every platform, but for what is made
// with atan2, exp and log.
class FIELDSCAN_API CPrecision {
public:
    CPrecision();  // Init
    CPrecision(const CPrecision&) = delete;
    CPrecision& operator=(const CPrecision&) = delete;

    void Init();  // numbers 0, largest -1, arrays empty

    // Computes all data members.
    //   sigma0  standard deviation of an observation of weight 1, known before
    //   delta0  non-centrality of the smallest detectable error; with 4.13 a test at 0.1 %, critical value
    //           3.29, finds it with a power of 80 %
    // It takes 4 m n^2 products and memory for another Obeq: 10 to 25 times as long as Solve, 0.1 s for 1000
    // equations with 300 unknowns.
    // Returns 1. 0, with all as after Init, when
    //   - degreesOfFreedom <= 0: nothing is controlled
    //   - the unknowns do not solve the equations: not solved, failed, or changed since. Rounding may leave
    //     up to (m + n) 1e-15 of the terms of A x, at most 4e-11
    //   - the equations do not determine the unknowns (CalDefect), there are none, or memory runs out
    //   - a weight is negative: leave out both this equation and the one that it takes out
    //   - sigma0 or delta0 is not greater than 0, or a number is not finite or beyond 1e140
    [[nodiscard]] int CalFigures(const CLeastSq& adjustment, double sigma0, double delta0 = 4.13);

    // Global test (Baarda): sumOfSquares / sigma0^2 against the quantiles level / 2 and 1 - level / 2 of
    // chi-square with degreesOfFreedom, which become `lower` and `upper`. Above them: a blunder, a wrong
    // model or sigma0 too small; below: sigma0 too large.
    //   level  error probability, for example 0.05
    // Returns 1 when the value is between the bounds, else 0; -1, with the bounds unchanged, when `level` is
    // not in [1e-15, 1) or there are no figures.
    [[nodiscard]] int TestGlobal(double level, double& lower, double& upper) const;

    // Standard error ellipse of two different unknowns i and j. The ellipse of probability P has axes
    // sqrt(ChiSquareQuantile(P, 2)) times as long.
    //   sigma         sigma0 or estimatedSigma0
    //   major, minor  semi-axes, in units of the unknowns
    //   direction     of the major axis, radians in [0, pi), from the axis of unknown i toward that of j;
    //                 0 for a circle. By atan2: the last bit may differ between platforms.
    // Returns 1; 0, and nothing is written, when there is no such unknown or there are no figures.
    [[nodiscard]] int CalEllipse(int i, int j, double sigma, double& major, double& minor,
                                 double& direction) const;

    // Rank defect of the equations as stored, solved or not: how many more unknowns would have to be known, 0
    // for none. `undetermined` becomes the indices of the unknowns without a unique value, ascending: all
    // heights of a levelling network without a bench mark, though its defect is 1; both coordinates of a
    // point to which only one direction was measured.
    // Columns are scaled to length 1. One is dependent when max(1e-13, 16 n eps) of it or less is orthogonal
    // to the others. An unknown is undetermined when it has more than 1e-8 in a change of the unknowns, of
    // length 1, that no equation notices. What SetNoeq entered is not read.
    // Returns -1, and an empty list, when there are no unknowns or no equations, a weight is negative, a
    // number is not finite or beyond 1e140, or memory runs out.
    [[nodiscard]] static int CalDefect(const CLeastSq& adjustment, CArray<int, int>& undetermined);

    // Chi-square with f degrees of freedom: the probability of at most x, and the x of a probability. By the
    // series of the incomplete gamma function (DLMF 8.7.1), with exp and log: the probability errs by at most
    // 1e-14 + 1e-15 f. NaN for f < 1, a NaN, or a probability that is not in (0, 1).
    static double ChiSquare(double x, int f);
    static double ChiSquareQuantile(double probability, int f);

    // ---- Data ----

    int parameterNumber;     // n: unknowns
    int degreesOfFreedom;    // f: equations of a weight above 0, rows of zeros included, minus the unknowns
    double sigma0;           // as passed to CalFigures
    double estimatedSigma0;  // sqrt(sumOfSquares / f)
    double sumOfSquares;     // sum p v v
    int largest;             // the first controlled equation with the largest |standardized|; -1 when none
    CArray<CEquationPrecision, const CEquationPrecision&> equations;  // as in CLeastSq
    CArray<double, double> cofactors;                                 // Q = N^-1, n x n, row by row
};

#endif
