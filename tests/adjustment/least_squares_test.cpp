// CLeastSq against plain sums in the documented order, and its own contract.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <ctime>
#include <limits>
#include <random>
#include <vector>

#include "tests/adjustment/solvers.h"
#include "tests/temp_folder.h"

namespace {

using Rows = std::vector<std::vector<double>>;  // the coefficients, then the observation

void enter(CLeastSq& adjustment, const Rows& rows) {
    for (const auto& row : rows)
        for (std::size_t column = 0; column < row.size(); ++column)
            adjustment.SetObeq(static_cast<int>(column), row[column]);
}

int solved(const Rows& rows, int n) {
    CLeastSq adjustment(static_cast<int>(rows.size()), n);
    enter(adjustment, rows);
    return adjustment.Solve();
}

TEST(LeastSquares, FormsTheStatedSumsBitByBit) {
    std::mt19937_64 random(1);
    std::normal_distribution<double> number(0.0, 1e3);
    for (int trial = 0; trial < 200; ++trial) {
        const int n = 1 + trial % 11, m = trial % 37;
        CLeastSq adjustment(m, n);
        for (int i = 0; i < adjustment.Obeq.GetSize(); ++i)
            adjustment.Obeq[i] = number(random);
        if (trial % 3)
            for (int k = 0; k < m; ++k)
                adjustment.SetWeight(k, std::fabs(number(random)));
        ASSERT_EQ(trial % 2 ? adjustment.Lessqu(m, n) : adjustment.LessquFast(m, n), 1);
        for (int i = 0; i < n; ++i) {
            for (int j = 0; j <= n; ++j) {
                double sum = 0.0;
                for (int k = 0; k < m; ++k)
                    sum += (adjustment.Obeq[k * (n + 1) + j] * adjustment.Obeq[k * (n + 1) + i]) *
                           adjustment.Weight[k];
                ASSERT_EQ(adjustment.GetNoeq(i, j), sum) << "m " << m << " n " << n;
            }
        }
    }
}

TEST(LeastSquares, AnEngineWithoutUnknownsDoesNothing) {
    CLeastSq none;
    EXPECT_EQ(none.InitNoeq(), 0);
    EXPECT_EQ(none.InitBcor(), 0);
    EXPECT_EQ(none.Solve(), 0);
    EXPECT_EQ(none.LUDivid(), 0);
    EXPECT_EQ(none.CheckNoeq(), 1);
    EXPECT_EQ(none.CalSigma2(), std::numeric_limits<double>::max());
}

TEST(LeastSquares, EntersEquationsAndGrows) {
    CLeastSq adjustment(2, 2);
    EXPECT_EQ(adjustment.SetWeight(2.0), 0) << "no equation begun";
    EXPECT_EQ(adjustment.SetObeq(1, 5.0), 0) << "no equation begun";
    enter(adjustment, {{1, 2, 3}, {4, 5, 6}, {7, 8, 9}});
    EXPECT_EQ(adjustment.GetObeqSize(), 3);
    EXPECT_EQ(adjustment.GetObeqNumber(), 3);
    EXPECT_EQ(adjustment.GetCurrentObeqNumber(), 3);
    EXPECT_EQ(adjustment.GetDegreesOfFreedom(), 1);
    EXPECT_EQ(adjustment.Weight[2], 1.0);
    EXPECT_EQ(adjustment.GetObeq(2), 9.0);
    adjustment.IncrementColumn();
    EXPECT_EQ(adjustment.SetObeq(1, 4.0), 0) << "beyond the last row";
    EXPECT_EQ(adjustment.SetObeq(0, 4.0), 1);
    EXPECT_EQ(adjustment.ObeqSize, 5);
    EXPECT_EQ(adjustment.Obeq[9], 0.0) << "a row of zeros is left between";
    EXPECT_EQ(adjustment.Obeq[12], 4.0);

    adjustment.InitObeq();
    adjustment.IncrementColumn();
    adjustment.SetObeq(0, -4.0);
    EXPECT_EQ(adjustment.SetObeq(3, 1.0), 0);
    EXPECT_EQ(adjustment.SetObeq(-1, 1.0), 0);
    EXPECT_EQ(adjustment.Obeq[0], 1.0) << "rows are kept";
    EXPECT_EQ(adjustment.Obeq[3], -4.0);
    EXPECT_EQ(adjustment.SetWeight(99, 1.0), 1);
}

TEST(LeastSquares, ClearsNormalEquationsAndUnknowns) {
    CLeastSq adjustment(3, 2);
    adjustment.SetNoeq(1, 2, 8.0);
    EXPECT_EQ(adjustment.GetNoeq(1, 2), 8.0);
    EXPECT_EQ(adjustment.GetBcor(1), 8.0) << "the right-hand side";
    adjustment.computationTime = adjustment.formTime = 9.0;
    EXPECT_EQ(adjustment.InitNoeq(), 1);
    EXPECT_EQ(adjustment.InitBcor(), 1);
    const double cleared[] = {
        adjustment.GetNoeq(1, 2), adjustment.GetBcor(1),     adjustment.GetComputationTime(),
        adjustment.formTime,      adjustment.GetBcor(-1),    adjustment.GetNoeq(9, 9),
        adjustment.GetVar(7),     adjustment.GetCovar(-1, 0)};
    for (const double value : cleared)
        EXPECT_EQ(value, 0.0);
    adjustment.SetNoeq(2, 2, 1.0);  // no such row
    EXPECT_EQ(adjustment.Lessqu(4, 2), 0);
    EXPECT_EQ(adjustment.Lessqu(3, 1), 0);
    EXPECT_EQ(adjustment.Lessqu(-1, 2), 0);
}

TEST(LeastSquares, MakesRoomForAsManyAsItIsTold) {
    CLeastSq adjustment(3, 2), single(1);
    EXPECT_EQ(adjustment.Create(3, -1), 0);
    EXPECT_EQ(adjustment.Create(2147483647, 2147483646), 0);
    EXPECT_EQ(adjustment.ObeqSize, 0);
    EXPECT_EQ(adjustment.parameterNumber, 0);
    EXPECT_EQ(adjustment.rowLength, 0);
    EXPECT_EQ(CLeastSq(-1).GetCurrentObeqNumber(), 0) << "refused";
    EXPECT_EQ(single.rowLength, 2);
    EXPECT_EQ(single.ObeqSize, 1);
    EXPECT_EQ(single.Obeq.GetSize(), 2);
    EXPECT_EQ(single.Var.GetSize(), 0);
    single.SetObeq(0, 1.0);
    EXPECT_EQ(single.SetWeight(3.0), 1);
    EXPECT_EQ(single.Weight[0], 3.0);
    single.Bcor[0] = 5.0;
    EXPECT_EQ(single.Create(1, 2), 1);
    EXPECT_EQ(single.rowLength, 3);
    EXPECT_EQ(single.Bcor[0], 0.0);
    EXPECT_EQ(single.Weight[0], 1.0);
}

// Laeuchli's equations: N is singular in double, the equations are not.
TEST(LeastSquares, SolversAgreeWhereNormalEquationsFail) {
    const double e = std::ldexp(1.0, -30);
    for (const auto& solver : kSolvers) {
        CLeastSq adjustment(4, 3);
        enter(adjustment, {{1, 1, 1, 6}, {e, 0, 0, e}, {0, e, 0, 2 * e}, {0, 0, e / 256, 3 * e / 256}});
        adjustment.SetWeight(65536.0);
        ASSERT_EQ((adjustment.*solver.solve)(), 1) << solver.name;
        for (int i = 0; i < 3; ++i) {
            EXPECT_EQ(adjustment.GetBcor(i), i + 1.0) << solver.name;
            for (int j = 0; j < 3; ++j)  // (I - 1 1^T / (3 + e^2)) / e^2
                EXPECT_NEAR(adjustment.GetCovar(i, j) * e * e, (i == j) - 1.0 / (3.0 + e * e), 1e-14);
        }
    }
}

// The equations have a solution, N in double has none.
TEST(LeastSquares, WhatChangesAfterFormingLeavesOnlyN) {
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
        EXPECT_EQ(adjustment.NewChores(), 0) << &change - changes;
        EXPECT_TRUE(std::isnan(adjustment.GetBcor(0))) << "nothing looks right";
        EXPECT_TRUE(std::isnan(adjustment.GetCovar(1, 0)));
    }
}

