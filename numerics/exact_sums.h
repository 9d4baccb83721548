// Sums of products in double-double: the Gram matrix of rows A | l with weights P (gram.h), its inverse, and
// residuals. By error-free sums and products (double_double.h; Rump, Ogita and Oishi 2008).
#ifndef FIELDSCAN_NUMERICS_EXACT_SUMS_H
#define FIELDSCAN_NUMERICS_EXACT_SUMS_H

#include "numerics/gram.h"
#include "numerics/workspace.h"

namespace fieldscan {

constexpr int wholeCacheLines(int n) { return (n + 7) / 8 * 8; }  // doubles: n, then zeros

// A symmetric matrix N with a right-hand side b, in double-double.
class ExactGram {
public:
    explicit ExactGram(int n);

    // N | b in double, n rows of n + 1; `round` gives the upper half.
    void set(const double* matrix);
    void round(double* matrix) const;

    // N | b = A^T P A | A^T P l. squares[i] is the squared length of column i of sqrt(|P|) A, squares[n] that
    // of sqrt(|P|) l. Element (i, j) errs by about formingError(m) times the lengths of columns i and j.
    // False when a product could overflow or its error underflow.
    bool form(const WeightedRows& a, const double* squares);
    static double formingError(int m) { return 0x1p-105 * (m / 8.0 + 8.0); }

    // V, rows of n + 1, has a correct digit or more of N^-1 and becomes N^-1: each step V + (I - V N) V
    // doubles the correct digits (Schulz, ZAMM 13, 1933). False when the steps do not converge, and V is then
    // meaningless. They never do for a singular N: I - V N has an eigenvalue 1.
    bool improveInverse(double* v) const;

    // sums = b - N x, rounded, x = high + low; `sums` has room for wholeCacheLines(n).
    void residual(const double* high, const double* low, double* sums) const;

private:
    int m_n;
    Workspace m_sums;  // n rows of N, one of b, each of wholeCacheLines(n); then their low parts
};

// ---- Kernels ----

// Row k adds to partial sum k % kPartialSums; in the end these are added up. Each addition to a single sum
// would wait for the one before it.
constexpr int kPartialSums = 8;

constexpr long long exactProductsRoom(int n) { return 32LL * (n + 16); }

FIELDSCAN_IN_EACH_SET(
    long long exactGramRoom(int n);  // doubles
    // `room` begins with n + 1 powers of two, each at least the length of that column of sqrt(|P|) A or l.
    void formExactGram(const WeightedRows& a, double* room, double* gram);
    // I - V N, rounded, in rows of wholeCacheLines(n), whose ends are left as they were.
    void inverseResiduals(const double* gram, const double* v, int n, double* residuals);
    void gramResidual(const double* gram, const double* high, const double* low, int n, double* sums);

    // These two: `room` has exactProductsRoom(n) doubles.
    // b = A W | l, rounded; W is an upper triangle in rows of n + 1.
    void multiplyRows(const WeightedRows& a, const double* w, double* room, double* b);
    // sums = A^T P v, rounded, with v = l - A x, x = high + low. Returns v^T P v.
    double sumResiduals(const WeightedRows& a, const double* high, const double* low, double* room,
                        double* sums);)

}  // namespace fieldscan

#endif
