// Triangles of symmetric matrices, as rows of n + 1 elements: U^T U = N (Cholesky; Golub and Van Loan, Matrix
// Computations, 4.2). The bits are those of plain loops.
#ifndef FIELDSCAN_NUMERICS_TRIANGLE_H
#define FIELDSCAN_NUMERICS_TRIANGLE_H

#include "numerics/instruction_set.h"

namespace fieldscan {

// A pivot that may be nothing but rounding: at or below max(tolerance, 64 n eps diagonal), or NaN.
// (Here, since a call would send the matrix of a sweep from registers to memory.)
static inline bool isSingularPivot(double pivot, double diagonal, int n, double tolerance) {
    const double rounding = 64.0 * n * __DBL_EPSILON__ * diagonal;
    return !(pivot > (tolerance < rounding ? rounding : tolerance));
}

// `factor` becomes U, its lower half and its last column the copies of those of `matrix`. False when a pivot
// is singular, and `factor` then means nothing.
bool choleskyFactor(const double* matrix, int n, double tolerance, double* factor);

// `vector` becomes the solution y of U^T y = vector; x of U x = vector.
void solveTransposed(const double* factor, int n, double* vector);
void solveUpper(const double* factor, int n, double* vector);

// The triangle becomes its inverse, in place.
void invertTriangle(double* factor, int n);

// product = triangle triangle^T, both halves; its last column becomes 0.
void multiplyByTranspose(const double* triangle, int n, double* product);

FIELDSCAN_IN_EACH_SET(long long triangleRoom(int n);  // doubles
                      bool factorize(const double* matrix, int n, double tolerance, double* room,
                                     double* factor);
                      void invert(double* factor, int n);
                      void multiply(const double* triangle, int n, double* room, double* product);)

}  // namespace fieldscan

#endif
