// Inverses and solutions of matrices whose exact ones are known.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "numerics/exact_sums.h"
#include "numerics/iterative_refinement.h"
#include "numerics/orthonormal.h"
#include "numerics/sweep.h"
#include "numerics/triangle.h"

using namespace fieldscan;

namespace {

using Vector = std::vector<double>;

TEST(ExactGram, InvertsToTheLastDigitAndRefusesASingularMatrix) {
    for (const double last : {50.0, 50.0 + 0x1p-20}) {
        const Vector n = {41, 73, -31, 0, 0, 130, -56, 0, 0, 0, last, 0};
        Vector work(12), x(3), v(12);
        ASSERT_TRUE(sweep(n.data(), 3, 0.0, work.data(), x.data(), v.data())) << "by its rounding";
        ExactGram exact(3);
        exact.set(n.data());
        ASSERT_EQ(exact.improveInverse(v.data()), last > 50.0);
        if (last > 50.0) {
            EXPECT_EQ(v[10], 0x1p20) << "the cofactor of 50 is 1";
            EXPECT_EQ(v[5], 0x1p20 * 1089.0 + 41.0) << "41 (50 + 2^-20) - 31^2";
        }
    }
}

// Columns 1 and 1 + e k: their distance is below what sums of squares of doubles show.
TEST(Orthonormalize, FindsTheRootOfTheCofactors) {
    for (const double e : {0x1p-10, 0x1p-30, 0x1p-42}) {
        Vector rows, root(6), product(6);
        for (int k = -2; k <= 2; ++k)
            rows.insert(rows.end(), {1.0, 1.0 + e * k, 3.0 + 2.0 * e * k});
        Vector weights(5, 1.0);
        ASSERT_TRUE(orthonormalize({rows.data(), weights.data(), 5, 2}, root.data())) << e;
        multiplyByTranspose(root.data(), 2, product.data());
        EXPECT_NEAR(product[4] * e * e, 0.1, 1e-15) << e;
        EXPECT_NEAR(product[0] * e * e, 0.1 + e * e / 5.0, 1e-15) << e;
        EXPECT_EQ(root[3], 0.0);
    }
}

TEST(Orthonormalize, RefusesDependentColumns) {
    const Vector rows = {1, 2, 1, 0.1, 0.2, 1, 3, 6, 1, 7, 14, 1}, weights(4, 1.0), negative = {1, 1, 1, -9};
    Vector root(6);
    for (const Vector& w : {weights, negative})
        EXPECT_FALSE(orthonormalize({rows.data(), w.data(), 4, 2}, root.data()));
    EXPECT_FALSE(orthonormalize({rows.data(), weights.data(), 1, 2}, root.data())) << "one row";
}

TEST(Orthonormalize, TakesOutARowFarFromTheOthers) {
    const Vector rows = {1, 0, 1, 0, 1, 2, 1, 1, 3, 1e7, 3e7, 5e9, 1e7, 3e7, 5e9}, weights = {1, 1, 1, 1, -1};
    Vector root(6), product(6);
    ASSERT_TRUE(orthonormalize({rows.data(), weights.data(), 5, 2}, root.data()));
    multiplyByTranspose(root.data(), 2, product.data());
    EXPECT_NEAR(product[0], 2.0 / 3.0, 1e-15);
    EXPECT_NEAR(product[1], -1.0 / 3.0, 1e-15);
}

// N = 1: the solution of x = b by corrections that are 0.9 of what they should be.
Refinement slowRefinement(double b, double noise) {
    static const double one[] = {1.0, 0.0};
    const auto residual = [b, noise](const double* high, const double* low, double* sums) {
        sums[0] = ((b - high[0]) - low[0]) * (1.0 + noise);
        return 0.0;
    };
    const auto solve = [](const double* sums, double* correction) { correction[0] = 0.9 * sums[0]; };
    return {one, one, 1, residual, solve, b, 0.1, 0x1p-104, true};
}

TEST(RefineIteratively, EndsWhenNoDigitCanChange) {
    double x = 0.0;
    EXPECT_TRUE(refineIteratively(slowRefinement(1.0 / 3.0, 0.0), &x));
    EXPECT_EQ(x, 1.0 / 3.0);
    x = 0.0;
    EXPECT_FALSE(refineIteratively(slowRefinement(1.0 / 3.0, -2.2), &x)) << "corrections that grow";
    EXPECT_FALSE(refineIteratively(slowRefinement(std::nan(""), 0.0), &x));
}

TEST(VarianceInflation, OfCorrelatedUnknownsAndOfWhatIsNoNumber) {
    const double normal[] = {4, 2, 0, 2, 4, 0}, inverse[] = {1.0 / 3, -1.0 / 6, 0, -1.0 / 6, 1.0 / 3, 0};
    EXPECT_DOUBLE_EQ(varianceInflation(normal, inverse, 2), 4.0 / 3.0);
    const double none[] = {std::nan(""), 0, 0, 0, 1, 0};
    EXPECT_EQ(varianceInflation(normal, none, 2), INFINITY);
}

}  // namespace
