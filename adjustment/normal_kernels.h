// Kernels of normal_equations.cpp, compiled for each instruction set.
#ifndef FIELDSCAN_ADJUSTMENT_NORMAL_KERNELS_H
#define FIELDSCAN_ADJUSTMENT_NORMAL_KERNELS_H

#include "adjustment/normal_equations.h"

namespace fieldscan {

// Each gives the same bits as its plain loop in normal_equations.h; buffers are aligned to 64 bytes.
struct NormalKernels {
    // Multiplying by 1 changes no bit, so it is left out.
    bool (*weightsAreOne)(const Equations& equations);
    int most;  // unknowns that addFew is for, at least 1
    // Returns l^T |P| l.
    double (*addFew)(const Equations& equations, double* normal);
    // More unknowns than `most`; `buffer` for bufferSize(kEquationsPacked, n, n + 1) doubles.
    void (*addMany)(const Equations& equations, double* buffer, double* normal);
    // `buffer` for bufferSize(n, n, n) doubles.
    double (*factor)(const double* normal, int n, double tolerance, double* buffer, double* factor);
    void (*invert)(double* factor, int n);
    void (*multiply)(const double* triangle, int n, double* buffer, double* product);
    long long (*bufferSize)(int height, int rows, int columns);
};

constexpr int kEquationsPacked = 64;  // at a time; more gain nothing

namespace baseline {
extern const NormalKernels normalKernels;
}
namespace avx2 {
extern const NormalKernels normalKernels;
}
namespace avx512 {
extern const NormalKernels normalKernels;
}

}  // namespace fieldscan

#endif
