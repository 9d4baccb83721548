#include "numerics/orthonormal.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "numerics/exact_sums.h"
#include "numerics/triangle.h"
#include "numerics/workspace.h"

namespace fieldscan {

namespace {

using Vector = std::vector<double>;

// Squared lengths of the columns of sqrt(|P|) B | sqrt(|P|) l.
Vector squaresOf(const double* rows, const WeightedRows& a) {
    const std::size_t length = static_cast<std::size_t>(a.n) + 1;
    Vector squares(length);
    for (int k = 0; k < a.m; ++k)
        for (std::size_t i = 0; i < length; ++i, ++rows)
            squares[i] += *rows * *rows * std::fabs(a.weights[k]);
    return squares;
}

// S = B^T P B | B^T P l of B = A Z. Exact sums, so that a row with a negative weight takes out another one of
// any size.
bool formGram(const WeightedRows& a, const double* z, double* gram) {
    const Workspace room(exactProductsRoom(a.n));
    Vector b(static_cast<std::size_t>(a.m) * (static_cast<std::size_t>(a.n) + 1));
    FIELDSCAN_CHOSEN(multiplyRows)(a, z, room.data(), b.data());
    ExactGram sums(a.n);
    if (!sums.form({b.data(), a.weights, a.m, a.n}, squaresOf(b.data(), a).data()))
        return false;
    sums.round(gram);
    return true;
}

// z becomes z u, both upper triangles.
void multiplyTriangles(double* z, const Vector& u, int n) {
    const std::ptrdiff_t length = n + 1;
    Vector row(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i) {
        std::fill(row.begin(), row.end(), 0.0);
        for (int k = i; k < n; ++k)
            for (int j = k; j < n; ++j)
                row[static_cast<std::size_t>(j)] +=
                    z[i * length + k] * u[static_cast<std::size_t>(k * length + j)];
        std::copy(row.begin() + i, row.end(), z + i * length + i);
    }
}

}  // namespace

bool orthonormalize(const WeightedRows& a, double* root) {
    constexpr double kLeast = 1e-13;
    constexpr double kNear = 0.25;  // pivots of an S that is I but for rounding
    constexpr int kMostSteps = 6;
    const int n = a.n;
    const std::ptrdiff_t length = n + 1;
    const double shift = 128.0 * n * __DBL_EPSILON__;  // more than what choleskyFactor takes for singular
    Vector gram(static_cast<std::size_t>(n * length)), factor(gram.size()), lengths;
    const auto diagonal = [=](int i) { return static_cast<std::size_t>(i * (length + 1)); };
    std::fill(root, root + n * length, 0.0);
    const Vector squares = squaresOf(a.rows, a);
    for (int i = 0; i < n; ++i) {
        const double square = squares[static_cast<std::size_t>(i)];
        if (!(square > 0.0 && std::isfinite(square)))
            return false;
        root[diagonal(i)] = std::ldexp(1.0, -std::ilogb(std::sqrt(square)));
    }
    bool near = false;
    for (int step = 0; !near; ++step) {
        if (step == kMostSteps || !formGram(a, root, gram.data()))
            return false;
        for (int i = 0; i < n && step == 0; ++i)
            lengths.push_back(std::sqrt(gram[diagonal(i)]) / root[diagonal(i)]);
        near = step > 0 && choleskyFactor(gram.data(), n, kNear, factor.data());
        for (int i = 0; i < n && !near; ++i)
            gram[diagonal(i)] *= 1.0 + shift;
        if (!near && !choleskyFactor(gram.data(), n, 0.0, factor.data()))
            return false;
        invertTriangle(factor.data(), n);
        multiplyTriangles(root, factor, n);
        for (int i = 0; i < n; ++i)
            if (!(root[diagonal(i)] * lengths[static_cast<std::size_t>(i)] * kLeast < 1.0))
                return false;
    }
    return true;
}

}  // namespace fieldscan
