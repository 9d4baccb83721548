// What CLeastSq solves, to how many digits, and what it refuses.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <utility>
#include <vector>

#include "tests/adjustment/solvers.h"

namespace {

int solved(const Rows& rows, int n) {
    CLeastSq adjustment(static_cast<int>(rows.size()), n);
    enter(adjustment, rows);
    return adjustment.Solve();
}

// Laeuchli's equations: N is singular in double, the equations are not.
TEST(Solutions, SolversAgreeWhereNormalEquationsFail) {
    const double e = std::ldexp(1.0, -30);
    for (const auto& solver : kSolvers) {
        CLeastSq adjustment(4, 3);
        enter(adjustment, {{1, 1, 1, 6}, {e, 0, 0, e}, {0, e, 0, 2 * e}});
        enter(adjustment, {{0, 0, e / 256, 3 * e / 256}}, 65536.0);
        ASSERT_EQ((adjustment.*solver.solve)(), 1) << solver.name;
        for (int i = 0; i < 3; ++i) {
            EXPECT_EQ(adjustment.GetBcor(i), i + 1.0) << solver.name;
            for (int j = 0; j < 3; ++j)  // (I - 1 1^T / (3 + e^2)) / e^2
                EXPECT_NEAR(adjustment.GetCovar(i, j) * e * e, (i == j) - 1.0 / (3.0 + e * e), 1e-14);
        }
    }
}

// The equations have a solution, N in double has none.
TEST(Solutions, WhatChangesAfterFormingLeavesOnlyN) {
    const double e = std::ldexp(1.0, -30);
    using Change = void (*)(CLeastSq&);
    const Change changes[] = {
        [](CLeastSq& a) { a.SetObeq(2, 2.0); },    [](CLeastSq& a) { a.SetWeight(0, 2.0); },
        [](CLeastSq& a) { a.SetNoeq(0, 2, 7.0); }, [](CLeastSq& a) { a.InitParameter(a.Obeq, 1.0); },
        [](CLeastSq& a) { a.Obeq[1] = 3.0; },      [](CLeastSq& a) { a.Weight[1] = -2.0; },
        [](CLeastSq& a) { a.Noeq[1] -= 1e-15; },   [](CLeastSq& a) { a.Obeq.SetSize(5); }};
    for (const Change change : changes) {
        CLeastSq adjustment(2, 2);
        enter(adjustment, {{1, 1, 3}, {1, 1 + e, 3 + 2 * e}});
        ASSERT_EQ(adjustment.Lessqu(2, 2), 1);
        ASSERT_EQ(adjustment.NewChores(), 1);
        EXPECT_EQ(adjustment.GetBcor(1), 2.0);
        change(adjustment);
        EXPECT_EQ(adjustment.SolveWithReduc(), 0) << &change - changes;
        EXPECT_EQ(adjustment.NewChores(), 0) << &change - changes;
        EXPECT_TRUE(std::isnan(adjustment.GetBcor(0))) << "nothing looks right";
        EXPECT_TRUE(std::isnan(adjustment.GetCovar(1, 0)));
    }
}

TEST(Solutions, ARightHandSideWrittenIntoItsArrayCountsAsEntered) {
    const double e = std::ldexp(1.0, -40);
    CLeastSq adjustment(6, 2);  // N = 5 4 / 4 5
    enter(adjustment, {{1, 1, 0}, {1, 1, 0}, {1, 1, 0}, {1, 1, 0}, {1, 0, 0}, {0, 1, 0}});
    ASSERT_EQ(adjustment.Lessqu(6, 2), 1);
    adjustment.Noeq[2] = 5.0 * e + 4.0;
    adjustment.Noeq[5] = 4.0 * e + 5.0;
    ASSERT_EQ(adjustment.NewChores(), 1);
    EXPECT_EQ(adjustment.GetBcor(0), e);
    EXPECT_EQ(adjustment.GetBcor(1), 1.0);
}

const struct {
    const char* name;
    int (CLeastSq::*solve)();
} kSolversOfEntered[] = {{"SolveWithReduc", &CLeastSq::SolveWithReduc},
                         {"NewChores", &CLeastSq::NewChores},
                         {"PIChores", &CLeastSq::PIChores},
                         {"SwpMat", &CLeastSq::SwpMat}};

// Fibonacci numbers: the determinant is 1, so that the inverse is whole; correlations enlarge cofactors by
// 1e11.
TEST(EnteredNormalEquations, GiveAllTheirDigits) {
    for (const auto& solver : kSolversOfEntered) {
        CLeastSq exact(0, 2);
        enterNormal(exact, {196418, 317811, 196418 - 317811 * 3.0, 0, 514229, 317811 - 514229 * 3.0});
        ASSERT_EQ((exact.*solver.solve)(), 1) << solver.name;
        EXPECT_EQ(exact.GetBcor(0), 1.0) << solver.name;
        EXPECT_EQ(exact.GetBcor(1), -3.0) << solver.name;
        EXPECT_EQ(exact.GetCovar(0, 0), 514229.0) << solver.name;
        EXPECT_EQ(exact.GetCovar(1, 0), -317811.0) << solver.name;
    }
}

// Squares of such elements overflow or underflow; the correlation calls for refining.
TEST(EnteredNormalEquations, AreSolvedAtTheEndsOfTheRange) {
    for (const auto& solver : kSolversOfEntered) {
        for (const double unit : {0x1p-560, 0x1p560}) {
            CLeastSq correlated(0, 2);
            const double s = 0.998046875 * unit;
            enterNormal(correlated, {unit, s, unit - 3.0 * s, 0.0, unit, s - 3.0 * unit});
            ASSERT_EQ((correlated.*solver.solve)(), 1) << solver.name;
            EXPECT_NEAR(correlated.GetBcor(0), 1.0, 1e-12) << solver.name;
            EXPECT_NEAR(correlated.GetBcor(1), -3.0, 1e-12) << solver.name;
            EXPECT_NEAR(correlated.GetCovar(0, 0) * unit, 256.2502444, 1e-7) << solver.name;
        }
    }
}

// The products of three columns e1, e1 + d e2, e2 + d e3: no pivot is below d^2, but of the first column d^2
// is left beside the others.
TEST(EnteredNormalEquations, AreRefusedWhereRoundingThemDecides) {
    for (const auto& solver : kSolversOfEntered) {
        for (const double d : {0x1p-10, 0x1p-12}) {
            const double dd = d * d;
            CLeastSq chain(0, 3);
            enterNormal(chain, {1, 1, 0, 0, 0, 1 + dd, d, 0, 0, 0, 1 + dd, 0});
            EXPECT_EQ((chain.*solver.solve)(), d > 0x1p-12) << solver.name;
            if (d > 0x1p-12) {
                EXPECT_EQ(chain.GetCovar(0, 0) * dd * dd, 1 + dd + dd * dd) << solver.name;
            }
        }
    }
}

// The sum of n - 1 squares leaves a last pivot by its rounding.
TEST(EnteredNormalEquations, AreRefusedWhenSingular) {
    std::mt19937 random(1);
    for (const auto& solver : kSolversOfEntered) {
        for (int trial = 0; trial < 1000; ++trial) {
            const int n = 3 + trial % 12;
            CLeastSq adjustment(0, n);
            int row[14];
            for (int k = 0; k < n - 1; ++k) {
                std::generate_n(row, n, [&random] { return static_cast<int>(random() % 19) - 9; });
                for (int i = 0; i < n; ++i)
                    for (int j = 0; j < n; ++j)
                        adjustment.SetNoeq(i, j, adjustment.GetNoeq(i, j) + row[i] * row[j]);
            }
            ASSERT_EQ((adjustment.*solver.solve)(), 0) << solver.name << ", trial " << trial;
        }
    }
}

// A line over 2 cm at 5000 km, and a mean whose N has lost ten of its units in the eleventh digit.
TEST(Solutions, ManyEquationsCostNoDigits) {
    CLeastSq line(400000, 2), mean(1000000, 1);
    for (int k = 0; k < line.ObeqSize; ++k) {
        const double x = 5e6 + std::ldexp(k % 1000, -16);
        enter(line, {{1, x, 3 + 0.5 * x}});
    }
    ASSERT_EQ(line.Solve(), 1);
    EXPECT_EQ(line.GetBcor(1), 0.5);
    for (int k = 0; k < mean.ObeqSize; ++k)
        enter(mean, {{0.1, 0.3}}, 0.1);
    ASSERT_EQ(mean.Solve(), 1);
    EXPECT_EQ(mean.GetBcor(0), 0.3 / 0.1);
    EXPECT_NEAR(mean.GetCovar(0, 0), 1e-3, 1e-18);
}

// Of columns forty decades apart the first unknown is not seen in double-double: it was 4e-5 wrong.
TEST(Solutions, AnUnknownThatDoesNotSettleIsRefused) {
    EXPECT_EQ(solved({{-0.0, -1.0638713827770854e+18, -1.762627730210531e+33},
                      {865487066.5080556, -6.237715535354112e+18, -1.03346800692015e+34},
                      {5.216507553254369e+21, -1.704749633660101e+31, -2.8244382037157836e+46}},
                     2),
              0);
}

TEST(Solutions, SingularEquationsAreRefusedAtAnyScale) {
    EXPECT_EQ(solved({{1, 2, 1}}, 2), 0) << "fewer equations than unknowns";
    EXPECT_EQ(solved({{1, 0, 1}, {2, 0, 2}}, 2), 0) << "an unknown without equation";
    EXPECT_EQ(solved({{1, INFINITY}, {1, 1}}, 1), 0);
    EXPECT_EQ(solved({{std::nan(""), 1}}, 1), 0);
    EXPECT_EQ(solved({{1e-154, 0, 1}, {0, 1e-154, 1}}, 2), 0) << "below the tolerance";
    for (const double scale : {1e-140, 1.0, 1e140}) {
        for (const double third : {1.0 / 3.0, 0.7}) {
            const double b = third * scale;
            EXPECT_EQ(solved({{scale, b, 1}, {0.1 * scale, 0.1 * b, 2}, {scale, b, 3}}, 2), 0) << scale;
        }
        const double beside = scale * (1 + 1e-11);
        EXPECT_EQ(solved({{scale, scale, 1}, {scale, beside, 2}, {scale, scale, 3}}, 2), 1) << scale;
        for (const auto& solver : {&CLeastSq::NewChores, &CLeastSq::PIChores, &CLeastSq::SwpMat}) {
            for (const double more : {1e-15, 1e-10}) {
                CLeastSq normal(1, 2);
                normal.Noeq[0] = normal.Noeq[1] = normal.Noeq[3] = scale;
                normal.Noeq[4] = (1 + more) * scale;
                EXPECT_EQ((normal.*solver)(), more > 1e-12) << scale;
            }
        }
    }
}

TEST(EnteredNormalEquations, AreRefusedAtTheToleranceAndBelowZero) {
    CLeastSq small(0, 1);
    const struct {
        double diagonal;
        int checked, solved;
    } rows[] = {{small.tolerance, 0, 0}, {3e-307, 1, 1}, {1e300, 1, 1}, {-1.0, 1, 0}};
    for (const auto& row : rows) {
        small.SetNoeq(0, 0, row.diagonal);
        EXPECT_EQ(small.CheckNoeq(), row.checked) << row.diagonal;
        EXPECT_EQ(small.SolveWithReduc(), row.solved) << row.diagonal;
    }
    CLeastSq indefinite(0, 2);
    enterNormal(indefinite, {1, 2, 0, 2, 1, 0});
    EXPECT_EQ(indefinite.SolveWithReduc(), 0);
    EXPECT_EQ(indefinite.PIChores(), 0);
    EXPECT_EQ(indefinite.SwpMat(), 0);
}

TEST(Solutions, KeepSmallUnknownsBesideLargeOnes) {
    CLeastSq adjustment(2, 2);
    enter(adjustment, {{1, 0, 1e13}, {0, 1, 5e-18}});
    ASSERT_EQ(adjustment.Solve(), 1);
    EXPECT_EQ(adjustment.GetBcor(0), 1e13);
    EXPECT_EQ(adjustment.GetBcor(1), 5e-18);
    adjustment.SetNoeq(0, 0, 2.0);  // what was entered counts, not the equations
    ASSERT_EQ(adjustment.SolveWithReduc(), 1);
    EXPECT_DOUBLE_EQ(adjustment.GetBcor(0), 5e12);

    CLeastSq correlated(4, 2);  // x1 = 1, x0 = -1 / e, which hides in a column of small numbers
    const double e = std::ldexp(1.0, -20);
    for (int k = 0; k < 4; ++k)
        enter(correlated, {{e, 1 + 0.7 * k * e, (1 + 0.7 * k * e) - 1}});
    ASSERT_EQ(correlated.Solve(), 1);
    EXPECT_EQ(correlated.GetBcor(0) * e, -1.0);
    EXPECT_EQ(correlated.GetBcor(1), 1.0);
}

// Unknowns that are observed each and, with a root of s, all together: N = I + s 1 1^T. By the correlation,
// about s, each way has a row: N in double, N in double-double, orthonormal equations.
TEST(Solutions, EveryWayOfSolvingIsExact) {
    const std::pair<int, double> rows[] = {{20, 0x1p4}, {20, 0x1p20}, {40, 0x1p28}, {40, 0x1p46}};
    for (const auto& [n, s] : rows) {
        CLeastSq adjustment(n + 1, n);
        for (int k = 0; k <= n; ++k) {
            for (int j = 0; j < n; ++j)
                adjustment.SetObeq(j, k == n ? std::sqrt(s) : j == k ? 1.0 : 0.0);
            adjustment.SetObeq(n, k == n ? std::sqrt(s) * n * (n + 1) * 0.5 : k + 1.0);
        }
        ASSERT_EQ(adjustment.Solve(), 1) << s;
        for (int i = 0; i < n; ++i) {
            EXPECT_NEAR(adjustment.GetBcor(i), i + 1.0, 1.2e-16 * (i + 1)) << s;
            for (int j = 0; j < n; ++j)
                EXPECT_NEAR(adjustment.GetCovar(i, j), (i == j) - s / (1.0 + n * s), 2e-14) << s;
        }
    }
}

// At national-grid coordinates too, and whatever the blunder was.
TEST(Solutions, ANegativeWeightTakesAnEquationOut) {
    for (const double at : {0.0, 5e6}) {
        for (const double blunder : {0.0, 1e5}) {
            CLeastSq with(0, 4), without(0, 4);
            for (int k = 0; k < 6; ++k) {
                const double x = at + 10.0 * k, y = at / 2 + k * k % 7;
                const Rows pair = {{x, -y, 1, 0, 2 * x - 3 * y + k % 3}, {y, x, 0, 1, 2 * y + 3 * x - k % 2}};
                enter(with, pair);
                enter(without, pair);
            }
            for (const double weight : {0.7, -0.7})
                enter(with, {{at + blunder, at / 3, 1, 0, at - blunder}}, weight);
            for (const auto& solver : kSolvers) {
                ASSERT_EQ((with.*solver.solve)(), 1) << solver.name << at << ", " << blunder;
                ASSERT_EQ((without.*solver.solve)(), 1) << solver.name;
                for (int i = 0; i < 4; ++i) {
                    EXPECT_NEAR(with.GetBcor(i) / without.GetBcor(i), 1.0, 1e-12) << solver.name << at;
                    EXPECT_NEAR(with.GetCovar(i, i) / without.GetCovar(i, i), 1.0, 1e-12) << at;
                }
            }
        }
    }
}

}  // namespace
