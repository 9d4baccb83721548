// The solution x of N x = b, to the last digits, from residuals that are computed with more digits than N has
// (iterative refinement; Golub and Van Loan, 3.5.3; for least squares Bjorck 1987).
#ifndef FIELDSCAN_NUMERICS_ITERATIVE_REFINEMENT_H
#define FIELDSCAN_NUMERICS_ITERATIVE_REFINEMENT_H

#include <functional>

namespace fieldscan {

// sums = b - N x, x = high + low, rounded. Returns sigma^2, of which the unknowns' variances are the
// N^-1_ii-fold, or 0. `sums` has room for n + 8.
using Residual = std::function<double(const double* high, const double* low, double* sums)>;
// correction = N^-1 sums, to a digit or so.
using Solve = std::function<void(const double* sums, double* correction)>;

// What refining computes with. N and N^-1 are rows of n + 1, of which the diagonal is read.
struct Refinement {
    const double* normal;
    const double* inverse;
    int n;
    Residual residual;
    Solve solve;
    double scale;  // of A x, sqrt(l^T P l); 0 when it is not known
    double rate;   // a correction is about `rate` times the one before
    double noise;  // the residuals err by that part of `scale`, as changes of A x
    bool final;    // nobody has better residuals: their rounding is put up with
};

// Adds corrections to `solution`, which may begin with anything finite, until no unknown could change by
// 2^-57 of itself any more; or until only rounding is left, the residuals' own, and what it leaves uncertain
// is below 1e-13 of each unknown or of its standard deviation. An unknown below that rounding is 0. False
// when it is not so after 30 steps.
bool refineIteratively(const Refinement& refinement, double* solution);

// Variance inflation factor: how many times the correlations with the other unknowns enlarge a cofactor;
// largest N_ii (N^-1)_ii, at least 1. Solution and cofactors lose about as many units of their last place.
// Infinity when one is not a number.
double varianceInflation(const double* normal, const double* inverse, int n);

}  // namespace fieldscan

#endif
