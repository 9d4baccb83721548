// Sums of products in double-double, of rows of doubles A | l with weights P.
#ifndef FIELDSCAN_NUMERICS_EXACT_SUMS_H
#define FIELDSCAN_NUMERICS_EXACT_SUMS_H

#include "numerics/gram.h"
#include "numerics/workspace.h"

namespace fieldscan {

constexpr int exactRowLength(int n) { return (n + 7) / 8 * 8; }  // n elements, then zeros

// A symmetric matrix N with a right-hand side b in double-double: A^T P A | A^T P l, or one that is given in
// double.
class ExactGram {
public:
    explicit ExactGram(int n);

    // N | b, n rows of n + 1, from double or rounded to it.
    void set(const double* matrix);
    void round(double* matrix) const;

    // A^T P A | A^T P l. squares[i] is the squared length of column i of sqrt(|P|) A, squares[n] that of l.
    // Errs by about formingError(m) of the lengths. False when products could overflow, or their errors
    // underflow.
    bool form(const WeightedRows& a, const double* squares);
    static double formingError(int m) { return 0x1p-105 * (m / 8.0 + 8.0); }

    // V, rows of n + 1, good to a digit or so, becomes N^-1 by steps V + (I - V N) V, which double the
    // correct digits (Schulz 1933). False when they do not, and V then means nothing. So for every
    // singular N: an eigenvalue of I - V N is 1.
    bool improveInverse(double* v) const;

    // sums = b - N x, rounded, x = high + low; `sums` has room for exactRowLength(n).
    void residual(const double* high, const double* low, double* sums) const;

private:
    int m_n;
    Workspace m_sums;  // n rows of N, one of b, each of exactRowLength(n); then their low parts
};

// ---- Kernels ----

constexpr int kPartialSums = 8;  // row k goes to partial sum k % 8, which are added up in the end: one sum
                                 // alone waits for itself
constexpr long long exactProductsRoom(int n) { return 32LL * (n + 16); }

FIELDSCAN_IN_EACH_SET(
    long long exactGramRoom(int n);  // doubles
    // `room` begins with n + 1 powers of two, each at least the length of that column of sqrt(|P|) A or l.
    void formExactGram(const WeightedRows& a, double* room, double* gram);
    // I - V N, rounded, rows of exactRowLength(n).
    void inverseResiduals(const double* gram, const double* v, int n, double* residuals);
    void gramResidual(const double* gram, const double* high, const double* low, int n, double* sums);

    // Both with exactProductsRoom(n) doubles. Rows a | l become a W | l, rounded, W an upper triangle in rows
    // of n + 1.
    void multiplyRows(const WeightedRows& a, const double* w, double* room, double* b);
    // sums = A^T P v, rounded, with v = l - A x, x = high + low. Returns v^T P v.
    double sumResiduals(const WeightedRows& a, const double* high, const double* low, double* room,
                        double* sums);)

}  // namespace fieldscan

#endif
