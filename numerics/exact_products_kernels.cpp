// Kernels of exact_products.h: a sum a lane, each added up in its order.
//
//   A W, residuals   lanes hold rows k of A, turned into columns a block at a time
//   A^T P v          likewise; of each column kPartialSums sums, row k goes to sum k % kPartialSums
//
// An addition waits seven times for the one before it: several registers of sums at a time hide that. Zeros
// change no sum, so blocks are filled up with them.
#include "numerics/double_double.h"
#include "numerics/exact_products.h"
#include "numerics/transpose.h"

namespace fieldscan {
namespace FIELDSCAN_KERNELS {

namespace {

using Index = long long;
using Exact = DoubleDouble<Lanes>;

// Columns j to j + kColumns of the products of kLanes rows.
template <int kColumns>
void multiplyColumns(const double* transposed, const double* w, Index length, int j, int count, double* b) {
    Exact sums[kColumns] = {};
    const auto add = [&](int i, int c) {
        sums[c] = sums[c] + twoProduct(broadcast(w[i * length + j + c]), load(transposed + i * kLanes));
    };
    for (int i = 0; i <= j; ++i)
        for (int c = 0; c < kColumns; ++c)
            add(i, c);
    for (int i = 1; i < kColumns; ++i)
        for (int c = i; c < kColumns; ++c)
            add(j + i, c);
    for (int c = 0; c < kColumns; ++c)
        for (int k = 0; k < count; ++k)
            b[k * length + j + c] = sums[c].hi[k];
}

}  // namespace

void multiplyRows(const double* rows, int count, const double* w, int n, double* room, double* b) {
    const Index length = n + 1;
    for (int first = 0; first < count; first += kLanes, rows += kLanes * length, b += kLanes * length) {
        const int some = count - first < kLanes ? count - first : kLanes;
        transpose(rows, some, n, length, (count - first) * length, kLanes, kLanes, room);
        int j = 0;
        for (; j + 4 <= n; j += 4)
            multiplyColumns<4>(room, w, length, j, some, b);
        for (; j < n; ++j)
            multiplyColumns<1>(room, w, length, j, some, b);
        for (Index k = 0; k < some; ++k)
            b[k * length + n] = rows[k * length + n];
    }
}

double sumResiduals(const WeightedRows& a, const double* high, const double* low, double* room,
                    double* sums) {
    constexpr int kBlock = kPartialSums > 2 * kLanes ? kPartialSums : 2 * kLanes;  // rows
    constexpr int kVectors = kBlock / kLanes, kSums = kPartialSums / kLanes;
    const int n = a.n;
    const Index length = n + 1;
    double* const partial = room;  // hi, lo of each column's
    double* const transposed = partial + 2 * kPartialSums * n;
    double squares[kPartialSums] = {}, all = 0.0;
    for (int i = 0; i < 2 * kPartialSums * n; ++i)
        partial[i] = 0.0;
    for (int first = 0; first < a.m; first += kBlock) {
        const int count = a.m - first < kBlock ? a.m - first : kBlock;
        transpose(a.rows + first * length, count, n + 1, length, (a.m - first) * length, kBlock, kBlock,
                  transposed);
        double weights[kBlock] = {};
        for (int k = 0; k < count; ++k)
            weights[k] = a.weights[first + k];
        Exact residuals[kVectors];
        for (int v = 0; v < kVectors; ++v)
            residuals[v] = {load(transposed + n * kBlock + v * kLanes), Lanes{}};
        for (int i = 0; i < n; ++i)
            for (int v = 0; v < kVectors; ++v)
                residuals[v] = residuals[v] + Exact{broadcast(high[i]), broadcast(low[i])} *
                                                  -load(transposed + i * kBlock + v * kLanes);
        for (int v = 0; v < kVectors; ++v) {
            const Lanes weight = load(weights + v * kLanes);
            double* const sum = squares + v % kSums * kLanes;
            store(sum, load(sum) + residuals[v].hi * residuals[v].hi * weight);
            residuals[v] = residuals[v] * weight;
        }
        for (int i = 0; i < n; ++i)
            for (int s = 0; s < kSums; ++s) {
                double* const of = partial + 2 * kPartialSums * i + s * kLanes;
                Exact sum{load(of), load(of + kPartialSums)};
                for (int v = s; v < kVectors; v += kSums)
                    sum = sum + residuals[v] * load(transposed + i * kBlock + v * kLanes);
                store(of, sum.hi);
                store(of + kPartialSums, sum.lo);
            }
    }
    for (int s = 0; s < kPartialSums; ++s)
        all += squares[s];
    for (int i = 0; i < n; ++i) {
        const double* const of = partial + 2 * kPartialSums * i;
        Exact sum{};
        for (int s = 0; s < kPartialSums; ++s)
            sum = sum + Exact{broadcast(of[s]), broadcast(of[kPartialSums + s])};
        sums[i] = sum.hi[0];
    }
    return all;
}

}  // namespace FIELDSCAN_KERNELS
}  // namespace fieldscan
