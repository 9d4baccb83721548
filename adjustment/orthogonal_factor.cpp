#include "adjustment/orthogonal_factor.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

#include "adjustment/refinement_kernels.h"
#include "platform/framework/instruction_set.h"

namespace fieldscan {

namespace {

// sqrt(P) A, m rows filled up to whole registers, turned into its triangle column by column.
class WeightedRows {
public:
    explicit WeightedRows(const Equations& equations)
        : m_m(equations.m),
          m_length((equations.n / kReflectedColumns + 1) * kReflectedColumns),
          m_rows(static_cast<std::size_t>(m_m) * static_cast<std::size_t>(m_length)),
          m_reflector(static_cast<std::size_t>(m_m)) {
        const double* from = equations.rows;
        for (int k = 0; k < m_m; ++k, from += equations.n + 1) {
            const double root = std::sqrt(equations.weights[k]);
            std::transform(from, from + equations.n, row(k), [=](double a) { return root * a; });
        }
    }

    double* row(int k) { return m_rows.data() + static_cast<std::ptrdiff_t>(k) * m_length; }

    std::vector<double> lengths() {
        std::vector<double> sums(static_cast<std::size_t>(m_length));
        m_kernels.columnSquares(m_rows.data(), m_m, m_length, sums.data());
        std::transform(sums.begin(), sums.end(), sums.begin(), [](double sum) { return std::sqrt(sum); });
        return sums;
    }

    // Length of column `j` from row `first` on.
    double length(int j, int first) {
        double squares = 0.0;
        for (int k = first; k < m_m; ++k)
            squares += row(k)[j] * row(k)[j];
        return std::sqrt(squares);
    }

    // Reflects rows `j` and below so that column j would be 0 below its diagonal, which becomes +-length. The
    // reflection is I - v v^T / (length |v_j|), v the column with length added to its diagonal, away from 0.
    // Columns up to j, which are needed no more, may change too.
    void reflect(int j, double length) {
        const double diagonal = row(j)[j];
        const double tip = diagonal < 0.0 ? diagonal - length : diagonal + length;
        row(j)[j] = tip;
        double* const v = m_reflector.data();
        for (int k = j; k < m_m; ++k)
            v[k - j] = row(k)[j];
        const int next = j + 1;
        m_kernels.reflectColumns(row(j), m_m - j, m_length, next - next % kReflectedColumns, v,
                                 length * std::fabs(tip));
        row(j)[j] = diagonal < 0.0 ? length : -length;
    }

private:
    const RefinementKernels& m_kernels = FIELDSCAN_CHOSEN(refinementKernels);
    int m_m;
    int m_length;
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
    const std::vector<double> lengths = rows.lengths();
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
