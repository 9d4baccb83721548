// CPrecision against networks from print and against leaving equations out; CheckPairs.
#include <fieldscan/helmert.h>
#include <fieldscan/precision.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace {

using Row = std::vector<double>;  // the coefficients, then the observation

constexpr double kMost = std::numeric_limits<double>::max(), kNaN = std::numeric_limits<double>::quiet_NaN();

void enter(CLeastSq& adjustment, const Row& row, double weight = 1.0) {
    for (std::size_t column = 0; column < row.size(); ++column)
        adjustment.SetObeq(static_cast<int>(column), row[column]);
    adjustment.SetWeight(weight);
}

// Observation of equation k less what the unknowns make it.
double misclosure(const CLeastSq& adjustment, int k) {
    const int n = adjustment.parameterNumber;
    double v = adjustment.Obeq[k * (n + 1) + n];
    for (int i = 0; i < n; ++i)
        v -= adjustment.Obeq[k * (n + 1) + i] * adjustment.Bcor[i];
    return v;
}

// Ghilani, Adjustment Computations, chapter 12: six lines between a bench mark (0) and B, C, D. Redundancy
// numbers in units of 1 / 130849 by elimination in fractions.
const struct Line {
    int from, to;
    double difference, deviation, redundancy;
} kLines[] = {{0, 1, 10.509, 0.006, 85689}, {1, 2, 5.360, 0.004, 43108},  {2, 3, -8.523, 0.005, 66625},
              {3, 0, -7.348, 0.003, 24561}, {1, 3, -3.167, 0.004, 56608}, {0, 2, 15.881, 0.012, 115956}};

void enterLines(CLeastSq& levelling, int withBlunder = -1, double blunder = 0.0) {
    for (int k = 0; k < 6; ++k) {
        const Line& line = kLines[k];
        const double heights[] = {437.596, 0.0, 0.0, 0.0};
        Row row(4, 0.0);
        row[3] = line.difference + (k == withBlunder ? blunder : 0.0) + heights[line.from] - heights[line.to];
        if (line.to > 0)
            row[static_cast<std::size_t>(line.to - 1)] = 1.0;
        if (line.from > 0)
            row[static_cast<std::size_t>(line.from - 1)] = -1.0;
        enter(levelling, row, 1.0 / (line.deviation * line.deviation));
    }
}

TEST(Precision, LevellingNetworkFromPrint) {
    CLeastSq levelling(6, 3);
    enterLines(levelling);
    ASSERT_EQ(levelling.Solve(), 1);
    CPrecision precision;
    ASSERT_EQ(precision.CalFigures(levelling, 1.0), 1);
    const double heights[] = {448.1087, 453.4685, 444.9436};
    for (int i = 0; i < 3; ++i) {
        EXPECT_NEAR(levelling.GetBcor(i), heights[i], 0.00005);
        EXPECT_NEAR(precision.cofactors[i * 3 + 2], levelling.GetCovar(i, 2), 1e-19);
    }
    EXPECT_EQ(precision.degreesOfFreedom, 3);
    EXPECT_NEAR(precision.estimatedSigma0, std::sqrt(levelling.CalSigma2()), 1e-14);
    for (int k = 0; k < 6; ++k) {
        const CEquationPrecision& equation = precision.equations[k];
        const double r = kLines[k].redundancy / 130849.0, deviation = kLines[k].deviation;
        EXPECT_NEAR(equation.redundancy, r, 1e-14);
        EXPECT_NEAR(equation.residual, misclosure(levelling, k), 1e-12);
        EXPECT_NEAR(equation.standardized, equation.residual / (deviation * std::sqrt(r)), 1e-10);
        EXPECT_NEAR(equation.tau, equation.standardized / precision.estimatedSigma0, 1e-12);
        EXPECT_NEAR(equation.detectable, 4.13 * deviation / std::sqrt(r), 1e-14);
        EXPECT_EQ(equation.controlled, 1);
    }
}

