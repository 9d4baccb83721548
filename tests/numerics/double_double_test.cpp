// Error-free transformations.
#include "numerics/double_double.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

using namespace fieldscan;

namespace {

double anyDouble(std::mt19937_64& random) {
    return std::ldexp(static_cast<double>(random()) - 0x1p63, static_cast<int>(random() % 200) - 100);
}

TEST(DoubleDouble, SumsLoseNothing) {
    std::mt19937_64 random(1);
    for (int i = 0; i < 100000; ++i) {
        const double a = anyDouble(random), b = anyDouble(random);
        const double larger = std::fabs(a) > std::fabs(b) ? a : b, smaller = larger == a ? b : a;
        const auto sum = twoSum(a, b), ordered = fastTwoSum(larger, smaller);
        ASSERT_EQ(sum.hi, a + b);
        ASSERT_EQ(sum.lo, (larger - sum.hi) + smaller) << "of which both differences are exact";
        ASSERT_EQ(ordered.lo, sum.lo);
    }
}

TEST(DoubleDouble, ProductsLoseNothing) {
    std::mt19937_64 random(1);
    for (int i = 0; i < 100000; ++i) {
        const long long a = static_cast<int>(random()), b = static_cast<int>(random());
        const auto product =
            twoProduct(std::ldexp(static_cast<double>(a), 300), std::ldexp(static_cast<double>(b), -500));
        const double hi = static_cast<double>(a * b),
                     lo = static_cast<double>(a * b - static_cast<long long>(hi));
        ASSERT_EQ(product.hi, std::ldexp(hi, -200));
        ASSERT_EQ(product.lo, std::ldexp(lo, -200));
    }
}

}  // namespace
