// Kernels of exact_sums.h. Lanes hold rows k of A, of which a block is transposed; in products with N they
// hold columns of N.
//
// The Gram matrix is summed by extraction (Rump, Ogita and Oishi, SIAM J. Sci. Comput. 31, 2008). Each
// partial sum begins at 4 s_i s_j, s_i a power of two >= the length of column i. The sums of products stay
// within s_i s_j (Cauchy-Schwarz), so a high sum has a fixed last place: the part of a product above it is
// added without error, the part below goes to a low sum.
//
// A double-double addition is a chain of seven operations; several registers of sums at a time hide its
// latency. Blocks are padded with zeros, which change no sum.
#include "numerics/double_double.h"
#include "numerics/exact_sums.h"
#include "numerics/transpose.h"

namespace fieldscan {
namespace FIELDSCAN_KERNELS {

namespace {

using Index = long long;
using Exact = DoubleDouble<Lanes>;

constexpr int kBlock = 64;  // rows

// a b - c, rounded once, where c is a b rounded to fewer digits. (Fused: 0.8 of the time of refining
// 5000 x 30.)
Lanes multiplySubtract(Lanes a, Lanes b, Lanes c) {
    if constexpr (kFused) {
        return productError(a, b, c);
    } else {
        const Exact product = twoProduct(a, b);
        return (product.hi - c) + product.lo;  // the difference is exact
    }
}

// Adds the products of column `left` with each of `count` columns from `right` on. A pair of columns has
// kPartialSums high sums, then as many low ones. left + leftRest = weight column.
template <bool weighted, int count>
void addProducts(const double* left, const double* leftRest, const double* right, int rows, double* sums) {
    for (int s = 0; s < kPartialSums; s += kLanes) {
        Lanes high[count], low[count];
        for (int c = 0; c < count; ++c) {
            high[c] = load(sums + 2 * kPartialSums * c + s);
            low[c] = load(sums + 2 * kPartialSums * c + kPartialSums + s);
        }
        for (int k = s; k < rows; k += kPartialSums) {
            const Lanes a = load(left + k);
            for (int c = 0; c < count; ++c) {
                const Lanes b = load(right + c * kBlock + k);
                const Lanes sum = high[c] + a * b;
                Lanes rest = multiplySubtract(a, b, sum - high[c]);
                if (weighted)
                    rest += load(leftRest + k) * b;
                low[c] += rest;
                high[c] = sum;
            }
        }
        for (int c = 0; c < count; ++c) {
            store(sums + 2 * kPartialSums * c + s, high[c]);
            store(sums + 2 * kPartialSums * c + kPartialSums + s, low[c]);
        }
    }
}

template <bool weighted>
void addBlock(const double* columns, const double* left, const double* leftRest, int n, int rows,
              double* sums) {
    for (int i = 0; i < n; ++i, left += kBlock, leftRest += kBlock) {
        int j = i;
        const auto add = [&](auto products, int count) {
            for (; j + count <= n + 1; j += count, sums += 2 * kPartialSums * count)
                products(left, leftRest, columns + j * kBlock, rows, sums);
        };
        add(addProducts<weighted, 4>, 4);
        add(addProducts<weighted, 2>, 2);
        add(addProducts<weighted, 1>, 1);
    }
}

// left + leftRest = weight column, exactly.
void weigh(const double* columns, const double* weights, int n, int rows, double* left, double* leftRest) {
    for (int i = 0; i < n; ++i)
        for (int k = 0; k < rows; k += kLanes) {
            const auto product = twoProduct(load(columns + i * kBlock + k), load(weights + k));
            store(left + i * kBlock + k, product.hi);
            store(leftRest + i * kBlock + k, product.lo);
        }
}

// Rows j to j + count of I - V N.
template <int count>
void inverseResidualsOf(const double* gram, const double* v, int n, int j, double* residuals) {
    const int stride = wholeCacheLines(n), low = (n + 1) * stride;
    for (int i = 0; i < n; i += kLanes) {
        Exact sums[count] = {};
        for (int c = 0; c < count; ++c)
            if (j + c >= i && j + c < i + kLanes)
                sums[c].hi[j + c - i] = 1.0;
        for (int k = 0; k < n; ++k) {
            const Exact row = {load(gram + k * stride + i), load(gram + low + k * stride + i)};
            for (int c = 0; c < count; ++c)
                sums[c] = sums[c] + row * broadcast(-v[(j + c) * (n + 1) + k]);
        }
        for (int c = 0; c < count; ++c)
            store(residuals + (j + c) * stride + i, sums[c].hi);
    }
}

// Columns j to j + count of A W for kLanes rows of A, transposed.
template <int count>
void multiplyColumns(const double* transposed, const double* w, Index length, int j, double* b, int rows) {
    Exact sums[count] = {};
    for (int i = 0; i < j + count; ++i)  // W has zeros below its diagonal
        for (int c = 0; c < count; ++c)
            sums[c] = sums[c] + twoProduct(broadcast(w[i * length + j + c]), load(transposed + i * kLanes));
    for (int c = 0; c < count; ++c)
        for (int k = 0; k < rows; ++k)
            b[k * length + j + c] = sums[c].hi[k];
}

}  // namespace

long long exactGramRoom(int n) {
    return wholeCacheLines(n + 1) + 3LL * (n + 8) * kBlock + 17LL * wholeCacheLines(n * (n + 3) / 2);
}

void formExactGram(const WeightedRows& a, double* room, double* gram) {
    const int n = a.n, length = n + 1, pairs = n * (n + 3) / 2, filledPairs = wholeCacheLines(pairs);
    const bool unit = weightsAreOne(a);
    const double* const scales = room;
    double* const columns = room + wholeCacheLines(length);
    double* const left = columns + (n + 8) * kBlock;
    double* const leftRest = left + (n + 8) * kBlock;
    double* const starts = leftRest + (n + 8) * kBlock;
    double* const sums = starts + filledPairs;
    int pair = 0;
    for (int i = 0; i < n; ++i)
        for (int j = i; j < length; ++j)
            starts[pair++] = 4.0 * scales[i] * scales[j];
    for (; pair < filledPairs; ++pair)
        starts[pair] = 0.0;
    for (int p = 0; p < filledPairs; ++p)
        for (int s = 0; s < kPartialSums; ++s) {
            sums[2 * kPartialSums * p + s] = starts[p];
            sums[2 * kPartialSums * p + kPartialSums + s] = 0.0;
        }
    for (int first = 0; first < a.m; first += kBlock) {
        const int rest = a.m - first, count = rest < kBlock ? rest : kBlock;
        const int filled = (count + kPartialSums - 1) / kPartialSums * kPartialSums;
        transpose(a.rows + static_cast<Index>(first) * length, count, length, length,
                  static_cast<Index>(rest) * length, filled, kBlock, columns);
        if (unit) {
            addBlock<false>(columns, columns, columns, n, filled, sums);
        } else {
            double weights[kBlock] = {};
            for (int k = 0; k < count; ++k)
                weights[k] = a.weights[first + k];
            weigh(columns, weights, n, filled, left, leftRest);
            addBlock<true>(columns, left, leftRest, n, filled, sums);
        }
    }

    const int stride = wholeCacheLines(n), low = length * stride;
    for (int k = 0; k < 2 * low; ++k)
        gram[k] = 0.0;
    int i = 0, j = 0;
    for (int p = 0; p < pairs; p += kLanes) {  // adds up the partial sums of kLanes pairs at a time
        double transposed[2 * kPartialSums * kLanes], high[kLanes], rests[kLanes];
        transpose(sums + 2 * kPartialSums * p, kLanes, 2 * kPartialSums, 2 * kPartialSums,
                  2 * kPartialSums * kLanes, kLanes, kLanes, transposed);
        Exact sum = {};
        for (int s = 0; s < kPartialSums; ++s)
            sum = sum + twoSum(load(transposed + s * kLanes) - load(starts + p),
                               load(transposed + (kPartialSums + s) * kLanes));
        store(high, sum.hi);
        store(rests, sum.lo);
        for (int lane = 0; lane < kLanes && p + lane < pairs; ++lane) {
            gram[j * stride + i] = high[lane];
            gram[low + j * stride + i] = rests[lane];
            if (j < n) {
                gram[i * stride + j] = high[lane];
                gram[low + i * stride + j] = rests[lane];
            }
            if (++j == length)
                j = ++i;
        }
    }
}

void inverseResiduals(const double* gram, const double* v, int n, double* residuals) {
    int j = 0;
    for (; j + 4 <= n; j += 4)
        inverseResidualsOf<4>(gram, v, n, j, residuals);
    for (; j < n; ++j)
        inverseResidualsOf<1>(gram, v, n, j, residuals);
}

void gramResidual(const double* gram, const double* high, const double* low, int n, double* sums) {
    const int stride = wholeCacheLines(n), rests = (n + 1) * stride;
    for (int i = 0; i < n; i += kLanes) {
        const auto element = [=](int k) {
            return Exact{load(gram + k * stride + i), load(gram + rests + k * stride + i)};
        };
        Exact sum = element(n);
        for (int k = 0; k < n; ++k)
            sum = sum + element(k) * broadcast(-high[k]) + Exact{element(k).hi * -low[k], Lanes{}};
        store(sums + i, sum.hi);
    }
}

void multiplyRows(const WeightedRows& a, const double* w, double* room, double* b) {
    const Index length = a.n + 1;
    for (int first = 0; first < a.m; first += kLanes, b += kLanes * length) {
        const int count = a.m - first < kLanes ? a.m - first : kLanes;
        const double* const rows = a.rows + first * length;
        transpose(rows, count, a.n, length, (a.m - first) * length, kLanes, kLanes, room);
        int j = 0;
        for (; j + 4 <= a.n; j += 4)
            multiplyColumns<4>(room, w, length, j, b, count);
        for (; j < a.n; ++j)
            multiplyColumns<1>(room, w, length, j, b, count);
        for (Index k = 0; k < count; ++k)
            b[k * length + a.n] = rows[k * length + a.n];
    }
}

double sumResiduals(const WeightedRows& a, const double* high, const double* low, double* room,
                    double* sums) {
    constexpr int kRows = kPartialSums > 2 * kLanes ? kPartialSums : 2 * kLanes;  // at a time
    constexpr int kVectors = kRows / kLanes, kSums = kPartialSums / kLanes;
    const int n = a.n;
    const Index length = n + 1;
    double* const partial = room;  // of each column kPartialSums high ones, then as many low ones
    double* const transposed = partial + 2 * kPartialSums * n;
    double squares[kPartialSums] = {}, sumOfSquares = 0.0;
    for (int i = 0; i < 2 * kPartialSums * n; ++i)
        partial[i] = 0.0;
    for (int first = 0; first < a.m; first += kRows) {
        const int count = a.m - first < kRows ? a.m - first : kRows;
        transpose(a.rows + first * length, count, n + 1, length, (a.m - first) * length, kRows, kRows,
                  transposed);
        double weights[kRows] = {};
        for (int k = 0; k < count; ++k)
            weights[k] = a.weights[first + k];
        Exact residuals[kVectors];
        for (int v = 0; v < kVectors; ++v)
            residuals[v] = {load(transposed + n * kRows + v * kLanes), Lanes{}};
        for (int i = 0; i < n; ++i)
            for (int v = 0; v < kVectors; ++v)
                residuals[v] = residuals[v] + Exact{broadcast(high[i]), broadcast(low[i])} *
                                                  -load(transposed + i * kRows + v * kLanes);
        for (int v = 0; v < kVectors; ++v) {
            const Lanes weight = load(weights + v * kLanes);
            double* const sum = squares + v % kSums * kLanes;
            store(sum, load(sum) + residuals[v].hi * residuals[v].hi * weight);
            residuals[v] = residuals[v] * weight;
        }
        for (int i = 0; i < n; ++i)
            for (int s = 0; s < kSums; ++s) {
                double* const hi = partial + 2 * kPartialSums * i + s * kLanes;
                Exact sum{load(hi), load(hi + kPartialSums)};
                for (int v = s; v < kVectors; v += kSums)
                    sum = sum + residuals[v] * load(transposed + i * kRows + v * kLanes);
                store(hi, sum.hi);
                store(hi + kPartialSums, sum.lo);
            }
    }
    for (int s = 0; s < kPartialSums; ++s)
        sumOfSquares += squares[s];
    for (int i = 0; i < n; ++i) {
        const double* const hi = partial + 2 * kPartialSums * i;
        Exact sum{};
        for (int s = 0; s < kPartialSums; ++s)
            sum = sum + Exact{broadcast(hi[s]), broadcast(hi[kPartialSums + s])};
        sums[i] = sum.hi[0];
    }
    return sumOfSquares;
}

}  // namespace FIELDSCAN_KERNELS
}  // namespace fieldscan
