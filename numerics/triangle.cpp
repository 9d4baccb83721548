// Substitution with U, and the kernels of triangle.h with the room that they need.
#include "numerics/triangle.h"

#include <cstddef>

#include "numerics/gram.h"
#include "numerics/workspace.h"

namespace fieldscan {

bool choleskyFactor(const double* matrix, int n, double tolerance, double* factor) {
    const Workspace room(FIELDSCAN_CHOSEN(triangleRoom)(n));
    return FIELDSCAN_CHOSEN(factorize)(matrix, n, tolerance, room.data(), factor);
}

void solveTransposed(const double* factor, int n, double* vector) {
    const std::ptrdiff_t length = n + 1;
    for (int k = 0; k < n; ++k) {
        const double* row = factor + k * length;
        vector[k] /= row[k];
        for (int j = k + 1; j < n; ++j)
            vector[j] -= row[j] * vector[k];
    }
}

void solveUpper(const double* factor, int n, double* vector) {
    const std::ptrdiff_t length = n + 1;
    for (int k = n - 1; k >= 0; --k) {
        const double* row = factor + k * length;
        double rest = vector[k];
        for (int j = k + 1; j < n; ++j)
            rest -= row[j] * vector[j];
        vector[k] = rest / row[k];
    }
}

void invertTriangle(double* factor, int n) { FIELDSCAN_CHOSEN(invert)(factor, n); }

void multiplyByTranspose(const double* triangle, int n, double* product) {
    const Workspace room(FIELDSCAN_CHOSEN(triangleRoom)(n));
    FIELDSCAN_CHOSEN(multiply)(triangle, n, room.data(), product);
    mirror(product, n);
}

}  // namespace fieldscan
