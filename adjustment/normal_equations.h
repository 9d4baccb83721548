// Normal equations, and what is solved with their triangular factor.
//
// Matrices are rows of n + 1 elements: n coefficients, then the observation or the right-hand side. N is the
// normal matrix, of which the upper half is read; U an upper triangle with U^T U = N.
#ifndef FIELDSCAN_ADJUSTMENT_NORMAL_EQUATIONS_H
#define FIELDSCAN_ADJUSTMENT_NORMAL_EQUATIONS_H

namespace fieldscan {

// The observation equations in force.
struct Equations {
    const double* rows;
    const double* weights;
    int m;
    int n;
};

// l^T |P| l.
double squaredLength(const Equations& equations);

// Adds to the upper half of `normal`, (row k, column j) (row k, column i) weight k, one equation behind the
// other. That order is part of the interface: it fixes the last bits.
// `observations`, when given, becomes squaredLength: a pass of its own costs 0.4 of forming 4
// unknowns.
void addToNormal(const Equations& equations, double* normal, double* observations = nullptr);

// Copies the upper half to the lower one.
void mirror(double* matrix, int n);

// A pivot that rounding alone could have left: at or below max(tolerance, 64 n eps diagonal), or NaN.
// (Here, since a call would send the matrix of a sweep from registers to memory.)
static inline bool isSingularPivot(double pivot, double diagonal, int n, double tolerance) {
    const double rounding = 64.0 * n * __DBL_EPSILON__ * diagonal;
    return !(pivot > (tolerance < rounding ? rounding : tolerance));
}

// `factor` becomes U, its lower half and its last column the copies of those of `normal`. Returns the
// smallest pivot over its diagonal; 0 when one is singular, and `factor` is then of no use.
double choleskyFactor(const double* normal, int n, double tolerance, double* factor);

// `vector` becomes the solution y of U^T y = vector; x of U x = vector.
void solveTransposed(const double* factor, int n, double* vector);
void solveUpper(const double* factor, int n, double* vector);

// The triangle becomes its inverse, in place.
void invertTriangle(double* factor, int n);

// product = triangle triangle^T, both halves; its last column becomes 0.
void multiplyByTranspose(const double* triangle, int n, double* product);

}  // namespace fieldscan

#endif
