// ExactGram: which kernels it calls, and the iteration for the inverse.
#include "numerics/exact_sums.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace fieldscan {

ExactGram::ExactGram(int n) : m_n(n), m_sums(2LL * (n + 1) * wholeCacheLines(n)) {}

void ExactGram::set(const double* matrix) {
    const std::ptrdiff_t length = m_n + 1, stride = wholeCacheLines(m_n);
    double* const sums = m_sums.data();
    std::fill(sums, sums + 2 * length * stride, 0.0);
    for (int i = 0; i < m_n; ++i)
        for (int j = 0; j <= m_n; ++j)
            sums[j * stride + i] = matrix[std::min(i, j) * length + std::max(i, j)];
}

void ExactGram::round(double* matrix) const {
    const std::ptrdiff_t length = m_n + 1, stride = wholeCacheLines(m_n);
    for (int i = 0; i < m_n; ++i)
        for (int j = i; j <= m_n; ++j)
            matrix[i * length + j] = m_sums.data()[j * stride + i];
}

bool ExactGram::form(const WeightedRows& a, const double* squares) {
    // Squared lengths. So |a_ki a_kj p_k| <= 2^800 and |a_ki l_k p_k| <= 2^900.
    constexpr double kMostOfColumn = 0x1p800, kMostOfObservations = 0x1p1000;
    const Workspace room(FIELDSCAN_CHOSEN(exactGramRoom)(m_n));
    for (int i = 0; i <= m_n; ++i) {
        const double most = i < m_n ? kMostOfColumn : kMostOfObservations;
        const bool allZero = i == m_n && squares[i] == 0.0;
        if (!allZero && !(squares[i] >= 1.0 / most && squares[i] <= most))
            return false;
        room.data()[i] = allZero ? 1.0 : std::ldexp(1.0, std::ilogb(std::sqrt(squares[i])) + 1);
    }
    FIELDSCAN_CHOSEN(formExactGram)(a, room.data(), m_sums.data());
    return true;
}

bool ExactGram::improveInverse(double* v) const {
    // Of corrections relative to sqrt(v_ii v_jj), squared. Each is about the square of the one before:
    // 0.32, 0.1, 0.01, 1e-4, 1e-8, 1e-16 in six steps. After one of 2^-30 the next would be 2^-60.
    constexpr double kMost = 0.1, kConverged = 0x1p-60;
    constexpr int kMostSteps = 6;
    const int n = m_n, stride = wholeCacheLines(n);
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
        if (largest <= kConverged)
            return true;
    }
    return false;
}

void ExactGram::residual(const double* high, const double* low, double* sums) const {
    FIELDSCAN_CHOSEN(gramResidual)(m_sums.data(), high, low, m_n, sums);
}

}  // namespace fieldscan
