// Triangles of symmetric matrices: U^T U = N by Cholesky (Golub and Van Loan, Matrix Computations, 4.2),
// their inverses and products. Matrices are rows of n + 1 elements. The bits are those of plain loops.
#ifndef FIELDSCAN_NUMERICS_TRIANGLE_H
#define FIELDSCAN_NUMERICS_TRIANGLE_H

#include <cfloat>

#include "numerics/instruction_set.h"

namespace fieldscan {

// Pivot k is N_kk less k squares whose sum is at most N_kk, so computing it errs by up to n eps N_kk. 64
// times that is refused, since the squares err, too.
constexpr double kSingular = 64.0 * DBL_EPSILON;

// True when a pivot may be only rounding: at or below max(tolerance, kSingular n diagonal), or NaN.
// (Inline: a call would move the matrix of a sweep from registers to memory.)
static inline bool isSingularPivot(double pivot, double diagonal, int n, double tolerance) {
    const double rounding = kSingular * n * diagonal;
    return !(pivot > (tolerance < rounding ? rounding : tolerance));
}

// `factor` becomes U; its lower half and last column are copied from `matrix`. False when a pivot is
// singular, and `factor` is then meaningless.
bool choleskyFactor(const double* matrix, int n, double tolerance, double* factor);

// `vector` becomes y of U^T y = vector, or x of U x = vector.
void solveTransposed(const double* factor, int n, double* vector);
void solveUpper(const double* factor, int n, double* vector);

// The triangle becomes its inverse, in place.
void invertTriangle(double* factor, int n);

// product = triangle triangle^T, both halves, and 0 in the last column.
void multiplyByTranspose(const double* triangle, int n, double* product);

FIELDSCAN_IN_EACH_SET(long long triangleRoom(int n);  // doubles
                      bool factorize(const double* matrix, int n, double tolerance, double* room,
                                     double* factor);
                      void invert(double* factor, int n);
                      void multiply(const double* triangle, int n, double* room, double* product);)

}  // namespace fieldscan

#endif