TEST(LeastSquares, ARightHandSideWrittenIntoItsArrayCountsAsEntered) {
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
// 1e11. And singular ones that leave a pivot by their rounding.
TEST(LeastSquares, EnteredNormalEquationsGiveAllTheirDigitsOrNone) {
    std::mt19937 random(1);
    for (const auto& solver : kSolversOfEntered) {
        CLeastSq exact(0, 2);
        const double normal[] = {196418, 317811, 196418 - 317811 * 3.0, 0, 514229, 317811 - 514229 * 3.0};
        for (int i = 0; i < 6; ++i)
            exact.SetNoeq(i / 3, i % 3, normal[i]);
        ASSERT_EQ((exact.*solver.solve)(), 1) << solver.name;
        EXPECT_EQ(exact.GetBcor(0), 1.0) << solver.name;
        EXPECT_EQ(exact.GetBcor(1), -3.0) << solver.name;
        EXPECT_EQ(exact.GetCovar(0, 0), 514229.0) << solver.name;
        EXPECT_EQ(exact.GetCovar(1, 0), -317811.0) << solver.name;

        // The products of three columns e1, e1 + d e2, e2 + d e3: no pivot is below d^2, but of the first
        // column d^2 is left beside the others.
        for (const auto& [d, solved] : {std::pair(0x1p-10, 1), {0x1p-12, 0}}) {
            CLeastSq chain(0, 3);
            const double products[] = {1, 1, 0, 0, 0, 1 + d * d, d, 0, 0, 0, 1 + d * d, 0};
            for (int i = 0; i < 12; ++i)
                chain.SetNoeq(i / 4, i % 4, products[i]);
            EXPECT_EQ((chain.*solver.solve)(), solved) << solver.name << d;
            EXPECT_TRUE(solved == 0 || chain.GetCovar(0, 0) * d * d * d * d == 1 + d * d + d * d * d * d);
        }

        CLeastSq published(0, 3);
        const double singular[] = {41, 73, -31, 1, 73, 130, -56, 2, -31, -56, 50, 3};
        for (int i = 0; i < 12; ++i)
            published.SetNoeq(i / 4, i % 4, singular[i]);
        EXPECT_EQ((published.*solver.solve)(), 0) << solver.name;
        for (int trial = 0; trial < 1000; ++trial) {  // the sum of n - 1 squares
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
TEST(LeastSquares, ManyEquationsCostNoDigits) {
    CLeastSq line(400000, 2), mean(1000000, 1);
    for (int k = 0; k < line.ObeqSize; ++k) {
        const double x = 5e6 + std::ldexp(k % 1000, -16);
        enter(line, {{1, x, 3 + 0.5 * x}});
    }
    ASSERT_EQ(line.Solve(), 1);
    EXPECT_EQ(line.GetBcor(1), 0.5);
    for (int k = 0; k < mean.ObeqSize; ++k) {
        enter(mean, {{0.1, 0.3}});
        mean.SetWeight(0.1);
    }
    ASSERT_EQ(mean.Solve(), 1);
    EXPECT_EQ(mean.GetBcor(0), 0.3 / 0.1);
    EXPECT_NEAR(mean.GetCovar(0, 0), 1e-3, 1e-18);
}

// Of columns forty decades apart the first unknown is not seen in double-double: it was 4e-5 wrong.
TEST(LeastSquares, RefusesAnUnknownThatDoesNotSettle) {
    EXPECT_EQ(solved({{-0.0, -1.0638713827770854e+18, -1.762627730210531e+33},
                      {865487066.5080556, -6.237715535354112e+18, -1.03346800692015e+34},
                      {5.216507553254369e+21, -1.704749633660101e+31, -2.8244382037157836e+46}},
                     2),
              0);
}

TEST(LeastSquares, RefusesWhatIsSingularAtAnyScale) {
    EXPECT_EQ(solved({{1, 2, 1}}, 2), 0) << "fewer equations than unknowns";
    EXPECT_EQ(solved({{1, 0, 1}, {2, 0, 2}}, 2), 0) << "an unknown without equation";
    EXPECT_EQ(solved({{1, INFINITY}, {1, 1}}, 1) + solved({{std::nan(""), 1}}, 1), 0);
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
                const double n[] = {1, 1, 1, 1 + more};
                for (int i = 0; i < 4; ++i)
                    normal.Noeq[i / 2 * 3 + i % 2] = n[i] * scale;
                EXPECT_EQ((normal.*solver)(), more > 1e-12 ? 1 : 0) << scale;
            }
        }
    }
    EXPECT_EQ(solved({{1e-154, 0, 1}, {0, 1e-154, 1}}, 2), 0) << "below the tolerance";
    CLeastSq small(0, 1);
    for (const auto& [diagonal, result] :
         {std::pair(small.tolerance, 0), {3e-307, 11}, {1e300, 11}, {-1.0, 10}}) {
        small.SetNoeq(0, 0, diagonal);
        EXPECT_EQ(small.CheckNoeq() * 10 + small.SolveWithReduc(), result);
    }
    CLeastSq indefinite(0, 2);
    for (int i = 0; i < 4; ++i)
        indefinite.SetNoeq(i / 2, i % 2, i % 3 == 0 ? 1.0 : 2.0);
    EXPECT_EQ(indefinite.SolveWithReduc() + indefinite.PIChores() + indefinite.SwpMat(), 0);
}

TEST(LeastSquares, MeasuresItsStages) {
    using Clock = std::chrono::steady_clock;
    CLeastSq adjustment(300, 300);  // takes some tens of milliseconds
    for (int k = 0; k < 300; ++k)
        for (int j = 0; j < 300; ++j)
            adjustment.SetObeq(j, j == k ? 1.0 : 0.0);
    adjustment.SetFormTime(1e6);
    const Clock::time_point start = Clock::now();
    ASSERT_EQ(adjustment.PISolve(), 1);
    const double passed = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
    const double measured = adjustment.GetFormTime() + adjustment.GetComputationTime();
    EXPECT_TRUE(measured > passed / 2 - 2 && measured < passed + 2) << measured << " of " << passed;
}

TEST(LeastSquares, KeepsSmallUnknownsBesideLargeOnes) {
    CLeastSq adjustment(2, 2);
    enter(adjustment, {{1, 0, 1e13}, {0, 1, 5e-18}});
    ASSERT_EQ(adjustment.Solve(), 1);
    EXPECT_TRUE(adjustment.GetBcor(0) == 1e13 && adjustment.GetBcor(1) == 5e-18);
    CLeastSq correlated(4, 2);  // x1 = 1, x0 = -1 / e, which hides in a column of small numbers
    const double e = std::ldexp(1.0, -20);
    for (int k = 0; k < 4; ++k)
        enter(correlated, {{e, 1 + 0.7 * k * e, (1 + 0.7 * k * e) - 1}});
    ASSERT_EQ(correlated.Solve(), 1);
    EXPECT_TRUE(correlated.GetBcor(0) * e == -1.0 && correlated.GetBcor(1) == 1.0);
    adjustment.SetFormTime(7.0);
    EXPECT_EQ(adjustment.GetFormTime(), 7.0);
    adjustment.SetNoeq(0, 0, 2.0);  // what was entered counts, not the equations
    ASSERT_EQ(adjustment.SolveWithReduc(), 1);
    EXPECT_DOUBLE_EQ(adjustment.GetBcor(0), 5e12);
}

// Unknowns that are observed each and, with a root of s, all together: N = I + s 1 1^T. By the correlation,
// about s, each way has a row: N in double, N in double-double, orthonormal equations.
TEST(LeastSquares, EveryWayOfSolvingIsExact) {
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

// A similarity at the coordinates of a national grid. Residuals that change sign from corner to corner of a
// rectangle are at right angles to all columns, so the unknowns stay whole numbers.
TEST(LeastSquares, UnknownsAndCofactorsToTheLastDigitOnANationalGrid) {
    const double east = 4058000.0, north = 5291000.0, expected[] = {3.0, 2.0, -700.0, 5.0};
    for (const int rectangles : {1, 5, 70}) {
        for (const double weight : {1.0, 0.1}) {
            CLeastSq adjustment(0, 4);
            double squares = 0.0, weights = 0.0;
            for (int k = 0; k < 4 * rectangles; ++k) {
                const int rectangle = k / 4;
                const double dx = (k % 2 ? -1.0 : 1.0) * (50 + 7 * rectangle);
                const double dy = (k / 2 % 2 ? -1.0 : 1.0) * (90 + 3 * rectangle);
                const double x = east + dx, y = north + dy, residual = dx * dy > 0.0 ? 300.0 : -300.0;
                const double p = rectangle % 2 ? 1.0 : weight;
                enter(adjustment, {{x, -y, 1, 0, 3 * x - 2 * y - 700 + residual}});
                adjustment.SetWeight(p);
                enter(adjustment, {{y, x, 0, 1, 3 * y + 2 * x + 5 - residual}});
                adjustment.SetWeight(p);
                squares += p * (dx * dx + dy * dy);
                weights += p;
            }
            ASSERT_EQ(adjustment.Solve(), 1);
            for (int i = 0; i < 4; ++i)
                EXPECT_NEAR(adjustment.GetBcor(i), expected[i], 1.2e-16 * std::fabs(expected[i])) << i;
            const double q = 1.0 / squares, t = 1.0 / weights + (east * east + north * north) * q;
            const double cofactors[4][4] = {
                {q, 0, -east * q, -north * q}, {0, q, north * q, -east * q}, {0, 0, t, 0}, {0, 0, 0, t}};
            for (int i = 0; i < 4; ++i)
                for (int j = i; j < 4; ++j)
                    EXPECT_NEAR(adjustment.GetCovar(i, j), cofactors[i][j],
                                2e-15 * std::sqrt(cofactors[i][i] * cofactors[j][j]))
                        << rectangles << ", " << weight << ": " << i << ", " << j;
        }
    }
}

// At national-grid coordinates too, and whatever the blunder was.
TEST(LeastSquares, NegativeWeightTakesAnEquationOut) {
    for (const double at : {0.0, 5e6}) {
        for (const double blunder : {0.0, 1e5}) {
            CLeastSq with(0, 4), without(0, 4);
            for (int k = 0; k < 6; ++k) {
                const double x = at + 10.0 * k, y = at / 2 + k * k % 7;
                const Rows pair = {{x, -y, 1, 0, 2 * x - 3 * y + k % 3}, {y, x, 0, 1, 2 * y + 3 * x - k % 2}};
                enter(with, pair);
                enter(without, pair);
            }
            for (const double weight : {0.7, -0.7}) {
                enter(with, {{at + blunder, at / 3, 1, 0, at - blunder}});
                with.SetWeight(weight);
            }
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

TEST(LeastSquares, SelfTestsAndSingleSteps) {
    const double solution[][4] = {{1, 2, 3}, {1, -1, 2, -2}};
    for (const int n : {3, 4}) {
        CLeastSq adjustment;
        n == 3 ? adjustment.TestData31() : adjustment.TestData4();
        const double below = adjustment.GetNoeq(2, 1);
        adjustment.SetNoeq(2, 1, std::nan(""));  // the half that is not read
        for (const auto& solve :
             {&CLeastSq::TestChores, &CLeastSq::SolveWithReduc, &CLeastSq::PIChores, &CLeastSq::SwpMat}) {
            adjustment.InitBcor();
            ASSERT_EQ((adjustment.*solve)(), 1);
            for (int i = 0; i < n; ++i)
                EXPECT_NEAR(adjustment.GetBcor(i), solution[n - 3][i], 1e-14);
        }
        EXPECT_EQ(adjustment.LUDivid() + adjustment.ForwardSubstiotution() + adjustment.InitBcor() +
                      adjustment.BackwardSubstiotution(),
                  4);
        EXPECT_NEAR(std::fabs(adjustment.GetBcor(0)), 1.0, 1e-14) << "from the work table";
        EXPECT_EQ(adjustment.GetDegreesOfFreedom(), -n);
        ASSERT_EQ(adjustment.TestInvers(), 1);
        adjustment.SetNoeq(2, 1, below);
        for (int i = 0; i < n; ++i) {
            for (int j = 0; j < n; ++j) {
                double unit = 0.0;
                for (int k = 0; k < n; ++k)
                    unit += adjustment.GetNoeq(i, k) * adjustment.GetCovar(k, j);
                EXPECT_NEAR(unit, i == j, 1e-14);
            }
        }
        adjustment.InitNoeq();
        EXPECT_EQ(adjustment.TestChores() + adjustment.TestInvers() + adjustment.CheckNoeq(), 0);
        adjustment.TestBook();
    }
}

TEST(LeastSquares, PrecisionByHand) {
    CLeastSq line(3, 1);  // a weighted mean: of 1, 3, 4 with weights 1, 1, 2 it is 3, residuals -2, 0, 1
    enter(line, {{1, 1}, {1, 3}, {1, 4}});
    line.SetWeight(2.0);
    ASSERT_EQ(line.Solve(), 1);
    EXPECT_TRUE(line.GetBcor(0) == 3.0 && line.CalSigma2() == 3.0);
    EXPECT_DOUBLE_EQ(line.CalStandard(), std::sqrt(5.0 / 3.0));
    EXPECT_DOUBLE_EQ(line.CalStandard2(), std::sqrt(5.0 / 2.0));
    line.CalVarianceOfEstimate();
    EXPECT_EQ(line.GetCovar(0, 0), 0.25) << "sigma is 1 until it is set";
    line.SetSigma(line.CalSigma2());
    line.CalVarianceOfEstimate();
    EXPECT_EQ(line.GetCovar(0, 0), 0.75);

    CLeastSq plane(3, 2);  // as many digits as a hand computes: N^-1 = [5 -3; -3 3] / 6
    enter(plane, {{1, 0, 1}, {1, 1, 2}, {1, 2, 4}});
    ASSERT_EQ(plane.Solve() + plane.CalVarianceOfObservation(), 2);
    for (int i = 0; i < 3; ++i)
        EXPECT_NEAR(plane.GetVar(i), i == 1 ? 1.0 / 3.0 : 5.0 / 6.0, 1e-15);
    CLeastSq exact(2, 2);  // no redundancy: divided by m
    enter(exact, {{1, 0, 1}, {0, 1, 2}});
    ASSERT_EQ(exact.Solve(), 1);
    exact.Bcor[0] = 3.0;
    EXPECT_DOUBLE_EQ(exact.CalStandard2(), std::sqrt(2.0));
    EXPECT_DOUBLE_EQ(exact.CalSigma2(), 2.0);
}

class LeastSquaresFile : public TempFolder {};

TEST_F(LeastSquaresFile, DiagnosticFile) {
    const std::filesystem::path before = std::filesystem::current_path();
    CLeastSq adjustment(0, 2);
    for (const double value : {12.5, -1e-300, 1e-308})
        adjustment.SetNoeq(value == 1e-308, value < 0.0 || value == 1e-308, value);
    std::filesystem::current_path(folder);
    EXPECT_EQ(adjustment.SaveErrorNoeqStatus(2, 3), 1);
    EXPECT_EQ(get("Noeq.txt"), "Col:2 Row:3\n#1.2e+01 -1.0e-300 0.0e+00 \n0.0e+00 *1.0e-308 0.0e+00 \n");
    EXPECT_EQ(adjustment.CheckNoeq(), 0);
    std::filesystem::remove("Noeq.txt");
    std::filesystem::create_directory("Noeq.txt");
    EXPECT_EQ(adjustment.SaveErrorNoeqStatus(2, 3), 0);
    std::filesystem::current_path(before);
}

TEST(LeastSquares, ClockIsNineHoursAheadOfUtc) {
    unsigned long ms = 0;
    const std::time_t before = std::time(nullptr);
    ASSERT_EQ(CLeastSq().time(&ms), 1);
    const long long expected = (before % 86400 + 9 * 3600) * 1000LL,
                    late = (static_cast<long long>(ms) - expected + 86400000) % 86400000;
    EXPECT_NEAR(static_cast<double>(late), 1000.0, 1001.0);
}

}  // namespace
