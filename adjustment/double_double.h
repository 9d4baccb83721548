// Double-double arithmetic: a number as the sum of two doubles, hi the nearest double to it; about 32 digits.
// Products by splitting (Dekker 1971), sums after Knuth: no fused multiply-add, so the bits are the same on
// every target. Numbers beyond 2^995 overflow to NaN.
#ifndef FIELDSCAN_ADJUSTMENT_DOUBLE_DOUBLE_H
#define FIELDSCAN_ADJUSTMENT_DOUBLE_DOUBLE_H

namespace fieldscan {

struct DoubleDouble {
    double hi;
    double lo;
};

inline DoubleDouble exactSum(double a, double b) {
    const double sum = a + b;
    const double part = sum - a;
    return {sum, (a - (sum - part)) + (b - part)};
}

// |a| >= |b|, or a = 0.
inline DoubleDouble orderedSum(double a, double b) {
    const double sum = a + b;
    return {sum, b - (sum - a)};
}

inline DoubleDouble exactProduct(double a, double b) {
    constexpr double kSplitter = 134217729.0;  // 2^27 + 1: halves of 26 bits
    const double a1 = kSplitter * a - (kSplitter * a - a), a2 = a - a1;
    const double b1 = kSplitter * b - (kSplitter * b - b), b2 = b - b1;
    const double product = a * b;
    return {product, ((a1 * b1 - product) + a1 * b2 + a2 * b1) + a2 * b2};
}

// The error is at most a few units of 2^-104 of |a| + |b|, which is what sums of many terms need.
inline DoubleDouble operator+(DoubleDouble a, DoubleDouble b) {
    const DoubleDouble sum = exactSum(a.hi, b.hi);
    return orderedSum(sum.hi, sum.lo + (a.lo + b.lo));
}

inline DoubleDouble operator*(DoubleDouble a, double b) {
    const DoubleDouble product = exactProduct(a.hi, b);
    return orderedSum(product.hi, product.lo + a.lo * b);
}

inline DoubleDouble operator/(DoubleDouble a, double b) {
    const double quotient = a.hi / b;
    const DoubleDouble rest = a + exactProduct(-quotient, b);
    return orderedSum(quotient, rest.hi / b);
}

}  // namespace fieldscan

#endif
