// CLeastSq against certified and published figures.
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include "numerics/double_double.h"
#include "tests/adjustment/solvers.h"
#include "tests/published/ghilani.h"
#include "tests/published/niemeier.h"
#include "tests/published/nist.h"
#include "tests/shared_data.h"

namespace {

using DoubleDouble = fieldscan::DoubleDouble<double>;

double digits(double value, double expected) {
    const double error = std::fabs(value - expected);
    return error == 0.0 ? 17.0 : -std::log10(expected == 0.0 ? error : error / std::fabs(expected));
}

using List = std::vector<DoubleDouble>;

DoubleDouble exact(double value) { return {value, 0.0}; }

DoubleDouble operator*(DoubleDouble a, DoubleDouble b) { return a * b.hi + a * b.lo; }

DoubleDouble operator/(DoubleDouble a, double b) {
    const double quotient = a.hi / b;
    const DoubleDouble rest = a + fieldscan::twoProduct(-quotient, b);
    return fieldscan::fastTwoSum(quotient, rest.hi / b);
}

// A decimal number, where double would round it.
DoubleDouble decimal(const std::string& text) {
    DoubleDouble value = exact(0.0);
    bool fraction = false;
    double scale = 1.0;
    for (const char c : text) {
        if (c >= '0' && c <= '9') {
            value = value * 10.0 + exact(c - '0');
            scale *= fraction ? 10.0 : 1.0;
        }
        fraction = fraction || c == '.';
    }
    return value / (text[0] == '-' ? -scale : scale);
}

// A polynomial is fitted in z = h (x - x0) and turned into one of x, all of it in double-double but the
// adjustment itself. For Filip z is about -1 .. 1: the eleven powers of x itself are too much alike for
// doubles.
class CertifiedTest : public testing::TestWithParam<nist::Regression> {
protected:
    std::vector<List> design;  // the observation last
    std::vector<List> toX;     // b = toX c, c the unknowns in z

