// The weighted Gram matrix of the columns of A, and their products with a column l. Symbols of this folder:
//
//   A  m x n, a_ki in row k     l  m observations     P  diagonal, weights p_k     N = A^T P A
//
//   A^T P A | A^T P l           element (i, j) = sum over k of (a_kj a_ki) p_k, in the order of k, j >= i
//
// Matrices are rows of n + 1 elements: n coefficients, then the observation or the right-hand side. Only the
// upper half of symmetric ones is read.
#ifndef FIELDSCAN_NUMERICS_GRAM_H
#define FIELDSCAN_NUMERICS_GRAM_H

#include "numerics/instruction_set.h"

namespace fieldscan {

// A | l, m rows, and the diagonal of P.
struct WeightedRows {
    const double* rows;
    const double* weights;
    int m;
    int n;
};

// Adds to the upper half of `gram`, with the bits of plain loops. Returns l^T |P| l, with a minus sign when a
// weight is negative. (A pass for that sum takes 0.4 of the time of forming 4 columns.)
double addGram(const WeightedRows& a, double* gram);

// Copies the upper half to the lower one.
void mirror(double* matrix, int n);

FIELDSCAN_IN_EACH_SET(bool weightsAreOne(const WeightedRows& a); long long gramRoom(int n);  // doubles
                      double addGram(const WeightedRows& a, double* room, double* gram);)

}  // namespace fieldscan

#endif
