// CPrecision against networks from print and against leaving equations out.
#include <fieldscan/precision.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "tests/adjustment/solvers.h"

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
const double kNaN = std::nan("");

// Ghilani, Adjustment Computations, chapter 12: a bench mark and six lines between it, B, C and D. Redundancy
// numbers in 1 / 130849 by elimination in fractions; nothing controls the bench mark.
const double kDeviations[] = {0.001, 0.006, 0.004, 0.005, 0.003, 0.004, 0.012};
const double kRedundancy[] = {0, 85689, 43108, 66625, 24561, 56608, 115956};

struct Levelling : CLeastSq {
    explicit Levelling(int withBlunder = 0, double blunder = 0.0) : CLeastSq(7, 4) {
        const Rows rows = {{1, 0, 0, 0, 437.596}, {-1, 1, 0, 0, 10.509}, {0, -1, 1, 0, 5.360},
                           {0, 0, -1, 1, -8.523}, {1, 0, 0, -1, -7.348}, {0, -1, 0, 1, -3.167},
                           {-1, 0, 1, 0, 15.881}};
        for (std::size_t k = 0; k < 7; ++k)
            enter(*this, {rows[k]}, 1.0 / (kDeviations[k] * kDeviations[k]));
        Obeq[withBlunder * 5 + 4] += blunder;
        EXPECT_EQ(Solve(), 1);
    }
    double misclosure(int k) const {
        double v = Obeq[k * 5 + 4];
        for (int i = 0; i < 4; ++i)
            v -= Obeq[k * 5 + i] * Bcor[i];
        return v;
    }
};

TEST(Precision, LevellingNetworkFromPrint) {
    const Levelling levelling;
    CPrecision precision;
    ASSERT_EQ(precision.CalFigures(levelling, 1.0), 1);
    const double heights[] = {437.596, 448.1087, 453.4685, 444.9436};
    for (int i = 0; i < 4; ++i) {
        EXPECT_NEAR(levelling.GetBcor(i), heights[i], 0.00005);
        EXPECT_NEAR(precision.cofactors[i * 4 + 2], levelling.GetCovar(i, 2), 1e-19);
    }
    EXPECT_EQ(precision.degreesOfFreedom, 3);
    EXPECT_NEAR(precision.sumOfSquares, 3.0 * levelling.CalSigma2(), 1e-13);
    EXPECT_NEAR(precision.estimatedSigma0, std::sqrt(levelling.CalSigma2()), 1e-14);
    for (int k = 1; k < 7; ++k) {
        const CEquationPrecision& equation = precision.equations[k];
        const double r = kRedundancy[k] / 130849.0, ofResidual = kDeviations[k] * std::sqrt(r);
        EXPECT_NEAR(equation.redundancy, r, 1e-14);
        EXPECT_NEAR(equation.residual, levelling.misclosure(k), 1e-12);
        EXPECT_NEAR(equation.standardized, equation.residual / ofResidual, 1e-10);
        EXPECT_NEAR(equation.tau, equation.standardized / precision.estimatedSigma0, 1e-12);
        EXPECT_NEAR(equation.detectable, 4.13 * ofResidual / r, 1e-14);
    }
    EXPECT_NEAR(precision.equations[0].redundancy, 0.0, 1e-14);
    EXPECT_EQ(precision.equations[0].controlled, 0);
    EXPECT_EQ(precision.equations[0].standardized, 0.0);
    EXPECT_EQ(precision.equations[0].detectable, std::numeric_limits<double>::max());
}

TEST(Precision, FindsABlunderWhereverItIs) {
    for (int k = 1; k < 7; ++k) {
        const double deviation = kDeviations[k] / std::sqrt(kRedundancy[k] / 130849.0);
        Levelling levelling(k, -15.0 * deviation);
        levelling.SetSigma(levelling.CalSigma2());
        levelling.CalVarianceOfEstimate();
        CPrecision precision;
        double lower = 0.0, upper = 0.0;
        ASSERT_EQ(precision.CalFigures(levelling, 1.0), 1);
        EXPECT_EQ(precision.largest, k);
        EXPECT_EQ(precision.TestGlobal(0.05, lower, upper), 0);
        EXPECT_NEAR(lower, 0.216, 0.0005);
        EXPECT_NEAR(upper, 9.348, 0.0005);
        const double estimate = precision.equations[k].residual / precision.equations[k].redundancy;
        EXPECT_NEAR(estimate, -15.0 * deviation, 3.0 * deviation);

        levelling.SetWeight(k, 0.0);
        ASSERT_EQ(levelling.Solve(), 1);
        EXPECT_NEAR(levelling.misclosure(k), estimate, 1e-11);
        ASSERT_EQ(precision.CalFigures(levelling, 1.0), 1);
        EXPECT_EQ(precision.TestGlobal(0.05, lower, upper), 1);
        EXPECT_EQ(precision.degreesOfFreedom, 2);
        EXPECT_EQ(precision.equations[k].controlled, 0);
        EXPECT_NEAR(precision.equations[k].residual, estimate, 1e-11);
    }
}

