// A symmetric matrix N with a right-hand side b in double-double: the Gram matrix of rows of doubles, or one
// that was given in double.
//
// Sums: each product goes to one of eight partial sums that begins at a power of two which no sum reaches a
// quarter of. So it loses to it what lies below a fixed place, which two subtractions give exactly, and which
// goes to a low sum with the rest of the product. (Rump, Ogita and Oishi 2008: extraction.)
#ifndef FIELDSCAN_NUMERICS_EXACT_GRAM_H
#define FIELDSCAN_NUMERICS_EXACT_GRAM_H

#include "numerics/gram.h"
#include "numerics/workspace.h"

namespace fieldscan {

constexpr int exactRowLength(int n) { return (n + 7) / 8 * 8; }  // n elements, then zeros

class ExactGram {
public:
    explicit ExactGram(int n);

    // N | b, n rows of n + 1, from double or rounded to it.
    void set(const double* matrix);
    void round(double* matrix) const;

    // A^T P A | A^T P l. squares[i] is the squared length of column i of sqrt(|P|) A, squares[n] that
    // of l. Errs by about formingError(m) of the lengths. False when products could overflow, or their
    // rests underflow.
    bool form(const WeightedRows& a, const double* squares);
    static double formingError(int m) { return 0x1p-105 * (m / 8.0 + 8.0); }

    // V, rows of n + 1, good to a digit or so, becomes N^-1 by steps 2 V - V N V, which double the correct
    // digits (Schulz 1933). False when they do not: so for every N that is singular, as I - V N has an
    // eigenvalue 1 then. V is of no use in that case.
    bool improveInverse(double* v) const;

    // b - N x, rounded, x = high + low; `sums` has room for exactRowLength(n).
    void residual(const double* high, const double* low, double* sums) const;

private:
    int m_n;
    Workspace m_sums;  // n rows of N, one of b, each of exactRowLength(n); then their low parts
};

FIELDSCAN_IN_EACH_SET(
    long long exactGramRoom(int n);  // doubles
    // `room` begins with n + 1 powers of two, each at least the length of that column of sqrt(|P|) A or l.
    void formExactGram(const WeightedRows& a, double* room, double* gram);
    // I - V N, rounded, rows of exactRowLength(n).
    void inverseResiduals(const double* gram, const double* v, int n, double* residuals);
    void gramResidual(const double* gram, const double* high, const double* low, int n, double* sums);)

}  // namespace fieldscan

#endif
