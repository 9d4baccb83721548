// Sums of products in double-double, for few unknowns: lanes hold equations, a block of them turned into
// columns.
//
// A partial sum begins at a power of two that no sum reaches a quarter of. So its products lose to it what
// lies below a fixed place, which two subtractions give exactly; with the rests of the products it goes to a
// low sum.
#include "adjustment/exact_normal_kernels.h"

#include "adjustment/exact_lanes.h"

namespace fieldscan {
namespace FIELDSCAN_KERNELS {

namespace {

using Index = long long;

constexpr int kSums = 8;    // partial sums
constexpr int kBlock = 64;  // equations

// Columns left and `count` right ones; of each pair 8 high and 8 low partial sums, one pair behind the other.
template <bool weighted, int count>
void addProducts(const double* left, const double* leftRest, const double* right, int equations,
                 double* sums) {
    for (int s = 0; s < kSums; s += kLanes) {
        Lanes high[count], low[count];
        for (int c = 0; c < count; ++c) {
            high[c] = load(sums + 2 * kSums * c + s);
            low[c] = load(sums + 2 * kSums * c + kSums + s);
        }
        for (int k = s; k < equations; k += kSums) {
            const Lanes a = load(left + k);
            for (int c = 0; c < count; ++c) {
                const Lanes b = load(right + c * kBlock + k);
                const Lanes sum = high[c] + a * b;
                Lanes rest = productMinus(a, b, sum - high[c]);
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
void addBlock(const double* columns, const double* left, const double* leftRest, int n, int equations,
              double* sums) {
    for (int i = 0; i < n; ++i, left += kBlock, leftRest += kBlock) {
        int j = i;
        const auto add = [&](auto products, int count) {
            for (; j + count <= n + 1; j += count, sums += 2 * kSums * count)
                products(left, leftRest, columns + j * kBlock, equations, sums);
        };
        add(addProducts<weighted, 4>, 4);
        add(addProducts<weighted, 2>, 2);
        add(addProducts<weighted, 1>, 1);
    }
}

// left + leftRest = weight column, exactly.
void weigh(const double* columns, const double* weights, int n, int equations, double* left,
           double* leftRest) {
    for (int i = 0; i < n; ++i)
        for (int k = 0; k < equations; k += kLanes) {
            const Exact product = exactProduct(load(columns + i * kBlock + k), load(weights + k));
            store(left + i * kBlock + k, product.hi);
            store(leftRest + i * kBlock + k, product.lo);
        }
}

void form(const Equations& equations, bool unitWeights, const double* scales, double* buffer,
          double* normal) {
    const int n = equations.n, length = n + 1, pairs = n * (n + 3) / 2, padded = (pairs + 7) / 8 * 8;
    double* const columns = buffer;
    double* const left = columns + (n + 8) * kBlock;
    double* const leftRest = left + n * kBlock;
    double* const sums = leftRest + n * kBlock;
    double* const starts = sums + 2 * kSums * pairs;
    double* const turned = starts + padded;
    int pair = 0;
    for (int i = 0; i < n; ++i)
        for (int j = i; j < length; ++j, ++pair) {
            starts[pair] = 4.0 * scales[i] * scales[j];
            for (int s = 0; s < kSums; ++s) {
                sums[2 * kSums * pair + s] = starts[pair];
                sums[2 * kSums * pair + kSums + s] = 0.0;
            }
        }
    for (; pair < padded; ++pair)
        starts[pair] = 0.0;
    for (int first = 0; first < equations.m; first += kBlock) {
        const int rest = equations.m - first, count = rest < kBlock ? rest : kBlock;
        const int filled = (count + kSums - 1) / kSums * kSums;
        transpose(equations.rows + static_cast<Index>(first) * length, count, length, length,
                  static_cast<Index>(rest) * length, filled, kBlock, columns);
        if (unitWeights) {
            addBlock<false>(columns, columns, columns, n, filled, sums);
        } else {
            double weights[kBlock] = {};
            for (int k = 0; k < count; ++k)
                weights[k] = equations.weights[first + k];
            weigh(columns, weights, n, filled, left, leftRest);
            addBlock<true>(columns, left, leftRest, n, filled, sums);
        }
    }

    // Pairs in lanes, to add up the partial sums.
    transpose(sums, pairs, 2 * kSums, 2 * kSums, 2 * kSums * pairs, padded, padded, turned);
    for (int p = 0; p < padded; p += kLanes) {
        Exact sum = {};
        for (int s = 0; s < kSums; ++s)
            sum = sum + exactSum(load(turned + s * padded + p) - load(starts + p),
                                 load(turned + (kSums + s) * padded + p));
        store(turned + p, sum.hi);
        store(turned + padded + p, sum.lo);
    }
    const int rowLength = exactRowLength(n), low = length * rowLength;
    for (int k = 0; k < 2 * low; ++k)
        normal[k] = 0.0;
    pair = 0;
    for (int i = 0; i < n; ++i)
        for (int j = i; j < length; ++j, ++pair) {
            normal[j * rowLength + i] = turned[pair];
            normal[low + j * rowLength + i] = turned[padded + pair];
            if (j < n) {
                normal[i * rowLength + j] = turned[pair];
                normal[low + i * rowLength + j] = turned[padded + pair];
            }
        }
}

// Rows j to j + count of I - V N.
template <int count>
void inverseResidualsOf(const double* normal, const double* v, int n, int j, double* residuals) {
    const int rowLength = exactRowLength(n), low = (n + 1) * rowLength;
    for (int i = 0; i < rowLength; i += kLanes) {
        Exact sums[count] = {};
        for (int c = 0; c < count; ++c)
            if (j + c >= i && j + c < i + kLanes)
                sums[c].hi[j + c - i] = 1.0;
        for (int k = 0; k < n; ++k) {
            const Exact row = {load(normal + k * rowLength + i), load(normal + low + k * rowLength + i)};
            for (int c = 0; c < count; ++c)
                sums[c] = sums[c] + row * all(-v[(j + c) * (n + 1) + k]);
        }
        for (int c = 0; c < count; ++c)
            store(residuals + (j + c) * rowLength + i, sums[c].hi);
    }
}

void inverseResiduals(const double* normal, const double* v, int n, double* residuals) {
    int j = 0;
    for (; j + 4 <= n; j += 4)
        inverseResidualsOf<4>(normal, v, n, j, residuals);
    for (; j < n; ++j)
        inverseResidualsOf<1>(normal, v, n, j, residuals);
}

void misclosure(const double* normal, const double* high, const double* low, int n, double* sums) {
    const int rowLength = exactRowLength(n), rests = (n + 1) * rowLength;
    for (int i = 0; i < rowLength; i += kLanes) {
        const auto element = [=](int k) {
            return Exact{load(normal + k * rowLength + i), load(normal + rests + k * rowLength + i)};
        };
        Exact sum = element(n);
        for (int k = 0; k < n; ++k)
            sum = sum + element(k) * Exact{all(-high[k]), all(-low[k])};
        store(sums + i, sum.hi);
    }
}

}  // namespace

const ExactNormalKernels exactNormalKernels = {form, inverseResiduals, misclosure};

}  // namespace FIELDSCAN_KERNELS
}  // namespace fieldscan