    void SetUp() override {
        const nist::Regression& problem = GetParam();
        const std::size_t n = problem.unknowns;
        const bool isFilip = std::string(problem.name) == "Filip";
        const DoubleDouble h = decimal(isFilip ? "0.35" : "1");
        const double x0 = isFilip ? -6.0 : 0.0;
        std::istringstream observations(problem.observations);
        std::string y, x;
        while (observations >> y) {
            List row;
            for (std::size_t i = 0; i < problem.variables && observations >> x; ++i)
                row.push_back(decimal(x));
            if (problem.variables > 1) {
                row.insert(row.begin(), exact(1.0));
            } else {
                const DoubleDouble z = h * (row[0] + exact(-x0));
                row[0] = problem.firstPower ? z : exact(1.0);
                while (row.size() < n)
                    row.push_back(row.back() * z);
            }
            row.push_back(decimal(y));
            design.push_back(row);
        }
        // (h (x - x0))^j by repeated multiplication: column j from column j - 1.
        toX.assign(n, List(n, exact(0.0)));
        for (std::size_t j = 0; j < n; ++j) {
            toX[j][j] = exact(1.0);
            for (std::size_t k = 0; k <= j && j > 0 && x0 != 0.0; ++k)
                toX[k][j] = h * ((k > 0 ? toX[k - 1][j - 1] : exact(0.0)) +
                                 (k < j ? toX[k][j - 1] * -x0 : exact(0.0)));
        }
    }
};

// As an application does it: a first solution, then corrections to it from the misclosures, whose residuals
// have not lost the digits that those of large observations lose.
TEST_P(CertifiedTest, ThirteenDigits) {
    const std::size_t n = GetParam().unknowns;
    const auto at = [](std::size_t i) { return static_cast<int>(i); };
    for (const auto& solver : kSolvers) {
        CLeastSq adjustment(at(design.size()), at(n));
        List unknowns(n, exact(0.0));
        for (int pass = 1; pass <= 2; ++pass) {
            adjustment.InitObeq();
            for (const auto& row : design) {
                DoubleDouble misclosure = row[n];
                for (std::size_t i = 0; i < n; ++i) {
                    adjustment.SetObeq(at(i), row[i].hi);
                    misclosure = misclosure + row[i] * unknowns[i] * -1.0;
                }
                adjustment.SetObeq(at(n), misclosure.hi);
            }
            ASSERT_EQ((adjustment.*solver.solve)(), 1) << solver.name;
            std::istringstream certified(GetParam().certified);
            double estimate, deviation;
            for (std::size_t i = 0; i < n; ++i)
                unknowns[i] = unknowns[i] + exact(adjustment.GetBcor(at(i)));
            for (std::size_t k = 0; k < n; ++k) {
                DoubleDouble b = exact(0.0), cofactor = exact(0.0);
                for (std::size_t i = 0; i < n; ++i) {
                    b = b + toX[k][i] * unknowns[i];
                    for (std::size_t j = 0; j < n; ++j)
                        cofactor = cofactor + toX[k][i] * toX[k][j] * adjustment.GetCovar(at(i), at(j));
                }
                ASSERT_TRUE(certified >> estimate >> deviation);
                EXPECT_GT(digits(b.hi, estimate), 13.0) << solver.name << " b" << k;
                const double ofB = adjustment.CalStandard2() * std::sqrt(cofactor.hi);
                if (pass == 2) {
                    EXPECT_GT(digits(ofB, deviation), 13.0) << solver.name << k;
                }
            }
            ASSERT_TRUE(certified >> deviation);
            if (pass == 2) {
                EXPECT_GT(digits(adjustment.CalStandard2(), deviation), 13.0) << solver.name;
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Nist, CertifiedTest, testing::ValuesIn(nist::kRegressions),
                         [](const auto& problem) { return std::string(problem.param.name); });

// In whole millimetres and with whole weights, so that nothing is rounded before the solver.
TEST(LeastSquares, LevellingNetworkFromPrintToTheLastDigits) {
    CLeastSq levelling(7, 4);
    for (const auto& line : ghilani::kLevelling) {
        for (int i = 0; i < 4; ++i)
            levelling.SetObeq(i, line.heights[i]);
        levelling.SetObeq(4, std::round(line.observed * 1000.0));
        levelling.SetWeight(3600.0 / (line.deviation * line.deviation));
    }
    for (const auto& solver : kSolvers) {
        ASSERT_EQ((levelling.*solver.solve)(), 1) << solver.name;
        for (int i = 0; i < 4; ++i) {
            EXPECT_NEAR(levelling.GetBcor(i) / 1000.0, ghilani::kHeights[i], 0.00005) << solver.name << i;
            const double height = ghilani::kExactHeights[i] / ghilani::kDenominator;
            EXPECT_GT(digits(levelling.GetBcor(i), height), 15.0) << solver.name << i;
            for (int j = 0; j < 4; ++j) {
                const double cofactor = ghilani::kExactCofactors[i][j] / ghilani::kDenominator / 3600.0;
                EXPECT_GT(digits(levelling.GetCovar(i, j), cofactor), 14.0) << solver.name << i << j;
            }
        }
        const double sum = levelling.CalSigma2() / 3600.0 * levelling.GetDegreesOfFreedom();
        EXPECT_GT(digits(sum, ghilani::kExactSumOfSquares / ghilani::kDenominator), 9.0) << solver.name;
    }
}

TEST(LeastSquares, PlaneNetworkFromPrint) {
    CLeastSq network(14, 6);
    niemeier::enter(network);
    for (const auto& solver : kSolvers) {
        ASSERT_EQ((network.*solver.solve)(), 1) << solver.name;
        for (int i = 0; i < 4; ++i) {
            EXPECT_NEAR(network.GetBcor(i), 0.0, 0.05) << solver.name << i << ": places of 0.1 mm";
            const double deviation = std::sqrt(network.CalSigma2() * network.GetCovar(i, i));
            EXPECT_NEAR(deviation, niemeier::kDeviations[i], 0.005) << solver.name << i;
        }
    }
}

// With inner constraints as equations of weight 1e6.
TEST(LeastSquares, FreeNetworksOfAnotherAdjustmentProgram) {
    for (const std::string name : {"local_3d_free", "barta_metro_3d_free"}) {
        const std::string folder = "gama/" + name + "/system_";
        const auto weights = sharedTable(folder + "weights.csv"),
                   expected = sharedTable(folder + "expected.csv");
        if (weights.empty())
            GTEST_SKIP() << kNoSharedData;
        const int m = static_cast<int>(weights.size()), n = static_cast<int>(expected.size());
        CLeastSq network(m, n);
        for (const auto& cells : sharedTable(folder + "rows.csv"))
            network.Obeq[std::stoi(cells[0]) * (n + 1) + std::stoi(cells[1])] = std::stod(cells[2]);
        for (int k = 0; k < m; ++k)
            network.SetWeight(k, std::stod(weights[static_cast<std::size_t>(k)][1]));
        const auto figures = sharedTable(folder + "figures.csv");
        for (const auto& solver : kSolvers) {
            ASSERT_EQ((network.*solver.solve)(), 1) << name;
            for (int i = 0; i < n; ++i) {
                const auto& cells = expected[static_cast<std::size_t>(i)];
                EXPECT_GT(digits(network.GetBcor(i), std::stod(cells[2])), 9.0) << name << solver.name << i;
                EXPECT_GT(digits(network.GetCovar(i, i), std::stod(cells[3])), 12.0) << name << i;
            }
            EXPECT_GT(digits(network.CalSigma2(), std::stod(figures[2][1])), 13.0) << name;
            EXPECT_GT(digits(network.CalStandard(), std::stod(figures[3][1])), 13.0) << name;
        }
    }
}

}  // namespace
