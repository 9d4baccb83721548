#include "adjustment/normal_equations.h"

#include <cmath>
#include <cstddef>

#include "adjustment/buffer.h"
#include "adjustment/normal_kernels.h"
#include "platform/framework/instruction_set.h"

namespace fieldscan {

double squaredLength(const Equations& equations) {
    const std::ptrdiff_t length = equations.n + 1;
    double squares = 0.0;
    for (int k = 0; k < equations.m; ++k) {
        const double l = equations.rows[k * length + equations.n];
        squares += l * l * std::fabs(equations.weights[k]);
    }
    return squares;
}

void addToNormal(const Equations& equations, double* normal, double* observations) {
    const NormalKernels& kernels = FIELDSCAN_CHOSEN(normalKernels);
    if (equations.n <= kernels.most) {
        const double squares = kernels.addFew(equations, normal);
        if (observations)
            *observations = squares;
    } else {
        Buffer buffer(kernels.bufferSize(kEquationsPacked, equations.n, equations.n + 1));
        kernels.addMany(equations, buffer.data(), normal);
        if (observations)
            *observations = squaredLength(equations);
    }
}

void mirror(double* matrix, int n) {
    const std::ptrdiff_t length = n + 1;
    for (int i = 1; i < n; ++i)
        for (int j = 0; j < i; ++j)
            matrix[i * length + j] = matrix[j * length + i];
}

double choleskyFactor(const double* normal, int n, double tolerance, double* factor) {
    const NormalKernels& kernels = FIELDSCAN_CHOSEN(normalKernels);
    Buffer buffer(kernels.bufferSize(n, n, n));
    return kernels.factor(normal, n, tolerance, buffer.data(), factor);
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

void invertTriangle(double* factor, int n) { FIELDSCAN_CHOSEN(normalKernels).invert(factor, n); }

void multiplyByTranspose(const double* triangle, int n, double* product) {
    const NormalKernels& kernels = FIELDSCAN_CHOSEN(normalKernels);
    Buffer buffer(kernels.bufferSize(n, n, n));
    kernels.multiply(triangle, n, buffer.data(), product);
    mirror(product, n);
}

}  // namespace fieldscan