TEST(Precision, FindsTheBlunderInTheLevellingNetwork) {
    for (int k = 0; k < 6; ++k) {
        const double blunder = -15.0 * kLines[k].deviation / std::sqrt(kLines[k].redundancy / 130849.0);
        CLeastSq levelling(6, 3);
        enterLines(levelling, k, blunder);
        ASSERT_EQ(levelling.Solve(), 1);
        levelling.SetSigma(levelling.CalSigma2());
        levelling.CalVarianceOfEstimate();
        CPrecision precision;
        double lower = 0.0, upper = 0.0;
        ASSERT_EQ(precision.CalFigures(levelling, 1.0), 1);
        EXPECT_EQ(precision.largest, k);
        EXPECT_EQ(precision.TestGlobal(0.05, lower, upper), 0) << "equation " << k;
        EXPECT_NEAR(lower, 0.216, 0.0005);
        EXPECT_NEAR(upper, 9.348, 0.0005);
        const double estimate = precision.equations[k].residual / precision.equations[k].redundancy;
        EXPECT_NEAR(estimate, blunder,
                    3.0 * kLines[k].deviation / std::sqrt(kLines[k].redundancy / 130849.0));

        levelling.SetWeight(k, 0.0);
        ASSERT_EQ(levelling.Solve(), 1);
        EXPECT_NEAR(misclosure(levelling, k), estimate, 1e-11) << "against the adjustment without it";
        ASSERT_EQ(precision.CalFigures(levelling, 1.0), 1);
        EXPECT_EQ(precision.TestGlobal(0.05, lower, upper), 1);
        EXPECT_EQ(precision.degreesOfFreedom, 2);
        EXPECT_EQ(precision.equations[k].redundancy, 0.0);
        EXPECT_EQ(precision.equations[k].controlled, 0);
        EXPECT_NEAR(precision.equations[k].residual, estimate, 1e-11);
    }
}

// Niemeier, Ausgleichungsrechnung, 2nd edition 2008, pp. 156-162 and 278-281: directions (1.62") and
// distances (5 mm) from Z108 (0) and Z110 (1), published coordinates and deviations. `adjusted`: deviations
// of the adjusted observations by GNU Gama 2.33, " and mm, from its m0.
const double kPlaces[][2] = {{27816.1166, 40759.3769}, {27904.0042, 41373.0193}, {26816.143, 40686.792},
                             {28872.552, 41932.838},   {27492.007, 42242.231},   {28835.979, 40350.846}};
const struct Sight {
    int from, to;
    double observed, adjusted;
} kDirections[] = {{0, 5, 333.57996, 1.137018412761102},  {0, 2, 179.56179, 1.0711446183214422},
                   {0, 4, 97.73946, 0.97151128402640736}, {1, 3, 31.87314, 1.0696342654471583},
                   {1, 0, 263.69487, 1.2298110426024194}, {1, 2, 214.08867, 0.92208651419687237},
                   {1, 4, 117.20502, 1.0019098324719809}},
  kDistances[] = {{0, 5, 1098.643, 2.8863818436772855}, {0, 2, 1002.598, 3.0395083296173819},
                  {0, 4, 1517.862, 3.0404760572951854}, {1, 3, 1118.689, 2.754384991457925},
                  {1, 0, 619.905, 3.5291105572210917},  {1, 2, 1286.215, 2.7545225838719274},
                  {1, 4, 961.911, 3.2316099346830556}};

// Unknowns: x, y of Z108 and Z110 in mm, the orientations in seconds. Linearised at the published places.
void enterSight(CLeastSq& plane, const Sight& sight, bool isDirection, double blunder) {
    constexpr double kDegree = 57.29577951308232;
    const double dx = kPlaces[sight.to][0] - kPlaces[sight.from][0];
    const double dy = kPlaces[sight.to][1] - kPlaces[sight.from][1], s = std::hypot(dx, dy);
    const double perMm = isDirection ? 3.6 * kDegree / s : 1.0;
    const double alongX = perMm * (isDirection ? -dy : dx) / s, alongY = perMm * (isDirection ? dx : dy) / s;
    Row row(7, 0.0);
    double* const at = row.data();
    for (const int end : {0, 1}) {
        const int point = end ? sight.to : sight.from;
        if (point < 2) {
            at[2 * point] += end ? alongX : -alongX;
            at[2 * point + 1] += end ? alongY : -alongY;
        }
    }
    if (isDirection) {
        const double orientations[] = {4.5903, 358.1546};
        at[4 + sight.from] = -1.0;
        const double angle = sight.observed + orientations[sight.from] - std::atan2(dy, dx) * kDegree;
        at[6] = std::remainder(angle, 360.0) * 3600.0 + blunder;
    } else {
        at[6] = (sight.observed - s) * 1000.0 + blunder;
    }
    enter(plane, row, isDirection ? 1.0 / (1.62 * 1.62) : 0.04);
}

void enterPlane(CLeastSq& plane, double blunderOfSecondDistance) {
    for (const Sight& direction : kDirections)
        enterSight(plane, direction, true, 0.0);
    for (int k = 0; k < 7; ++k)
        enterSight(plane, kDistances[k], false, k == 1 ? blunderOfSecondDistance : 0.0);
}

