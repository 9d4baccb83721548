// Shifted Cholesky QR, with S in double-double; legend and source: orthonormal.h.
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

// S = B^T P B | B^T P l of B = A Z. The sums are exact: a row with a negative weight cancels the row that it
// takes out, of any size.
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

// z becomes z u, both upper triangles; in place from the right, since an element takes only those to its
// left.
void multiplyTriangles(double* z, const double* u, int n) {
    const std::ptrdiff_t length = n + 1;
    for (int i = 0; i < n; ++i)
        for (int j = n - 1; j >= i; --j) {
            double sum = 0.0;
            for (int k = i; k <= j; ++k)
                sum += z[i * length + k] * u[k * length + j];
            z[i * length + j] = sum;
        }
}

}  // namespace

bool orthonormalize(const WeightedRows& a, double* root) {
    constexpr double kDependent = 1e-13;        // part of a column's length
    constexpr double kLeastPivotOfUnit = 0.25;  // of an S that is I but for rounding
    constexpr int kMostSteps = 6;
    const int n = a.n;
    const std::ptrdiff_t length = n + 1;
    const double shift = 2.0 * kSingular * n;  // twice what choleskyFactor refuses
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
    bool orthonormal = false;
    for (int step = 0; !orthonormal; ++step) {
        if (step == kMostSteps || !formGram(a, root, gram.data()))
            return false;
        for (int i = 0; i < n && step == 0; ++i)
            lengths.push_back(std::sqrt(gram[diagonal(i)]) / root[diagonal(i)]);
        orthonormal = step > 0 && choleskyFactor(gram.data(), n, kLeastPivotOfUnit, factor.data());
        for (int i = 0; i < n && !orthonormal; ++i)
            gram[diagonal(i)] *= 1.0 + shift;
        if (!orthonormal && !choleskyFactor(gram.data(), n, 0.0, factor.data()))
            return false;
        invertTriangle(factor.data(), n);
        multiplyTriangles(root, factor.data(), n);
        for (int i = 0; i < n; ++i)
            if (!(root[diagonal(i)] * lengths[static_cast<std::size_t>(i)] * kDependent < 1.0))
                return false;
    }
    return true;
}

}  // namespace fieldscan
