// For kernels, as lanes.h: double-double arithmetic in lanes, with the bits of double_double.h, and rows
// turned into columns.
#ifndef FIELDSCAN_ADJUSTMENT_EXACT_LANES_H
#define FIELDSCAN_ADJUSTMENT_EXACT_LANES_H

#include "platform/framework/lanes.h"

namespace fieldscan {
namespace FIELDSCAN_KERNELS {

struct Exact {
    Lanes hi;
    Lanes lo;
};

static inline Exact exactSum(Lanes a, Lanes b) {
    const Lanes sum = a + b;
    const Lanes part = sum - a;
    return {sum, (a - (sum - part)) + (b - part)};
}

static inline Exact orderedSum(Lanes a, Lanes b) {
    const Lanes sum = a + b;
    return {sum, b - (sum - a)};
}

// The rest of a product is a double: fused or split, its bits are the same.
static inline Exact exactProduct(Lanes a, Lanes b) {
    const Lanes product = a * b;
#if defined(__AVX512F__)
    return {product, _mm512_fmsub_pd(a, b, product)};
#elif defined(__FMA__)
    return {product, _mm256_fmsub_pd(a, b, product)};
#else
    constexpr double kSplitter = 134217729.0;
    const Lanes a1 = a * kSplitter - (a * kSplitter - a), a2 = a - a1;
    const Lanes b1 = b * kSplitter - (b * kSplitter - b), b2 = b - b1;
    return {product, ((a1 * b1 - product) + a1 * b2 + a2 * b1) + a2 * b2};
#endif
}

// a b - c, rounded once, where c is a b rounded to fewer digits. (Fused, refining 5000 x 30 takes 0.8 of the
// time.)
static inline Lanes productMinus(Lanes a, Lanes b, Lanes c) {
#if defined(__AVX512F__)
    return _mm512_fmsub_pd(a, b, c);
#elif defined(__FMA__)
    return _mm256_fmsub_pd(a, b, c);
#else
    const Exact product = exactProduct(a, b);
    return (product.hi - c) + product.lo;  // of which the difference is exact
#endif
}

static inline Exact operator+(Exact a, Exact b) {
    const Exact sum = exactSum(a.hi, b.hi);
    return orderedSum(sum.hi, sum.lo + (a.lo + b.lo));
}

static inline Exact operator*(Exact a, Lanes b) {
    const Exact product = exactProduct(a.hi, b);
    return orderedSum(product.hi, product.lo + a.lo * b);
}

static inline Exact operator*(Exact a, Exact b) {
    const Exact product = exactProduct(a.hi, b.hi);
    return orderedSum(product.hi, product.lo + (a.hi * b.lo + a.lo * b.hi));
}

static inline Exact operator/(Exact a, Lanes b) {
    const Lanes quotient = a.hi / b;
    const Exact rest = a + exactProduct(-quotient, b);
    return orderedSum(quotient, rest.hi / b);
}

template <int... lanes>
struct Lane {};
#if defined(__AVX512F__)
using EachLane = Lane<0, 1, 2, 3, 4, 5, 6, 7>;
#elif defined(__AVX2__)
using EachLane = Lane<0, 1, 2, 3>;
#else
using EachLane = Lane<0, 1>;
#endif

template <int step, int... lanes>
static inline void exchange(Lanes& a, Lanes& b, Lane<lanes...>) {
    const Lanes first = a;
    a = __builtin_shufflevector(first, b, ((lanes & step) ? kLanes + lanes - step : lanes)...);
    b = __builtin_shufflevector(first, b, ((lanes & step) ? kLanes + lanes : lanes + step)...);
}

template <int step>
static inline void exchangeAll(Lanes* tile) {
#pragma GCC unroll 8
    for (int k = 0; k < kLanes; ++k)
        if (!(k & step))
            exchange<step>(tile[k], tile[k + step], EachLane{});
    if constexpr (2 * step < kLanes)
        exchangeAll<2 * step>(tile);
}

static inline void transposeSquare(const double* from, long long length, double* to, long long stride) {
    Lanes tile[kLanes];
#pragma GCC unroll 8
    for (int k = 0; k < kLanes; ++k)
        tile[k] = load(from + k * length);
    exchangeAll<1>(tile);
#pragma GCC unroll 8
    for (int c = 0; c < kLanes; ++c)
        store(to + c * stride, tile[c]);
}

// transposed[i * stride + k] = row k, column i for k < count; 0 up to width, whole registers. Squares of
// registers, the last of which fills up to kLanes - 1 columns behind; `readable` elements of the rows can be
// read.
static inline void transpose(const double* rows, int count, int columns, long long length, long long readable,
                             int width, int stride, double* transposed) {
    for (int first = 0; first < width; first += kLanes, rows += kLanes * length)
        for (long long i = 0; i < columns; i += kLanes) {
            double* const to = transposed + i * stride + first;
            if ((first + kLanes - 1) * length + i + kLanes <= readable) {
                transposeSquare(rows + i, length, to, stride);
            } else {
                double square[kLanes * kLanes] = {};
                for (int k = 0; first + k < count && k < kLanes; ++k)
                    for (int c = 0; c < kLanes && i + c < columns; ++c)
                        square[k * kLanes + c] = rows[k * length + i + c];
                transposeSquare(square, kLanes, to, stride);
            }
        }
}

}  // namespace FIELDSCAN_KERNELS
}  // namespace fieldscan

#endif