TEST(Precision, RefusesWhatHasNoFigures) {
    const struct {
        const char* name;
        void (*spoil)(CLeastSq& a);
        double sigma0;
    } rows[] = {{"not solved", [](CLeastSq& a) { a.InitBcor(); }, 1.0},
                {"failed", [](CLeastSq& a) { a.InitParameter(a.Bcor, kNaN); }, 1.0},
                {"changed since", [](CLeastSq& a) { a.Obeq[9] += 0.001; }, 1.0},
                {"infinite", [](CLeastSq& a) { a.SetWeight(2, kInfinity); }, 1.0},
                {"taken out by -1", [](CLeastSq& a) { a.SetWeight(2, -1.0); }, 1.0},
                {"f = 0",
                 [](CLeastSq& a) {
                     a.Weight[4] = a.Weight[5] = a.Weight[6] = 0.0;
                     EXPECT_EQ(a.Solve(), 1);
                 },
                 1.0},
                {"no unknowns", [](CLeastSq& a) { a.Create(0, 0); }, 1.0},
                {"cut off", [](CLeastSq& a) { a.Obeq.SetSize(9); }, 1.0},
                {"sigma0 of 0", [](CLeastSq&) {}, 0.0},
                {"sigma0 NaN", [](CLeastSq&) {}, kNaN}};
    for (const auto& row : rows) {
        Levelling levelling;
        CPrecision precision;
        double a = 5.0, b = 5.0, c = 5.0;
        ASSERT_EQ(precision.CalFigures(levelling, 1.0), 1);
        row.spoil(levelling);
        EXPECT_EQ(precision.CalFigures(levelling, row.sigma0), 0) << row.name;
        EXPECT_EQ(precision.equations.GetSize(), 0) << row.name;
        EXPECT_EQ(precision.TestGlobal(0.05, a, b), -1) << row.name;
        EXPECT_EQ(precision.CalEllipse(0, 1, 1.0, a, b, c), 0) << row.name;
        EXPECT_EQ(a, 5.0) << row.name;
    }
}

TEST(Precision, NoticesAChangedObservationAmongTenThousand) {
    CLeastSq northings(10000, 1);
    for (int k = 0; k < 10000; ++k)
        enter(northings, {{1.0, 5320000.0 + 0.001 * (k % 7)}});
    ASSERT_EQ(northings.Solve(), 1);
    CPrecision precision;
    EXPECT_EQ(precision.CalFigures(northings, 0.002), 1);
    northings.Obeq[1] += 2.0;
    EXPECT_EQ(precision.CalFigures(northings, 0.002), 0);
}

TEST(Precision, ControlEndsAtOneInAHundredMillion) {
    for (const double weight : {0.99e8, 1.01e8}) {  // r = 1 / (1 + weight)
        CLeastSq mean(2, 1);
        enter(mean, {{1.0, 10.0}}, weight);
        enter(mean, {{1.0, 11.0}});
        ASSERT_EQ(mean.Solve(), 1);
        CPrecision precision;
        ASSERT_EQ(precision.CalFigures(mean, 1.0), 1);
        EXPECT_EQ(precision.equations[0].controlled, weight < 1e8);
    }
}

TEST(Precision, WhatNothingControlsStaysSoWhenColumnsAreAlike) {
    CLeastSq twice(5, 3);  // two equations twice, the last once
    for (const double k : {0.0, 0.0, 1.0, 1.0, 2.0}) {
        std::vector<double> row;
        for (int i = 0; i < 3; ++i)
            row.push_back(std::sin(k + 1.0) + 1e-6 * std::cos(k * 5.0 + i * 3.0));
        row.push_back(k);
        enter(twice, {row});
    }
    ASSERT_EQ(twice.Solve(), 1);
    CPrecision precision;
    ASSERT_EQ(precision.CalFigures(twice, 1.0), 1);
    for (int k = 0; k < 4; ++k)
        EXPECT_NEAR(precision.equations[k].redundancy, 0.5, 1e-12);
    EXPECT_NEAR(precision.equations[4].redundancy, 0.0, 1e-14);
}

