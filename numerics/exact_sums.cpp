#include "numerics/exact_sums.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace fieldscan {

ExactGram::ExactGram(int n) : m_n(n), m_sums(2LL * (n + 1) * exactRowLength(n)) {}

void ExactGram::set(const double* matrix) {
    const std::ptrdiff_t length = m_n + 1, stride = exactRowLength(m_n);
    double* const sums = m_sums.data();
    std::fill(sums, sums + 2 * length * stride, 0.0);
    for (int i = 0; i < m_n; ++i)
        for (int j = 0; j <= m_n; ++j)
            sums[j * stride + i] = matrix[std::min(i, j) * length + std::max(i, j)];
}

void ExactGram::round(double* matrix) const {
    const std::ptrdiff_t length = m_n + 1, stride = exactRowLength(m_n);
    for (int i = 0; i < m_n; ++i)
        for (int j = i; j <= m_n; ++j)
            matrix[i * length + j] = m_sums.data()[j * stride + i];
}

bool ExactGram::form(const WeightedRows& a, const double* squares) {
    constexpr double kMost[] = {0x1p800, 0x1p1000};  // of a column, and of l, which is not squared
    const Workspace room(FIELDSCAN_CHOSEN(exactGramRoom)(m_n));
    for (int i = 0; i <= m_n; ++i) {
        const double most = kMost[i == m_n];
        const bool none = i == m_n && squares[i] == 0.0;  // every l is 0
        if (!none && !(squares[i] >= 1.0 / most && squares[i] <= most))
            return false;
        room.data()[i] = none ? 1.0 : std::ldexp(1.0, std::ilogb(std::sqrt(squares[i])) + 1);
    }
    FIELDSCAN_CHOSEN(formExactGram)(a, room.data(), m_sums.data());
    return true;
}

bool ExactGram::improveInverse(double* v) const {
    constexpr double kMost = 0.1;      // squared, of the cofactors
    constexpr double kLast = 0x1p-60;  // likewise: the next correction would be the square
    constexpr int kMostSteps = 6;
    const int n = m_n, stride = exactRowLength(n);
    const std::ptrdiff_t length = n + 1;
    const Workspace room(n * (stride + length));
    double* const residuals = room.data();
    double* const correction = residuals + n * stride;
    for (int step = 0; step < kMostSteps; ++step) {
        FIELDSCAN_CHOSEN(inverseResiduals)(m_sums.data(), v, n, residuals);
        std::fill(correction, correction + n * length, 0.0);
        double largest = 0.0;
        for (int i = 0; i < n; ++i) {
            double* const row = correction + i * length;
            for (int k = 0; k < n; ++k)
                for (int j = i; j < n; ++j)
                    row[j] += residuals[i * stride + k] * v[k * length + j];
            for (int j = i; j < n; ++j) {
                const double square = row[j] * row[j] / (v[i * (length + 1)] * v[j * (length + 1)]);
                if (!(square < kMost))
                    return false;
                largest = std::max(largest, square);
            }
        }
        for (int i = 0; i < n; ++i)
            for (int j = i; j < n; ++j)
                v[i * length + j] += correction[i * length + j];
        mirror(v, n);
        if (largest <= kLast)
            return true;
    }
    return false;
}

void ExactGram::residual(const double* high, const double* low, double* sums) const {
    FIELDSCAN_CHOSEN(gramResidual)(m_sums.data(), high, low, m_n, sums);
}

}  // namespace fieldscan
