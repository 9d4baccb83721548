// Double-double arithmetic: a number is the unevaluated sum hi + lo of two doubles, hi the double nearest to
// it; about 32 digits. T is double, or Lanes in a kernel.
//
//   TwoSum       a + b = s + e, 6 operations       Knuth, The Art of Computer Programming 2, 4.2.2
//   FastTwoSum   the same where |a| >= |b|, 3      Dekker, Numer. Math. 18 (1971)
//   TwoProduct   a b = p + e                       Dekker 1971 with Veltkamp's splitting
//
// Where the processor has it, a fused multiply-subtract computes e = a b - p: e is a double, so the bits are
// the same. Without it factors from 2^996 on overflow in the splitting and give NaN.
//
// + and * of pairs err by a few units of 2^-104 of |a| + |b| or of the product. + is the "sloppy" addition of
// Hida, Li and Bailey (2001), which is enough for sums of many terms.
#ifndef FIELDSCAN_NUMERICS_DOUBLE_DOUBLE_H
#define FIELDSCAN_NUMERICS_DOUBLE_DOUBLE_H

#if defined(__FMA__)
#include <immintrin.h>
#elif defined(__aarch64__) && !defined(FIELDSCAN_PORTABLE)
#include <arm_neon.h>
#endif

namespace fieldscan {

template <class T>
struct DoubleDouble {
    T hi;
    T lo;
};

template <class T>
static inline DoubleDouble<T> twoSum(T a, T b) {
    const T sum = a + b, part = sum - a;
    return {sum, (a - (sum - part)) + (b - part)};
}

// |a| >= |b|, or a = 0.
template <class T>
static inline DoubleDouble<T> fastTwoSum(T a, T b) {
    const T sum = a + b;
    return {sum, b - (sum - a)};
}

// a b - product, exactly; `product` is a b rounded.
template <class T>
static inline T productError(T a, T b, T product) {
#if defined(__AVX512F__)
    if constexpr (sizeof(T) == 64)
        return _mm512_fmsub_pd(a, b, product);
#endif
#if defined(__FMA__)
    if constexpr (sizeof(T) == 32)
        return _mm256_fmsub_pd(a, b, product);
#elif defined(__aarch64__) && !defined(FIELDSCAN_PORTABLE)
    if constexpr (sizeof(T) == 16)
        return vfmaq_f64(-product, a, b);
#endif
    constexpr double kSplitter = 0x1p27 + 1.0;
    const T a1 = a * kSplitter - (a * kSplitter - a), a2 = a - a1;
    const T b1 = b * kSplitter - (b * kSplitter - b), b2 = b - b1;
    return ((a1 * b1 - product) + a1 * b2 + a2 * b1) + a2 * b2;
}

template <class T>
static inline DoubleDouble<T> twoProduct(T a, T b) {
    const T product = a * b;
    return {product, productError(a, b, product)};
}

template <class T>
static inline DoubleDouble<T> operator+(DoubleDouble<T> a, DoubleDouble<T> b) {
    const DoubleDouble<T> sum = twoSum(a.hi, b.hi);
    return fastTwoSum(sum.hi, sum.lo + (a.lo + b.lo));
}

template <class T>
static inline DoubleDouble<T> operator*(DoubleDouble<T> a, T b) {
    const DoubleDouble<T> product = twoProduct(a.hi, b);
    return fastTwoSum(product.hi, product.lo + a.lo * b);
}

}  // namespace fieldscan

#endif
