// Normal equations in double-double; kernels of refinement.cpp, compiled for each instruction set.
#ifndef FIELDSCAN_ADJUSTMENT_EXACT_NORMAL_KERNELS_H
#define FIELDSCAN_ADJUSTMENT_EXACT_NORMAL_KERNELS_H

#include "adjustment/normal_equations.h"

namespace fieldscan {

// N is symmetric, n rows of exactRowLength(n) elements with zeros behind the columns; a last row holds A^T P
// l. Its low parts follow behind all rows.
struct ExactNormalKernels {
    // `scales` are n + 1 powers of two, each at least the length of that column of sqrt(P) A or l; equation k
    // goes to partial sum k % 8. Errs by about kExactError (m / 8 + 8) of the lengths.
    void (*form)(const Equations& equations, bool unitWeights, const double* scales, double* buffer,
                 double* normal);
    // residuals = I - V N, rounded, rows of exactRowLength(n); V has rows of n + 1.
    void (*inverseResiduals)(const double* normal, const double* v, int n, double* residuals);
    // A^T P l - N x, rounded, exactRowLength(n) elements; x = high + low.
    void (*misclosure)(const double* normal, const double* high, const double* low, int n, double* sums);
};

constexpr double kExactError = 0x1p-105;

constexpr int exactRowLength(int n) { return (n + 7) / 8 * 8; }
constexpr int exactNormalSize(int n) { return 2 * (n + 1) * exactRowLength(n); }
// Of doubles that `form` needs; aligned to 64 bytes.
constexpr int exactBufferSize(int n) {
    const int columns = n + 8, pairs = (n + 1) * (n + 2) / 2 + 8;
    return 3 * columns * 64 + 34 * pairs;
}

namespace baseline {
extern const ExactNormalKernels exactNormalKernels;
}
namespace avx2 {
extern const ExactNormalKernels exactNormalKernels;
}
namespace avx512 {
extern const ExactNormalKernels exactNormalKernels;
}

}  // namespace fieldscan

#endif