TEST(Precision, EllipseOfKnownAxes) {
    const struct {
        double angle, majorWeight, minorWeight, major, minor;
    } rows[] = {{0.0, 0.25, 1, 2, 1}, {0.3, 0.25, 1, 2, 1}, {1.5, 0.25, 1, 2, 1},
                {1.6, 0.25, 1, 2, 1}, {3.0, 0.25, 1, 2, 1}, {0.0, 1e-6, 1e12, 1000, 1e-6}};
    for (const auto& row : rows) {
        const double c = std::cos(row.angle), s = std::sin(row.angle);
        CLeastSq offsets(4, 3);
        enter(offsets, {{c, 0.0, s, 1.0}}, row.majorWeight);
        enter(offsets, {{-s, 0.0, c, 1.0}}, row.minorWeight);
        enter(offsets, {{0.0, 1.0, 0.0, 1.0}, {0.0, 1.0, 0.0, 3.0}});
        ASSERT_EQ(offsets.Solve(), 1);
        CPrecision precision;
        double major = 0.0, minor = 0.0, direction = 9.0;
        ASSERT_EQ(precision.CalFigures(offsets, 1.0), 1);
        ASSERT_EQ(precision.CalEllipse(0, 2, 3.0, major, minor, direction), 1);
        EXPECT_NEAR(major, 3.0 * row.major, 1e-14 * row.major);
        EXPECT_NEAR(minor, 3.0 * row.minor, 1e-14 * row.minor);
        EXPECT_NEAR(direction, row.angle, 1e-14);
        EXPECT_EQ(precision.CalEllipse(0, 3, 3.0, major, minor, direction), 0);
    }
}

void expectDefect(const CLeastSq& adjustment, int defect, const std::vector<int>& expected) {
    CArray<int, int> unknowns;
    EXPECT_EQ(CPrecision::CalDefect(adjustment, unknowns), defect);
    EXPECT_EQ(std::vector<int>(unknowns.GetData(), unknowns.GetData() + unknowns.GetSize()), expected);
}

TEST(Precision, NamesWhatTheEquationsDoNotDetermine) {
    Levelling levelling;
    expectDefect(levelling, 0, {});
    levelling.SetWeight(0, 0.0);
    EXPECT_EQ(levelling.Solve(), 0);
    expectDefect(levelling, 1, {0, 1, 2, 3});
    levelling.SetWeight(0, -1.0);
    expectDefect(levelling, -1, {});

    CLeastSq lines(3, 5);  // two separate lines, and a height that is observed
    enter(lines, {{1, 0, -1, 0, 0, 1}, {0, 1, 0, 0, 0, 2}, {0, 0, 0, 1, -1, 3}});
    EXPECT_EQ(lines.Solve(), 0);
    expectDefect(lines, 2, {0, 2, 3, 4});

    CLeastSq scales(4, 4);  // the last two only as u - 3 w
    for (const double k : {0.1, 0.7, 1.1, 1.9})
        enter(scales, {{3.0 - k * k, 1.0 + 1.0 / k, k, -3.0 * k, 1.0}});
    expectDefect(scales, 1, {2, 3});
}

TEST(Precision, ChiSquareFromPrint) {
    const struct {  // NIST/SEMATECH e-Handbook of Statistical Methods, 1.3.6.7.4
        int f;
        double probability, x;
    } rows[] = {{1, 0.95, 3.841},   {1, 0.999, 10.828}, {2, 0.95, 5.991},     {8, 0.025, 2.180},
                {8, 0.975, 17.535}, {10, 0.05, 3.940},  {100, 0.95, 124.342}, {100, 0.01, 70.065}};
    for (const auto& row : rows) {
        const double x = CPrecision::ChiSquareQuantile(row.probability, row.f);
        EXPECT_NEAR(x, row.x, 0.0005) << row.f;
        EXPECT_NEAR(CPrecision::ChiSquare(x, row.f), row.probability, 1e-14) << row.f;
    }
    for (const double x : {1e-9, 0.5, 2.0, 30.0, 70.0, 100.0}) {
        EXPECT_NEAR(CPrecision::ChiSquare(x, 2), -std::expm1(-0.5 * x), 1e-14) << x;
        EXPECT_NEAR(CPrecision::ChiSquare(x, 1), std::erf(std::sqrt(0.5 * x)), 1e-14) << x;
    }
    // The median after Wilson and Hilferty.
    EXPECT_NEAR(CPrecision::ChiSquareQuantile(0.5, 1000000), 1e6 * std::pow(1.0 - 2.0 / 9e6, 3.0), 1e-5);
    EXPECT_EQ(CPrecision::ChiSquare(kInfinity, 3), 1.0);
    for (const double probability : {0.0, 1.0, kNaN})
        EXPECT_TRUE(std::isnan(CPrecision::ChiSquareQuantile(probability, 3)));
    EXPECT_TRUE(std::isnan(CPrecision::ChiSquare(1.0, 0)));
}

}  // namespace
