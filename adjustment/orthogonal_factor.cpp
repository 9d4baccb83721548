#include "adjustment/orthogonal_factor.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

namespace fieldscan {

namespace {

// sqrt(P) A, m rows of n, turned into its triangle column by column.
class WeightedRows {
public:
    explicit WeightedRows(const Equations& equations)
        : m_m(equations.m),
          m_n(equations.n),
          m_rows(static_cast<std::size_t>(m_m) * static_cast<std::size_t>(m_n)),
          m_reflector(static_cast<std::size_t>(m_n)) {
        const double* from = equations.rows;
        for (int k = 0; k < m_m; ++k, from += m_n + 1) {
            const double root = std::sqrt(equations.weights[k]);
            std::transform(from, from + m_n, row(k), [=](double a) { return root * a; });
        }
    }

    double* row(int k) { return m_rows.data() + static_cast<std::ptrdiff_t>(k) * m_n; }

    // Length of column `j` from row `first` on.
    double length(int j, int first) {
        double squares = 0.0;
        for (int k = first; k < m_m; ++k)
            squares += row(k)[j] * row(k)[j];
        return std::sqrt(squares);
    }

    // Reflects rows `j` and below so that column j is 0 below its diagonal, which becomes +-length. The
    // reflection is I - v v^T / (length |v_j|), v the column with length added to its diagonal, away from 0.
    void reflect(int j, double length) {
        const double diagonal = row(j)[j];
        const double tip = diagonal < 0.0 ? diagonal - length : diagonal + length;
        row(j)[j] = tip;
        double* const __restrict sums = m_reflector.data();
        std::fill(sums + j + 1, sums + m_n, 0.0);
        for (int k = j; k < m_m; ++k) {
            const double* a = row(k);
            for (int i = j + 1; i < m_n; ++i)
                sums[i] += a[j] * a[i];
        }
        const double divisor = length * std::fabs(tip);
        for (int i = j + 1; i < m_n; ++i)
            sums[i] /= divisor;
        for (int k = j; k < m_m; ++k) {
            double* a = row(k);
            for (int i = j + 1; i < m_n; ++i)
                a[i] -= a[j] * sums[i];
        }
        row(j)[j] = diagonal < 0.0 ? length : -length;
    }

private:
    int m_m;
    int m_n;
    std::vector<double> m_rows;
    std::vector<double> m_reflector;
};

}  // namespace

bool orthogonalFactor(const Equations& equations, double* factor) {
    const int m = equations.m, n = equations.n;
    // Coincident points lie at 2e-16 (2 pairs) to 5e-13 (10000 pairs), points 1 cm apart at 4000000 m at
    // 8e-10.
    const double least = std::max(1e-13, 16.0 * m * std::numeric_limits<double>::epsilon());
    WeightedRows rows(equations);
    std::vector<double> lengths(static_cast<std::size_t>(n));
    for (int j = 0; j < n; ++j)
        lengths[static_cast<std::size_t>(j)] = rows.length(j, 0);
    for (int j = 0; j < n; ++j) {
        const double length = rows.length(j, j);  // 0 below the last row
        if (!(length > least * lengths[static_cast<std::size_t>(j)]))
            return false;
        rows.reflect(j, length);
        const double sign = rows.row(j)[j] < 0.0 ? -1.0 : 1.0;
        for (int i = j; i < n; ++i)
            factor[static_cast<std::ptrdiff_t>(j) * (n + 1) + i] = sign * rows.row(j)[i];
    }
    return true;
}

}  // namespace fieldscan
