// The sweep operator, compiled for each small number of unknowns and once for any.
#include "numerics/sweep.h"

#include <cstddef>

#include "numerics/triangle.h"
#include "platform/framework/unroll.h"

namespace fieldscan {

namespace {

constexpr int kMostCompiled = 6;  // unknowns of a transformation in the plane, of a camera in space

// Sweeping pivot d = a_kk: a_ij - a_ik a_kj / d outside row and column k, a_ik / d in them, -1 / d in their
// place. The matrix stays symmetric, so its upper half is enough. N becomes -N^-1; b, the last column,
// becomes the unknowns.
//
// `compiled` is the number of unknowns, or 0 for any. With a known number the matrix stays in registers: 0.84
// of the time of 8 x 4, 0.75 of 20 x 6.
template <int compiled>
bool sweepCompiled(const double* normal, int unknowns, double tolerance, double* work, double* solution,
                   double* inverse) {
    const int n = compiled > 0 ? compiled : unknowns;
    const std::ptrdiff_t length = n + 1;
    double local[compiled * (compiled + 1) + 1];
    double* const a = compiled > 0 ? local : work;
    FIELDSCAN_UNROLL(8)
    for (int i = 0; i < n; ++i) {
        FIELDSCAN_UNROLL(8)
        for (int j = i; j <= n; ++j)
            a[i * length + j] = normal[i * length + j];
    }
    FIELDSCAN_UNROLL(8)
    for (int k = 0; k < n; ++k) {
        const double pivot = a[k * length + k];
        if (isSingularPivot(pivot, normal[k * length + k], n, tolerance))
            return false;
        const double reciprocal = 1.0 / pivot;
        FIELDSCAN_UNROLL(8)
        for (int i = 0; i < n; ++i) {
            if (i == k)
                continue;
            const double multiple = (i < k ? a[i * length + k] : a[k * length + i]) * reciprocal;
            FIELDSCAN_UNROLL(8)
            for (int j = i; j <= n; ++j)
                if (j != k)
                    a[i * length + j] -= multiple * (j < k ? a[j * length + k] : a[k * length + j]);
        }
        FIELDSCAN_UNROLL(8)
        for (int i = 0; i < k; ++i)
            a[i * length + k] *= reciprocal;
        FIELDSCAN_UNROLL(8)
        for (int j = k + 1; j <= n; ++j)
            a[k * length + j] *= reciprocal;
        a[k * length + k] = -reciprocal;
    }
    FIELDSCAN_UNROLL(8)
    for (int i = 0; i < n; ++i) {
        FIELDSCAN_UNROLL(8)
        for (int j = i; j < n; ++j)
            inverse[i * length + j] = inverse[j * length + i] = -a[i * length + j];
        inverse[i * length + n] = 0.0;
        solution[i] = a[i * length + n];
    }
    return true;
}

template <int most>
bool sweepUpTo(const double* normal, int n, double tolerance, double* work, double* solution,
               double* inverse) {
    if constexpr (most > 0)
        if (n != most)
            return sweepUpTo<most - 1>(normal, n, tolerance, work, solution, inverse);
    return sweepCompiled<most>(normal, n, tolerance, work, solution, inverse);
}

}  // namespace

bool sweep(const double* normal, int n, double tolerance, double* work, double* solution, double* inverse) {
    return sweepUpTo<kMostCompiled>(normal, n, tolerance, work, solution, inverse);
}

}  // namespace fieldscan
