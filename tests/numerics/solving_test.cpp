// When refining ends, and how much correlations enlarge cofactors.
#include <gtest/gtest.h>

#include <cmath>

#include "numerics/iterative_refinement.h"

using namespace fieldscan;

namespace {

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
