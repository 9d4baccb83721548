// CPrecision: what the equations of an adjustment control and where a blunder is; what they do not determine.
#ifndef FIELDSCAN_PRECISION_H
#define FIELDSCAN_PRECISION_H

#include <fieldscan/export.h>
#include <fieldscan/framework/array.h>
#include <fieldscan/least_squares.h>

// Figures of one equation: row a, observation l, weight p. An equation of weight 0 is no observation: it has
// its residual, all else is 0, `detectable` the largest double.
struct CEquationPrecision {
    double residual;      // v = l - a x, the sign that CLeastSq takes too; in units of l
    double redundancy;    // r = 1 - p a Q a^T, 0 .. 1; their sum is degreesOfFreedom
    double standardized;  // v / (sigma0 sqrt(r / p)), sigma0 given: normally distributed (Baarda's w)
    double tau;           // the same with estimatedSigma0: tau distribution (Pope); 0 where that is 0
    double detectable;    // smallest detectable error of l: delta0 sigma0 / sqrt(p r), in units of l
    // 1; 0 when r <= 1e-8: no other equation controls this one. standardized and tau are 0 then, detectable
    // is the largest double. A blunder of l shows in v, reduced to r of it. At 1e-8 one of 1000 standard
    // deviations, 1 m where they are 1 mm, leaves 1e-8 m: a few times the rounding at coordinates of 5e6 m.
    int controlled;
};

// Reliability of a solved adjustment with uncorrelated observations (Baarda, A testing procedure for use in
// geodetic networks, 1968; Pope, The statistics of residuals and the detection of outliers, 1976):
//
//     CPrecision precision;
//     if (adjustment.Solve() && precision.CalFigures(adjustment, sigma0) && precision.largest >= 0)
//         // |precision.equations[precision.largest].standardized| > 3.29: take that one out, solve again
//
// An equation with weight 0 (SetWeight(k, 0.0)) is out. v / r estimates the blunder of l: it is the
// misclosure of the equation against the adjustment without it. A blunder spreads over all residuals, so take
// out one equation at a time.
//
// Everything comes from Obeq, Weight and Bcor. The inverse is not read: CalVarianceOfEstimate, called or not,
// changes nothing. Of + - * / and square roots, but where stated: the same bits on every platform.
class FIELDSCAN_API CPrecision {
public:
    CPrecision();  // Init
    CPrecision(const CPrecision&) = delete;
    CPrecision& operator=(const CPrecision&) = delete;

    void Init();  // numbers 0, largest -1, arrays empty

    // Computes all data members. `sigma0`: standard deviation of an observation of weight 1, known before.
    // `delta0`: non-centrality of the smallest detectable error; 4.13 finds it with a power of 80 % in a test
    // at 0.1 % (critical value 3.29).
    // Takes 4 m n^2 products and room for another Obeq: 10 to 25 times as long as Solve, 0.1 s for 1000
    // equations with 300 unknowns.
    // Returns 1. 0, and then all is as after Init, when
    //   - degreesOfFreedom <= 0: nothing is controlled
    //   - the unknowns do not solve the equations as they are: not solved, failed, or changed since. (By more
    //     than rounding may leave, in A x up to (m + n) 1e-15 of its terms, or 4e-11.)
    //   - the equations do not determine the unknowns (CalDefect), there are none, or there is no memory
    //   - a weight is negative: leave out both the equation and the one that it takes out
    //   - sigma0 or delta0 is not greater than 0, or a number is not finite or beyond 1e140
    int CalFigures(const CLeastSq& adjustment, double sigma0, double delta0 = 4.13);

    // Global test: is sumOfSquares / sigma0^2 between the quantiles level / 2 and 1 - level / 2 of chi-square
    // with degreesOfFreedom? Above: a blunder, a wrong model or sigma0 too small; below: sigma0 too large.
    //   level  error probability, 0.05 say
    // Returns 1 for yes, 0 for no; -1 when `level` is not in [1e-15, 1) or there are no figures, and the
    // bounds are unchanged then.
    int TestGlobal(double level, double& lower, double& upper) const;

    // Standard error ellipse of the unknowns i and j, which differ; a probability P takes axes
    // sqrt(ChiSquareQuantile(P, 2)) times as long.
    //   sigma         sigma0 or estimatedSigma0
    //   major, minor  semi-axes, in units of the unknowns
    //   direction     of the major axis, radians in [0, pi), from the axis of unknown i toward that of j;
    //                 0 for a circle. By atan2: the last bit may differ between platforms.
    // Returns 1; 0 when there is no such unknown or there are no figures, and then nothing is written.
    int CalEllipse(int i, int j, double sigma, double& major, double& minor, double& direction) const;

    // Rank defect of the equations as stored, solved or not: how many more unknowns would have to be known,
    // 0 when none. `undetermined` becomes the indices of the unknowns that have no unique value, ascending:
    // all heights of a levelling network without a bench mark, though its defect is 1; both coordinates of a
    // point to which only one direction was measured.
    // A column counts as dependent where max(1e-13, 16 n eps) of it or less is left; an unknown as
    // undetermined when a change of the unknowns that no equation notices, of length 1 with columns scaled to
    // length 1, has more than 1e-8 of it. What SetNoeq entered is not read.
    // Returns -1, and an empty list, when there are no unknowns or no equations, a weight is negative, a
    // number is not finite or beyond 1e140, or there is no memory.
    static int CalDefect(const CLeastSq& adjustment, CArray<int, int>& undetermined);

    // Chi-square with f degrees of freedom: the probability of at most x, and the x of a probability in
    // (0, 1). Made with exp and log: absolute error of the probability at most 1e-14 + 1e-15 f. NaN for
    // f < 1, a NaN, or a probability outside.
    static double ChiSquare(double x, int f);
    static double ChiSquareQuantile(double probability, int f);

    // ---- Data ----

    int parameterNumber;     // n: unknowns
    int degreesOfFreedom;    // f: equations of a weight above 0, rows of zeros included, less the unknowns
    double sigma0;           // as given
    double estimatedSigma0;  // sqrt(sumOfSquares / f)
    double sumOfSquares;     // sum p v v
    int largest;             // the first controlled equation with the largest |standardized|; -1 when none
    CArray<CEquationPrecision, const CEquationPrecision&> equations;  // as in CLeastSq
    CArray<double, double> cofactors;                                 // Q = N^-1, n x n, row by row
};

#endif
