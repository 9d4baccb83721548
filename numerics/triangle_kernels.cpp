// Kernels of triangle.h. Cholesky by blocks of rows: multiples of the finished rows of U are subtracted from
// the block in tiles (tiles.h). Z Z^T is summed in tiles, too.
#include <cmath>

#include "numerics/tiles.h"
#include "numerics/triangle.h"

namespace fieldscan {
namespace FIELDSCAN_KERNELS {

namespace {

constexpr int kBlock = 4 * kLanes;  // columns of the inverse at a time

// sums[j] += row[k] W(k, j) for k < count, over kBlock columns j; `w` is row 0 of these.
void addRows(const double* row, const double* w, Index length, int count, Lanes* sums) {
    Lanes sum[4] = {sums[0], sums[1], sums[2], sums[3]};
    for (int k = 0; k < count; ++k, w += length)
        for (int v = 0; v < 4; ++v)
            sum[v] += load(w + v * kLanes) * row[k];
    for (int v = 0; v < 4; ++v)
        sums[v] = sum[v];
}

}  // namespace

long long triangleRoom(int n) { return TileBuffer::sizeOf(n, n, n); }

bool factorize(const double* matrix, int n, double tolerance, double* room, double* factor) {
    const TileBuffer buffer(room, n, n);
    buffer.readSums(matrix, n);
    for (int first = 0; first < n; first += kRows) {
        const int end = smaller(n, first + kRows);
        for (int j = first - first % kPanel; first > 0 && j < n; j += kPanel)
            buffer.add<Update::subtract>(first, j, buffer.factors(), nullptr, 0, first);
        for (int k = first; k < end; ++k) {
            double* pivotRow = buffer.sums + k * buffer.length;
            if (isSingularPivot(pivotRow[k], matrix[k * (n + 1LL) + k], n, tolerance))
                return false;
            const double root = std::sqrt(pivotRow[k]);
            pivotRow[k] = root;
            for (int j = k + 1; j < n; ++j)
                pivotRow[j] /= root;
            for (int i = k + 1; i < end; ++i) {
                double* __restrict row = buffer.sums + i * buffer.length;
                const double multiple = pivotRow[i];
                for (int j = i; j < n; ++j)
                    row[j] -= multiple * pivotRow[j];
            }
            buffer.setRows(k, 1, pivotRow, 0, end, buffer.length);
        }
    }
    for (Index k = 0; k < n * (n + 1LL); ++k)
        factor[k] = matrix[k];
    buffer.writeSums(factor, n);
    return true;
}

// W = U^-1 by back substitution: W(i, j) = -(sum of U(i, k) W(k, j), i < k <= j) / U(i, i), W(j, j) = 1 /
// U(j, j). Blocks of columns from right to left: those to the left no longer read the U that a block
// overwrites. Rows from the bottom up. The block on the diagonal is kept in a copy, its rows padded with
// zeros to the left, which change no sum.
void invert(double* factor, int n) {
    const Index length = n + 1;
    for (int end = n; end > 0; end -= kBlock) {
        const int begin = end > kBlock ? end - kBlock : 0, width = end - begin;
        double diagonal[kBlock * kBlock] = {};
        for (int i = end - 1; i >= 0; --i) {
            double* row = factor + i * length;
            const int above = i < begin ? begin - i - 1 : 0, inside = i < begin ? begin : i + 1;
            Lanes sums[4] = {};
            addRows(row + i + 1, row + length + begin, length, above, sums);
            addRows(row + inside, diagonal + (inside - begin) * kBlock, kBlock, end - inside, sums);
            double* w = i < begin ? row + begin : diagonal + (i - begin) * kBlock;
            const double pivot = row[i];
            for (int v = 0; v < 4; ++v)
                store(w + v * kLanes, -sums[v] / pivot);
            if (i >= begin) {
                for (int c = 0; c < i - begin; ++c)
                    w[c] = 0.0;
                w[i - begin] = 1.0 / pivot;
            }
        }
        for (int i = 0; i < width; ++i)
            for (int c = i; c < width; ++c)
                factor[(begin + i) * length + begin + c] = diagonal[i * kBlock + c];
    }
}

// The rows of the triangle are padded with zeros to the left, which change no sum.
void multiply(const double* triangle, int n, double* room, double* product) {
    const TileBuffer buffer(room, n, n);
    for (int i = 0; i < roundUp(n, kPanel); ++i)
        for (int k = i - i % kPanel; k < n; ++k)
            *buffer.panelAt(k, i) = i <= k ? triangle[i * (n + 1LL) + k] : 0.0;
    for (Index k = 0; k < roundUp(n, kPanel) * buffer.length; ++k)
        buffer.sums[k] = 0.0;
    for (int j = 0; j < n; j += kPanel)
        for (int i = 0; i <= j; i += kPanel)
            buffer.addSquare<Update::add>(i, j, n, buffer.factors(), nullptr, j, n);
    buffer.writeSums(product, n);
    for (int i = 0; i < n; ++i)
        product[i * (n + 1LL) + n] = 0.0;
}

}  // namespace FIELDSCAN_KERNELS
}  // namespace fieldscan
