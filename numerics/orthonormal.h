// Orthonormal columns A Z, for A of any condition.
#ifndef FIELDSCAN_NUMERICS_ORTHONORMAL_H
#define FIELDSCAN_NUMERICS_ORTHONORMAL_H

#include "numerics/gram.h"

namespace fieldscan {

// `root` becomes an upper triangle Z, rows of n + 1, with (A Z)^T P (A Z) = I. So (A^T P A)^-1 = Z Z^T.
//
// Shifted Cholesky QR (Fukaya et al. 2020; Yamamoto et al. 2015): with B = A Z, S = B^T P B and U^T U = S, Z
// becomes Z U^-1. B is computed in double-double and rounded once, and S is the sum of exact products, so S
// is known to its last digits. A step divides the condition of B by about 10^6, up to which a small shift of
// S lets Cholesky succeed. Weights may be negative as long as S is positive definite.
//
// False when the columns are dependent: less than 1e-13 of the length of a column of sqrt(P) A is left beside
// those before it. (Rows of coordinates that coincide leave 1e-16, points a centimetre apart at 4000000 m
// leave 1e-9.)
bool orthonormalize(const WeightedRows& a, double* root);

}  // namespace fieldscan

#endif
