// Modified Gram-Schmidt with pivoting and reorthogonalisation; source: gram_schmidt.h.
#include "numerics/gram_schmidt.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <numeric>
#include <utility>

namespace fieldscan {

namespace {

double length(const Column& a, std::ptrdiff_t m) { return std::sqrt(innerProduct(a, a, m)); }

void multiply(Column& column, double factor) {
    for (double& element : column)
        element *= factor;
}

// Makes `column` orthogonal to `unit`.
void orthogonalize(Column& column, const Column& unit, std::ptrdiff_t m) {
    const double part = innerProduct(column, unit, m);
    for (std::size_t k = 0; k < column.size(); ++k)
        column[k] -= part * unit[k];
}

}  // namespace

// In eight partial sums: each addition to a single one would wait for the one before it.
double innerProduct(const Column& a, const Column& b, std::ptrdiff_t m) {
    double sums[8] = {};
    std::ptrdiff_t k = 0;
    for (; k + 8 <= m; k += 8)
        for (int i = 0; i < 8; ++i)
            sums[i] += a.begin()[k + i] * b.begin()[k + i];
    for (; k < m; ++k)
        sums[0] += a.begin()[k] * b.begin()[k];
    return std::accumulate(sums, sums + 8, 0.0);
}

GramSchmidt::GramSchmidt(std::vector<Column> matrix, std::ptrdiff_t m) : columns(std::move(matrix)) {
    const std::size_t n = columns.size();
    const double dependent = std::max(1e-13, 16.0 * static_cast<double>(n) * DBL_EPSILON);
    for (Column& column : columns) {
        lengths.push_back(length(column, m));
        if (lengths.back() > 0.0)
            multiply(column, 1.0 / lengths.back());
        column.resize(column.size() + n);
        column[column.size() - n + lengths.size() - 1] = 1.0;
    }
    for (; rank < n; ++rank) {
        std::size_t pivot = rank;
        double rest = 0.0;
        for (std::size_t i = rank; i < n; ++i)
            if (const double candidate = length(columns[i], m); candidate > rest) {
                rest = candidate;
                pivot = i;
            }
        Column& unit = columns[rank];
        unit.swap(columns[pivot]);
        for (std::size_t i = 0; i < rank; ++i)
            orthogonalize(unit, columns[i], m);
        rest = length(unit, m);
        if (!(rest > dependent))
            return;
        multiply(unit, 1.0 / rest);
        for (std::size_t i = rank + 1; i < n; ++i)
            orthogonalize(columns[i], unit, m);
    }
}

}  // namespace fieldscan
