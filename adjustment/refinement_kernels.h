// Kernels of refinement.cpp, compiled for each instruction set.
#ifndef FIELDSCAN_ADJUSTMENT_REFINEMENT_KERNELS_H
#define FIELDSCAN_ADJUSTMENT_REFINEMENT_KERNELS_H

#include "adjustment/normal_equations.h"

namespace fieldscan {

// Sums in double-double as double_double.h has them. Matrices are rows of n + 1; `buffer` holds
// kRefinementBuffer (n + 8) doubles.
struct RefinementKernels {
    // U^-1, rounded; zeros below the diagonal.
    void (*invertExactly)(const double* factor, int n, double* buffer, double* inverse);
    // `count` rows a become rows b = a W of the same length, W an upper triangle;
    // in double or rounded once. Their last elements are copied.
    void (*multiplyRows)(const double* rows, int count, const double* w, int n, double* buffer, double* b);
    void (*multiplyRowsExactly)(const double* rows, int count, const double* w, int n, double* buffer,
                                double* b);
    // W in slices, units about the lengths of A's columns.
    void (*multiplyRowsInSlices)(const double* rows, int count, const double* wHigh, const double* wLow,
                                 const double* units, int n, double* buffer, double* b);
    // A^T P (l - A x), rounded; x = high + low. Equation k goes to partial sum k % kPartialSums, which are
    // added up in the end: one sum alone waits for itself.
    void (*misclosure)(const Equations& equations, const double* high, const double* low, double* buffer,
                       double* sums);
    // Sums of squares of `count` rows of `length` elements, a multiple of kReflectedColumns.
    void (*columnSquares)(const double* rows, int count, long long length, double* sums);
    // Columns i from `begin`, a multiple of kReflectedColumns, to `length` of those rows lose s_i v, s_i
    // being v times the column over `divisor`.
    void (*reflectColumns)(double* rows, int count, long long length, long long begin, const double* v,
                           double divisor);
};

constexpr int kReflectedColumns = 8;
constexpr int kPartialSums = 8;
constexpr int kRefinementBuffer = 48;

constexpr double kSlice = 0x1p32;  // leaves 22 bits and 2^-20 of an element
constexpr int kMostSliced = 512;   // unknowns: 22 + 22 + 9 bits

namespace baseline {
extern const RefinementKernels refinementKernels;
}
namespace avx2 {
extern const RefinementKernels refinementKernels;
}
namespace avx512 {
extern const RefinementKernels refinementKernels;
}

}  // namespace fieldscan

#endif
