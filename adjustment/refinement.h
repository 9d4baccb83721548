// Solution and cofactors as exact as the observation equations determine them.
#ifndef FIELDSCAN_ADJUSTMENT_REFINEMENT_H
#define FIELDSCAN_ADJUSTMENT_REFINEMENT_H

#include "adjustment/normal_equations.h"

namespace fieldscan {

// Improves `solution`, which may begin with anything finite, until its corrections end; `inverse` is N^-1,
// good to some digits. False when they do not end.
//
// `observations` is l^T |P| l. A correction is N^-1 A^T P (l - A x), residuals and their sums in
// double-double (Bjorck 1987).
bool refineSolution(const Equations& equations, double observations, const double* normal,
                    const double* inverse, double* solution);

// The same where the inverse of N is too rough; computes `inverse` too, n rows of n + 1. `normal` is N as
// formed from the equations; `correlation` the largest N_ii (N^-1)_ii, infinite when it is not known. False
// when the equations do not determine the unknowns, and the outputs are then of no use. Negative weights
// leave the triangle of N alone, and cofactors as good as that.
//
// `solution` and `inverse` begin as what N in double gives where the correlation is known. Up to 32 unknowns,
// that inverse V and N in double-double give the cofactors, V becoming 2 V - V N V, and the unknowns, x += V
// (A^T P l - N x).
//
// Else, or where N in double-double does not determine them well enough, let W be the inverse of a triangle U
// near to the true one (of N or, where a pivot of N is at most 1e-11 of its diagonal or that one is not near
// enough, of the equations). The columns of B = A W are almost orthonormal, so S = B^T P B is near I and
// known to its last digits, however bad the condition of A, provided B is; it is computed in slices or in
// double-double where the correlation calls for it. With the triangle C of S, Z = W C^-1 is a root of the
// cofactors: N^-1 = Z Z^T. (Compare CholeskyQR2, Yamamoto et al. 2015.)
bool refine(const Equations& equations, double observations, const double* normal, double tolerance,
            double correlation, double* solution, double* inverse);

}  // namespace fieldscan

#endif
