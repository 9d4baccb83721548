#include "adjustment/normal_equations.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <type_traits>

#include "adjustment/normal_kernels.h"
#include "platform/framework/instruction_set.h"

namespace fieldscan {

namespace {

constexpr int kFew =
    8;  // unknowns up to which plain loops on triangles, unrolled, are faster than the kernels

// Aligned to cache lines; not initialized.
class Buffer {
public:
    explicit Buffer(long long size)
        : m_storage(new double[static_cast<std::size_t>(size) + kLine]), m_data(m_storage.get()) {
        while (reinterpret_cast<std::uintptr_t>(m_data) % (kLine * sizeof(double)) != 0)
            ++m_data;
    }
    double* data() { return m_data; }

private:
    static constexpr std::size_t kLine = 8;
    std::unique_ptr<double[]> m_storage;
    double* m_data;
};

// ---- Triangles ----

// `work` of n, which the compiler knows up to `most`: loops unroll (XXX of the time of 8 equations of 4
// unknowns).
template <int most, class Work>
auto withCount(int n, Work work) {
    if constexpr (most == 0)
        return work(n);
    else
        return n == most ? work(std::integral_constant<int, most>()) : withCount<most - 1>(n, work);
}

template <class Count>
double factorFew(const double* normal, Count n, double tolerance, double* factor) {
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

template <class Count>
void solveTransposedBy(const double* factor, Count n, double* vector) {
    const std::ptrdiff_t length = n + 1;
    for (int k = 0; k < n; ++k) {
        const double* row = factor + k * length;
        vector[k] /= row[k];
        for (int j = k + 1; j < n; ++j)
            vector[j] -= row[j] * vector[k];
    }
}

template <class Count>
void solveUpperBy(const double* factor, Count n, double* vector) {
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
template <class Count>
void invertFew(double* factor, Count n) {
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

template <class Count>
void multiplyFew(const double* triangle, Count n, double* product) {
    const std::ptrdiff_t length = n + 1;
    for (int i = 0; i < n; ++i) {
        for (int j = i; j < n; ++j) {
            double sum = 0.0;
            for (int k = j; k < n; ++k)
                sum += triangle[i * length + k] * triangle[j * length + k];
            product[i * length + j] = product[j * length + i] = sum;
        }
        product[i * length + n] = 0.0;
    }
}

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
    if (n > kFew) {
        const NormalKernels& kernels = FIELDSCAN_CHOSEN(normalKernels);
        Buffer buffer(kernels.bufferSize(n, n, n));
        return kernels.factor(normal, n, tolerance, buffer.data(), factor);
    }
    return withCount<kFew>(n, [=](auto count) { return factorFew(normal, count, tolerance, factor); });
}

void solveTransposed(const double* factor, int n, double* vector) {
    withCount<kFew>(n, [=](auto count) { solveTransposedBy(factor, count, vector); });
}

void solveUpper(const double* factor, int n, double* vector) {
    withCount<kFew>(n, [=](auto count) { solveUpperBy(factor, count, vector); });
}

void invertTriangle(double* factor, int n) {
    if (n > kFew)
        FIELDSCAN_CHOSEN(normalKernels).invert(factor, n);
    else
        withCount<kFew>(n, [=](auto count) { invertFew(factor, count); });
}

void multiplyByTranspose(const double* triangle, int n, double* product) {
    if (n > kFew) {
        const NormalKernels& kernels = FIELDSCAN_CHOSEN(normalKernels);
        Buffer buffer(kernels.bufferSize(n, n, n));
        kernels.multiply(triangle, n, buffer.data(), product);
        mirror(product, n);
    } else {
        withCount<kFew>(n, [=](auto count) { multiplyFew(triangle, count, product); });
    }
}

}  // namespace fieldscan
