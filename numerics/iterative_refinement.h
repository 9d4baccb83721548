// Iterative refinement: the solution x of N x = b to the last digits, from residuals that are computed with
// more digits than N has (Higham, Accuracy and Stability of Numerical Algorithms, chapter 12; least squares
// with residuals of the equations: Bjorck, Linear Algebra Appl. 88/89, 1987).
#ifndef FIELDSCAN_NUMERICS_ITERATIVE_REFINEMENT_H
#define FIELDSCAN_NUMERICS_ITERATIVE_REFINEMENT_H

#include <functional>

namespace fieldscan {

// sums = b - N x, rounded, x = high + low; `sums` has room for n + 8. Returns the variance of unit weight
// s0^2, so that s0^2 (N^-1)_ii is the variance of unknown i; or 0.
using Residual = std::function<double(const double* high, const double* low, double* sums)>;
// correction = N^-1 sums, to a digit or so.
using Solve = std::function<void(const double* sums, double* correction)>;

// N and N^-1 are rows of n + 1, of which the diagonal is read.
struct Refinement {
    const double* normal;
    const double* inverse;
    int n;
    Residual residual;
    Solve solve;
    double scale;  // size of A x, sqrt(l^T P l); 0 when it is not known
    double rate;   // a correction is about `rate` times the one before
    double noise;  // rounding of the residuals, as a change of A x, relative to `scale`
    bool final;    // there are no better residuals: the result may be as uncertain as their rounding makes it
};

// Adds corrections to `solution`, finite at the start, until the next one could change no unknown by more
// than 2^-57 of itself. Or, if `final`, until only the rounding of the residuals is left and each unknown is
// certain to 1e-13 of itself or of its standard deviation; an unknown below that rounding becomes 0. False
// when neither is reached: within 30 steps, or if not `final`, before only rounding is left.
bool refineIteratively(const Refinement& refinement, double* solution);

// Largest variance inflation factor N_ii (N^-1)_ii, at least 1: how many times the correlations with the
// other unknowns enlarge a cofactor (Marquardt, Technometrics 12, 1970). Solution and cofactors err by about
// as many units of their last place. Infinity when an element is NaN.
double varianceInflation(const double* normal, const double* inverse, int n);

}  // namespace fieldscan

#endif
