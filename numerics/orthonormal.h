// Orthonormal columns A Z, for A of any condition and weights of either sign. For rank and null space:
// gram_schmidt.h.
#ifndef FIELDSCAN_NUMERICS_ORTHONORMAL_H
#define FIELDSCAN_NUMERICS_ORTHONORMAL_H

#include "numerics/gram.h"

namespace fieldscan {

// `root` becomes an upper triangle Z, rows of n + 1, with (A Z)^T P (A Z) = I. So (A^T P A)^-1 = Z Z^T.
//
// Shifted Cholesky QR (Fukaya, Kannan, Nakatsukasa, Yamamoto and Yanagisawa, SIAM J. Sci. Comput. 42, 2020).
// A step: B = A Z, S = B^T P B, U^T U = S, and Z becomes Z U^-1. B is computed in double-double and rounded
// once; S is a sum of exact products. A small shift of S lets Cholesky succeed, and a step divides the
// condition of B by about 10^6. Weights may be negative as long as S is positive definite.
//
// False when the columns are dependent: orthogonal to the columns before it, a column of sqrt(P) A has less
// than 1e-13 of its length. Coincident points leave 1e-16; points 1 cm apart, 4000 km from the origin, leave
// 1e-9.
bool orthonormalize(const WeightedRows& a, double* root);

}  // namespace fieldscan

#endif
