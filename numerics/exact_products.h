// Products with the rows of A in double-double, rounded once. Kernels: exact_products_kernels.cpp.
#ifndef FIELDSCAN_NUMERICS_EXACT_PRODUCTS_H
#define FIELDSCAN_NUMERICS_EXACT_PRODUCTS_H

#include "numerics/gram.h"

namespace fieldscan {

// `room` holds exactProductsRoom(n) doubles, aligned.
FIELDSCAN_IN_EACH_SET(
    // `count` rows a | l, of n + 1 elements, become rows a W | l; W is an upper triangle in rows of n + 1.
    void multiplyRows(const double* rows, int count, const double* w, int n, double* room, double* b);
    // sums = A^T P v with v = l - A x, x = high + low. Returns v^T P v. Row k goes to partial sum
    // k % kPartialSums, which are added up in the end: one sum alone waits for itself.
    double sumResiduals(const WeightedRows& a, const double* high, const double* low, double* room,
                        double* sums);)

constexpr int kPartialSums = 8;
constexpr long long exactProductsRoom(int n) { return 32LL * (n + 16); }

}  // namespace fieldscan

#endif