TEST(Precision, PlaneNetworkFromPrint) {
    CLeastSq plane(14, 6);
    enterPlane(plane, 0.0);
    ASSERT_EQ(plane.Solve(), 1);
    CPrecision precision;
    ASSERT_EQ(precision.CalFigures(plane, 1.0), 1);
    EXPECT_EQ(precision.degreesOfFreedom, 8);
    EXPECT_NEAR(precision.sumOfSquares, 7.4714807, 1e-5);
    const double deviations[] = {3.01, 3.13, 2.89, 3.12};
    for (int i = 0; i < 4; ++i)
        EXPECT_NEAR(precision.estimatedSigma0 * std::sqrt(precision.cofactors[i * 7]), deviations[i], 0.005);
    for (int k = 0; k < 14; ++k) {
        const double part = k < 7 ? kDirections[k].adjusted / 1.62 : kDistances[k - 7].adjusted / 5.0;
        EXPECT_NEAR(precision.equations[k].redundancy, 1.0 - part * part / 0.93393509, 1e-5) << k;
    }
    const CEquationPrecision before = precision.equations[8];

    CLeastSq wrong(14, 6);
    enterPlane(wrong, 50.0);
    ASSERT_EQ(wrong.Solve(), 1);
    ASSERT_EQ(precision.CalFigures(wrong, 1.0), 1);
    const CEquationPrecision& found = precision.equations[8];
    EXPECT_EQ(precision.largest, 8);
    EXPECT_GT(found.standardized, 3.29);
    EXPECT_GT(50.0, found.detectable);
    EXPECT_NEAR((found.residual - before.residual) / found.redundancy, 50.0, 1e-9);
}

TEST(Precision, SaysWhatIsNotControlled) {
    CLeastSq levelling(4, 2);  // two heights, the second by a single line
    for (const double height : {10.001, 10.002, 10.004})
        enter(levelling, {1.0, 0.0, height});
    enter(levelling, {-1.0, 1.0, 900.0});
    ASSERT_EQ(levelling.Solve(), 1);
    CPrecision precision;
    ASSERT_EQ(precision.CalFigures(levelling, 0.001), 1);
    const CEquationPrecision& spur = precision.equations[3];
    EXPECT_NEAR(spur.redundancy, 0.0, 1e-15);
    EXPECT_EQ(spur.controlled, 0);
    EXPECT_EQ(spur.standardized, 0.0);
    EXPECT_EQ(spur.detectable, kMost);
    EXPECT_EQ(precision.largest, 2);

    // A weight p makes r = 1 / (1 + p) against a weight of 1.
    for (const double weight : {0.99e8, 1.01e8}) {
        CLeastSq heavy(2, 1);
        enter(heavy, {1.0, 10.0}, weight);
        enter(heavy, {1.0, 11.0});
        ASSERT_EQ(heavy.Solve(), 1);
        ASSERT_EQ(precision.CalFigures(heavy, 1.0), 1);
        EXPECT_EQ(precision.equations[0].controlled, weight < 1e8);
    }
}

TEST(Precision, RefusesWhatHasNoFigures) {
    const struct {
        const char* name;
        void (*spoil)(CLeastSq& levelling);
        double sigma0;
    } rows[] = {{"not solved", [](CLeastSq& a) { a.InitBcor(); }, 1.0},
                {"failed", [](CLeastSq& a) { a.InitParameter(a.Bcor, kNaN); }, 1.0},
                {"changed since", [](CLeastSq& a) { a.Obeq[3] += 0.001; }, 1.0},
                {"another equation",
                 [](CLeastSq& a) {
                     enter(a, {1.0, 0.0, 0.0, 448.2});
                 },
                 1.0},
                {"infinite", [](CLeastSq& a) { a.SetWeight(2, 1.0 / 0.0); }, 1.0},
                {"taken out by -1", [](CLeastSq& a) { a.SetWeight(2, -1.0); }, 1.0},
                {"nothing redundant",
                 [](CLeastSq& a) {
                     for (int k : {0, 1, 2})
                         a.SetWeight(k, 0.0);
                     a.Solve();
                 },
                 1.0},
                {"no unknowns", [](CLeastSq& a) { a.Create(0, 0); }, 1.0},
                {"cut off", [](CLeastSq& a) { a.Obeq.SetSize(7); }, 1.0},
                {"sigma0 of 0", [](CLeastSq&) {}, 0.0},
                {"sigma0 is NaN", [](CLeastSq&) {}, kNaN}};
    for (const auto& row : rows) {
        CLeastSq levelling(6, 3);
        enterLines(levelling);
        CPrecision precision;
        double lower = 5.0, upper = 5.0, direction = 5.0;
        ASSERT_EQ(levelling.Solve(), 1);
        ASSERT_EQ(precision.CalFigures(levelling, 1.0), 1);
        row.spoil(levelling);
        EXPECT_EQ(precision.CalFigures(levelling, row.sigma0), 0) << row.name;
        EXPECT_EQ(precision.equations.GetSize(), 0) << row.name;
        EXPECT_EQ(precision.largest, -1) << row.name;
        EXPECT_EQ(precision.TestGlobal(0.05, lower, upper), -1) << row.name;
        EXPECT_EQ(precision.CalEllipse(0, 1, 1.0, lower, upper, direction), 0) << row.name;
        EXPECT_EQ(lower, 5.0) << row.name;
    }
}

