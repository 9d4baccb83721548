#include "adjustment/normal_equations.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

#include "adjustment/buffer.h"
#include "adjustment/normal_kernels.h"
#include "platform/framework/instruction_set.h"

namespace fieldscan {

namespace {

constexpr int kPlain = 8;  // unknowns up to which the plain loops on triangles are as fast

}  // namespace

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

bool isSingularPivot(double pivot, double diagonal, int n, double tolerance) {
    const double rounding = 64.0 * n * std::numeric_limits<double>::epsilon() * diagonal;
    return !(pivot > std::max(tolerance, rounding));
}

double choleskyFactor(const double* normal, int n, double tolerance, double* factor) {
    if (n > kPlain) {
        const NormalKernels& kernels = FIELDSCAN_CHOSEN(normalKernels);
        Buffer buffer(kernels.bufferSize(n, n, n));
        return kernels.factor(normal, n, tolerance, buffer.data(), factor);
    }
    const std::ptrdiff_t length = n + 1;
    std::copy(normal, normal + n * length, factor);
    double smallest = 1.0;
    for (int k = 0; k < n; ++k) {
        double* pivotRow = factor + k * length;
        const double diagonal = normal[k * length + k];
        if (isSingularPivot(pivotRow[k], diagonal, n, tolerance))
            return 0.0;
        smallest = std::min(smallest, pivotRow[k] / diagonal);
        const double root = std::sqrt(pivotRow[k]);
        pivotRow[k] = root;
        for (int j = k + 1; j < n; ++j)
            pivotRow[j] /= root;
        for (int i = k + 1; i < n; ++i) {
            double* __restrict row = factor + i * length;
            const double multiple = pivotRow[i];
            for (int j = i; j < n; ++j)
                row[j] -= multiple * pivotRow[j];
        }
    }
    return smallest;
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

// Row by row upward: W = U^-1 has W_ij = -(sum over k of U_ik W_kj) / U_ii. Row i of W lies where row i of U
// lay; its elements are read before their places are written, from the right.
void invertTriangle(double* factor, int n) {
    if (n > kPlain) {
        FIELDSCAN_CHOSEN(normalKernels).invert(factor, n);
        return;
    }
    const std::ptrdiff_t length = n + 1;
    for (int i = n - 1; i >= 0; --i) {
        double* row = factor + i * length;
        for (int j = n - 1; j > i; --j) {
            double sum = 0.0;
            for (int k = i + 1; k <= j; ++k)
                sum += row[k] * factor[k * length + j];
            row[j] = -sum / row[i];
        }
        row[i] = 1.0 / row[i];
    }
}

void multiplyByTranspose(const double* triangle, int n, double* product) {
    if (n > kPlain) {
        const NormalKernels& kernels = FIELDSCAN_CHOSEN(normalKernels);
        Buffer buffer(kernels.bufferSize(n, n, n));
        kernels.multiply(triangle, n, buffer.data(), product);
        mirror(product, n);
        return;
    }
    const std::ptrdiff_t length = n + 1;
    for (int i = 0; i < n; ++i) {
        for (int j = i; j < n; ++j) {
            double sum = 0.0;
            for (int k = j; k < n; ++k)
                sum += triangle[i * length + k] * triangle[j * length + k];
            product[i * length + j] = sum;
        }
        product[i * length + n] = 0.0;
    }
    mirror(product, n);
}

}  // namespace fieldscan
