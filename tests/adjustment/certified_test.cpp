// CLeastSq against certified and published figures.
#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <string>
#include <vector>

#include "numerics/double_double.h"
#include "tests/adjustment/solvers.h"
#include "tests/shared_data.h"

namespace {

using DoubleDouble = fieldscan::DoubleDouble<double>;

double digits(double value, double expected) {
    const double error = std::fabs(value - expected);
    return error == 0.0 ? 17.0 : -std::log10(expected == 0.0 ? error : error / std::fabs(expected));
}

// The figures in the last column of a table, by their names.
std::map<std::string, double> sharedFigures(const std::string& name) {
    std::map<std::string, double> figures;
    for (const auto& cells : sharedTable(name))
        figures[cells[0]] = std::strtod(cells.back().c_str(), nullptr);
    return figures;
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

// A linear problem of NIST's reference datasets. A polynomial is fitted in z = h (x - x0) and turned into one
// of x, all of it in double-double but the adjustment itself.
enum Kind { polynomial, columns, columnsAndConstant };

struct Certified {
    const char* name;
    Kind kind;
    std::size_t unknowns;
    int firstPower;
    const char* h;
    double x0;
};

void PrintTo(const Certified& set, std::ostream* out) { *out << set.name; }

class CertifiedTest : public testing::TestWithParam<Certified> {
protected:
    std::vector<List> design;  // the observation last; columns are given as doubles
    std::vector<List> toX;     // b = toX c, c the unknowns in z

    void SetUp() override {
        const Certified& problem = GetParam();
        const std::string file = std::string("nist/") + problem.name;
        auto table = sharedTable(file + "_data.csv");
        if (table.empty())
            table = sharedTable(file + "_design.csv");
        if (table.empty())
            GTEST_SKIP() << kNoSharedData;
        const std::size_t n = problem.unknowns;
        for (const auto& cells : table) {
            List row;
            if (problem.kind == polynomial) {
                const DoubleDouble z = decimal(problem.h) * (decimal(cells[1]) + exact(-problem.x0));
                row.push_back(problem.firstPower ? z : exact(1.0));
                while (row.size() < n)
                    row.push_back(row.back() * z);
            } else {
                if (problem.kind == columnsAndConstant)
                    row.push_back(exact(1.0));
                for (std::size_t i = 1; i < cells.size(); ++i)
                    row.push_back(exact(std::stod(cells[i])));
            }
            row.push_back(decimal(cells[0]));
            design.push_back(row);
        }
        // (h (x - x0))^j by repeated multiplication: column j from column j - 1.
        toX.assign(n, List(n, exact(0.0)));
        for (std::size_t j = 0; j < n; ++j) {
            toX[j][j] = exact(1.0);
            for (std::size_t k = 0; k <= j && j > 0 && problem.x0 != 0.0; ++k)
                toX[k][j] = decimal(problem.h) * ((k > 0 ? toX[k - 1][j - 1] : exact(0.0)) +
                                                  (k < j ? toX[k][j - 1] * -problem.x0 : exact(0.0)));
        }
    }
};

// As an application does it: a first solution, then corrections to it from the misclosures, whose residuals
// have not lost the digits that those of large observations lose.
TEST_P(CertifiedTest, ThirteenDigits) {
    const Certified& problem = GetParam();
    const std::size_t n = problem.unknowns;
    const auto at = [](std::size_t i) { return static_cast<int>(i); };
    const auto expected = sharedFigures(std::string("nist/") + problem.name + "_expected.csv");
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
            for (std::size_t i = 0; i < n; ++i)
                unknowns[i] = unknowns[i] + exact(adjustment.GetBcor(at(i)));
            for (std::size_t k = 0; k < n; ++k) {
                DoubleDouble b = exact(0.0), cofactor = exact(0.0);
                for (std::size_t i = 0; i < n; ++i) {
                    b = b + toX[k][i] * unknowns[i];
                    for (std::size_t j = 0; j < n; ++j)
                        cofactor = cofactor + toX[k][i] * toX[k][j] * adjustment.GetCovar(at(i), at(j));
                }
                const std::string index = std::to_string(k);
                EXPECT_GT(digits(b.hi, expected.at("b" + index)), 13.0) << solver.name << " b" << index;
                const double deviation = adjustment.CalStandard2() * std::sqrt(cofactor.hi);
                if (pass == 2) {
                    EXPECT_GT(digits(deviation, expected.at("sd_b" + index)), 13.0) << solver.name << index;
                }
            }
        }
    }
}

const Certified kProblems[] = {
    {"Norris", polynomial, 2, 0, "1", 0},          {"Pontius", polynomial, 3, 0, "1", 0},
    {"NoInt1", polynomial, 1, 1, "1", 0},          {"NoInt2", polynomial, 1, 1, "1", 0},
    {"Longley", columnsAndConstant, 7, 0, "1", 0}, {"LongleyScaled", columns, 7, 0, "1", 0},
    {"Filip", polynomial, 11, 0, "0.35", -6},      {"FilipScaled", columns, 11, 0, "1", 0},
    {"Wampler1", polynomial, 6, 0, "1", 0},        {"Wampler2", polynomial, 6, 0, "1", 0},
    {"Wampler3", polynomial, 6, 0, "1", 0},        {"Wampler4", polynomial, 6, 0, "1", 0},
    {"Wampler5", polynomial, 6, 0, "1", 0}};

INSTANTIATE_TEST_SUITE_P(Nist, CertifiedTest, testing::ValuesIn(kProblems),
                         [](const auto& problem) { return std::string(problem.param.name); });

TEST(LeastSquares, NetworksOfAnotherAdjustmentProgram) {
    for (const std::string name : {"wolf_3d", "niemeier_2d", "local_3d_free", "barta_metro_3d_free"}) {
        const std::string folder = "gama/" + name + "/";
        const auto weights = sharedTable(folder + "system_weights.csv"),
                   expected = sharedTable(folder + "system_expected.csv");
        if (weights.empty())
            GTEST_SKIP() << kNoSharedData;
        const int m = static_cast<int>(weights.size()), n = static_cast<int>(expected.size());
        CLeastSq network(m, n);
        for (const auto& cells : sharedTable(folder + "system_rows.csv"))
            network.Obeq[std::stoi(cells[0]) * (n + 1) + std::stoi(cells[1])] = std::stod(cells[2]);
        for (int k = 0; k < m; ++k)
            network.SetWeight(k, std::stod(weights[static_cast<std::size_t>(k)][1]));
        const auto figures = sharedFigures(folder + "system_figures.csv");
        for (const auto& solver : kSolvers) {
            ASSERT_EQ((network.*solver.solve)(), 1) << name;
            for (int i = 0; i < n; ++i) {
                const auto& cells = expected[static_cast<std::size_t>(i)];
                EXPECT_GT(digits(network.GetBcor(i), std::stod(cells[2])), 9.0) << name << solver.name << i;
                EXPECT_GT(digits(network.GetCovar(i, i), std::stod(cells[3])), 12.0) << name << i;
            }
            EXPECT_GT(digits(network.CalSigma2(), figures.at("sigma2_weighted_pvv_over_f")), 13.0);
            EXPECT_GT(digits(network.CalStandard(), figures.at("rms_unweighted")), 13.0);
        }
    }
}

}  // namespace