TEST(Precision, EllipseOfKnownAxes) {
    // Two offsets with deviations 2 and 1 along a direction and across it; a third unknown between.
    for (const double angle : {0.0, 0.3, 1.5, 1.6, 3.0}) {
        const double c = std::cos(angle), s = std::sin(angle);
        CLeastSq offsets(4, 3);
        enter(offsets, {c, 0.0, s, 1.0}, 0.25);
        enter(offsets, {-s, 0.0, c, 1.0});
        enter(offsets, {0.0, 1.0, 0.0, 1.0});
        enter(offsets, {0.0, 1.0, 0.0, 3.0});
        ASSERT_EQ(offsets.Solve(), 1);
        CPrecision precision;
        double major = 0.0, minor = 0.0, direction = 9.0;
        ASSERT_EQ(precision.CalFigures(offsets, 1.0), 1);
        ASSERT_EQ(precision.CalEllipse(0, 2, 3.0, major, minor, direction), 1);
        EXPECT_NEAR(major, 6.0, 1e-14);
        EXPECT_NEAR(minor, 3.0, 1e-14);
        EXPECT_NEAR(direction, angle, 1e-14);
        ASSERT_EQ(precision.CalEllipse(2, 0, 3.0, major, minor, direction), 1);
        EXPECT_NEAR(std::fabs(std::remainder(direction + angle, 3.141592653589793)), 1.5707963267948966,
                    1e-14);
        EXPECT_EQ(precision.CalEllipse(0, 3, 1.0, major, minor, direction), 0);
    }
}

std::vector<int> undetermined(const CLeastSq& adjustment, int& defect) {
    CArray<int, int> unknowns;
    defect = CPrecision::CalDefect(adjustment, unknowns);
    return std::vector<int>(unknowns.GetData(), unknowns.GetData() + unknowns.GetSize());
}

TEST(Precision, NamesWhatTheEquationsDoNotDetermine) {
    int defect = 9;
    CLeastSq levelling(0, 4), plane(13, 6), coincident(4, 4), distances(5, 8);
    for (const Line& line : kLines) {  // the bench mark unknown too
        Row row(5, 0.0);
        row[static_cast<std::size_t>(line.from)] = -1.0;
        row[static_cast<std::size_t>(line.to)] = 1.0;
        enter(levelling, row, 1.0 / (line.deviation * line.deviation));
    }
    EXPECT_EQ(levelling.Solve(), 0);
    EXPECT_EQ(undetermined(levelling, defect), (std::vector<int>{0, 1, 2, 3}));
    EXPECT_EQ(defect, 1);
    enter(levelling, {0.0, 1.0, 0.0, 0.0, 448.0});
    EXPECT_EQ(undetermined(levelling, defect), std::vector<int>());
    EXPECT_EQ(defect, 0);
    levelling.SetWeight(-1.0);
    undetermined(levelling, defect);
    EXPECT_EQ(defect, -1);

    for (int k = 0; k < 3; ++k)  // Z108 is determined; Z110 has a direction to a fixed point, and that is all
        for (const Sight* sights : {kDirections, kDistances})
            enterSight(plane, sights[k], sights == kDirections, 0.0);
    enterSight(plane, kDirections[3], true, 0.0);
    EXPECT_EQ(plane.Solve(), 0);
    EXPECT_EQ(undetermined(plane, defect), (std::vector<int>{2, 3, 5}));
    EXPECT_EQ(defect, 2);

    for (int k = 0; k < 4; ++k)  // a similarity of coincident points, half of it known beforehand
        enter(coincident,
              k % 2 ? Row{5000000.3, 400000.7, 0.0, 1.0, 1.0} : Row{400000.7, -5000000.3, 1.0, 0.0, 2.0});
    EXPECT_EQ(undetermined(coincident, defect), (std::vector<int>{0, 1, 2, 3}));
    EXPECT_EQ(defect, 2);
    enter(coincident, {1.0, 0.0, 0.0, 0.0, 1.0});
    EXPECT_EQ(undetermined(coincident, defect), (std::vector<int>{1, 2, 3}));
    EXPECT_EQ(defect, 1);
}

