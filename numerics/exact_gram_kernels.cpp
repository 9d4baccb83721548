// Kernels of exact_gram.h. Forming: lanes hold rows k of A, a block of them turned into columns, and row k
// goes to partial sum k % 8. Products with N: lanes hold its columns.
#include "numerics/double_double.h"
#include "numerics/exact_gram.h"
#include "numerics/transpose.h"

namespace fieldscan {
namespace FIELDSCAN_KERNELS {

namespace {

using Index = long long;

constexpr int kSums = 8;    // partial sums
constexpr int kBlock = 64;  // rows

// a b - c, rounded once, c being a b rounded to fewer digits. (Fused, 0.8 of the time of refining 5000 x 30.)
Lanes multiplySubtract(Lanes a, Lanes b, Lanes c) {
#if defined(__FMA__)
    return productError(a, b, c);
#else
    const DoubleDouble<Lanes> product = twoProduct(a, b);
    return (product.hi - c) + product.lo;  // of which the difference is exact
#endif
}

// Columns left and `count` right ones; of each pair 8 high and 8 low partial sums, one pair behind the other.
template <bool weighted, int count>
void addProducts(const double* left, const double* leftRest, const double* right, int rows, double* sums) {
    for (int s = 0; s < kSums; s += kLanes) {
        Lanes high[count], low[count];
        for (int c = 0; c < count; ++c) {
            high[c] = load(sums + 2 * kSums * c + s);
            low[c] = load(sums + 2 * kSums * c + kSums + s);
        }
        for (int k = s; k < rows; k += kSums) {
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
            store(sums + 2 * kSums * c + s, high[c]);
            store(sums + 2 * kSums * c + kSums + s, low[c]);
        }
    }
}

template <bool weighted>
void addBlock(const double* columns, const double* left, const double* leftRest, int n, int rows,
              double* sums) {
    for (int i = 0; i < n; ++i, left += kBlock, leftRest += kBlock) {
        int j = i;
        const auto add = [&](auto products, int count) {
            for (; j + count <= n + 1; j += count, sums += 2 * kSums * count)
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

constexpr int padded(int pairs) { return (pairs + 7) / 8 * 8; }

// Rows j to j + count of I - V N.
template <int count>
void inverseResidualsOf(const double* gram, const double* v, int n, int j, double* residuals) {
    const int stride = exactRowLength(n), low = (n + 1) * stride;
    for (int i = 0; i < stride; i += kLanes) {
        DoubleDouble<Lanes> sums[count] = {};
        for (int c = 0; c < count; ++c)
            if (j + c >= i && j + c < i + kLanes)
                sums[c].hi[j + c - i] = 1.0;
        for (int k = 0; k < n; ++k) {
            const DoubleDouble<Lanes> row = {load(gram + k * stride + i), load(gram + low + k * stride + i)};
            for (int c = 0; c < count; ++c)
                sums[c] = sums[c] + row * broadcast(-v[(j + c) * (n + 1) + k]);
        }
        for (int c = 0; c < count; ++c)
            store(residuals + (j + c) * stride + i, sums[c].hi);
    }
}

}  // namespace

long long exactGramRoom(int n) {
    return exactRowLength(n + 1) + 3LL * (n + 8) * kBlock + 17LL * padded(n * (n + 3) / 2);
}

void formExactGram(const WeightedRows& a, double* room, double* gram) {
    const int n = a.n, length = n + 1, pairs = n * (n + 3) / 2;
    const bool unit = weightsAreOne(a);
    const double* const scales = room;
    double* const columns = room + exactRowLength(length);
    double* const left = columns + (n + 8) * kBlock;
    double* const leftRest = left + (n + 8) * kBlock;
    double* const starts = leftRest + (n + 8) * kBlock;
    double* const sums = starts + padded(pairs);  // of each pair kSums high ones, then kSums low ones
    int pair = 0;
    for (int i = 0; i < n; ++i)
        for (int j = i; j < length; ++j)
            starts[pair++] = 4.0 * scales[i] * scales[j];
    for (; pair < padded(pairs); ++pair)
        starts[pair] = 0.0;
    for (int p = 0; p < padded(pairs); ++p)
        for (int s = 0; s < kSums; ++s) {
            sums[2 * kSums * p + s] = starts[p];
            sums[2 * kSums * p + kSums + s] = 0.0;
        }
    for (int first = 0; first < a.m; first += kBlock) {
        const int rest = a.m - first, count = rest < kBlock ? rest : kBlock;
        const int filled = (count + kSums - 1) / kSums * kSums;
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

    const int stride = exactRowLength(n), low = length * stride;
    for (int k = 0; k < 2 * low; ++k)
        gram[k] = 0.0;
    int i = 0, j = 0;
    for (int p = 0; p < pairs; p += kLanes) {  // kLanes pairs at a time: their partial sums are added up
        double turned[2 * kSums * kLanes], high[kLanes], rests[kLanes];
        transpose(sums + 2 * kSums * p, kLanes, 2 * kSums, 2 * kSums, 2 * kSums * kLanes, kLanes, kLanes,
                  turned);
        DoubleDouble<Lanes> sum = {};
        for (int s = 0; s < kSums; ++s)
            sum = sum +
                  twoSum(load(turned + s * kLanes) - load(starts + p), load(turned + (kSums + s) * kLanes));
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
    const int stride = exactRowLength(n), rests = (n + 1) * stride;
    for (int i = 0; i < stride; i += kLanes) {
        const auto element = [=](int k) {
            return DoubleDouble<Lanes>{load(gram + k * stride + i), load(gram + rests + k * stride + i)};
        };
        DoubleDouble<Lanes> sum = element(n);
        for (int k = 0; k < n; ++k)
            sum = sum + element(k) * DoubleDouble<Lanes>{broadcast(-high[k]), broadcast(-low[k])};
        store(sums + i, sum.hi);
    }
}

}  // namespace FIELDSCAN_KERNELS
}  // namespace fieldscan