TEST(Precision, ChiSquareFromPrint) {
    // NIST/SEMATECH e-Handbook of Statistical Methods, 1.3.6.7.4.
    const struct {
        int f;
        double probability, x, unit;
    } rows[] = {{1, 0.95, 3.841, 1e-3},  {1, 0.999, 10.828, 1e-3},   {2, 0.95, 5.991, 1e-3},
                {8, 0.025, 2.180, 1e-3}, {8, 0.975, 17.535, 1e-3},   {10, 0.05, 3.940, 1e-3},
                {1, 0.1, 0.016, 1e-3},   {100, 0.95, 124.342, 1e-3}, {100, 0.01, 70.065, 1e-3}};
    for (const auto& row : rows) {
        const double x = CPrecision::ChiSquareQuantile(row.probability, row.f);
        EXPECT_NEAR(x, row.x, 0.5 * row.unit) << row.f;
        EXPECT_NEAR(CPrecision::ChiSquare(x, row.f), row.probability, 1e-14) << row.f;
    }
    for (const double x : {1e-9, 0.5, 2.0, 30.0, 70.0}) {
        EXPECT_NEAR(CPrecision::ChiSquare(x, 2), -std::expm1(-0.5 * x), 1e-14) << x;
        EXPECT_NEAR(CPrecision::ChiSquare(x, 1), std::erf(std::sqrt(0.5 * x)), 1e-14) << x;
    }
    // Wilson and Hilferty's approximation; at its median all but exact.
    EXPECT_NEAR(CPrecision::ChiSquareQuantile(0.5, 1000000), 1e6 * std::pow(1.0 - 2.0 / 9e6, 3.0), 1e-5);
    EXPECT_EQ(CPrecision::ChiSquare(0.0, 3), 0.0);
    EXPECT_EQ(CPrecision::ChiSquare(1.0 / 0.0, 3), 1.0);
    for (const double probability : {0.0, 1.0, -0.5, kNaN})
        EXPECT_TRUE(std::isnan(CPrecision::ChiSquareQuantile(probability, 3)));
    EXPECT_TRUE(std::isnan(CPrecision::ChiSquare(1.0, 0)));
}

TEST(CheckPairs, TellsWhyAFitFails) {
    const double at[] = {0.0, 123.456, 4e6}, inf = 1.0 / 0.0;
    for (const double x : at) {
        const struct {
            const char* name;
            std::vector<std::pair<double, double>> places;
            int helmert, affine;
        } rows[] = {{"none", {}, -1, -1},
                    {"one", {{0, 0}}, -1, -1},
                    {"two", {{0, 0}, {0, 0.01}}, 3, -1},
                    {"the same twice", {{5, 5}, {5, 5}}, -2, -1},
                    {"coincident", {{5, 5}, {5, 5}, {5, 5}}, -2, -2},
                    {"on a line", {{0, 1}, {100, 31}, {200, 61}, {1000, 301}}, 3, -3},
                    {"spread", {{0, 0}, {1, 0}, {0, 0.01}}, 1, 1},
                    {"infinite", {{0, 0}, {inf, 1}, {2, 0}}, 0, 0}};
        for (const auto& row : rows) {
            CHelmert helmert;
            CPlaneAffine affine;
            CArray<CXYZ, CXYZ&> points;
            for (const auto& place : row.places) {
                CXYZ point(CString(static_cast<unsigned short>('A' + points.GetSize())), x + place.first,
                           0.3 * x + place.second, 0.0);
                points.Add(point);
            }
            helmert.SetPoints(points, points);
            affine.SetPoints(points, points);
            EXPECT_EQ(helmert.CheckPairs(), row.helmert) << row.name << " at " << x;
            EXPECT_EQ(affine.CheckPairs(), row.affine) << row.name << " at " << x;
            EXPECT_EQ(helmert.CalPara(), row.helmert > 0) << row.name << " at " << x;
            EXPECT_EQ(affine.CalPara(), row.affine > 0) << row.name << " at " << x;
        }
    }
}

}  // namespace
