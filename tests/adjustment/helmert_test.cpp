// CHelmert and CPlaneAffine.
#include <fieldscan/helmert.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <initializer_list>
#include <limits>
#include <string>

#include "tests/published/geoeasy.h"
#include "tests/published/ghilani.h"

namespace {

using Points = CArray<CXYZ, CXYZ&>;

void add(Points& points, const std::string& name, double x, double y) {
    CXYZ point(CString(name.c_str()), x, y, 7.0);
    points.Add(point);
}

// `count` named source points on a circle around (x, y), and what `to` makes of them.
template <class Fit>
int fitted(Fit& fit, int count, double x, double y, double radius,
           const std::function<CXYZ(double x, double y)>& to) {
    Points first, second;
    for (int i = 0; i < count; ++i) {
        const std::string name = "P" + std::to_string(i);
        const double sx = x + radius * std::cos(1.0 + i * 6.0 / count),
                     sy = y + radius * std::sin(1.0 + i * 6.0 / count);
        const CXYZ t = to(sx, sy);
        add(first, name, t.x, t.y);
        add(second, name, sx, sy);
    }
    EXPECT_EQ(fit.SetPoints(first, second), count);
    return fit.CalPara();
}

TEST(Helmert, PairsByName) {
    for (const int others : {0, 9, 100}) {  // few names are searched, more go through a table
        Points first, second;
        for (const char* name : {"C", "A", "missing", "B", "A", "\xC3\xA9", "liquid", "", "stations"})
            add(first, name, 1, 0);
        for (const char* name : {"A", "\xC3\xA9", "a", "B", "A", "C", "costarring", "liquid", "station", ""})
            add(second, name, second.GetSize(), 0);
        for (int i = 0; i < others; ++i)
            add(second, "station" + std::to_string(i % 50), second.GetSize(), 0);
        for (int i = 0; i < others; ++i)
            add(first, "station" + std::to_string(i), 1, 0);
        CHelmert helmert;
        const int counted = std::min(others, 50);
        ASSERT_EQ(helmert.SetPoints(first, second), 7 + counted);
        // Of doubles the first; costarring has the hash of liquid.
        const int partners[] = {5, 0, 3, 0, 1, 7, 9};
        for (int i = 0; i < 7 + counted; ++i)
            EXPECT_EQ(helmert.sourcePoints[i].x, i < 7 ? partners[i] : i + 3) << others;
        EXPECT_EQ(helmert.targetPoints[2].name, CString(u"B"));
        EXPECT_EQ(helmert.SetPoints(helmert.targetPoints, helmert.sourcePoints), 7 + counted)
            << "the outputs as inputs";
        EXPECT_EQ(helmert.SetPoints(Points(), second), 0);
        EXPECT_TRUE(helmert.targetPoints.IsEmpty());
        EXPECT_TRUE(helmert.sourcePoints.IsEmpty());
        EXPECT_EQ(helmert.CalPara(), 0);
    }
}

CXYZ same(double x, double y) { return CXYZ(x, y, 0); }

TEST(Helmert, TransformsNothingWithoutAFit) {
    CHelmert helmert;
    CXYZ out(1, 2, 3);
    EXPECT_EQ(helmert.Transform(CXYZ(4, 5, 6), out, 1), 0);
    EXPECT_EQ(helmert.RMS.x, -1.0);
    EXPECT_EQ(fitted(helmert, 1, 0, 0, 1, same), 0) << "one pair";
    EXPECT_EQ(helmert.CheckPairs(), -1);
}

TEST(Helmert, EqualPointsGiveTheIdentityExactly) {
    CHelmert helmert;
    ASSERT_EQ(fitted(helmert, 2, 0.3, 4e6, 7, same), 1);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(helmert.parameters[i], i == 0) << i;
    EXPECT_EQ(helmert.RMS.Len(), 0.0);
    EXPECT_EQ(helmert.maximum.Len(), 0.0);
    EXPECT_EQ(helmert.residuals[1].Len(), 0.0);
}

// A square turned by -90 degrees and doubled, its corners displaced by 3, -1, -1, -1 along x. About its
// middle: a = -200 / 20000, b = -2 + 200 / 20000; residuals -2, 1, 1, 0 along x and 0, -1, 1, 0 along y.
TEST(Helmert, FitsADisplacedSquareByHand) {
    Points first, second;
    const double dx[] = {-3, 1, 1, 1};
    for (int i = 0; i < 4; ++i) {
        add(second, std::to_string(i), i < 2 ? 0 : 100, i % 2 * 100);
        add(first, std::to_string(i), second[i].y * 2 + 10 - dx[i], -second[i].x * 2 + 20);
    }
    CHelmert helmert;
    ASSERT_EQ(helmert.SetPoints(first, second), 4);
    const CHelmert before(helmert);
    ASSERT_EQ(helmert.CalPara(), 1);
    EXPECT_TRUE(before.parameters.IsEmpty()) << "a copy is on its own";
    CHelmert copy;
    copy = helmert;
    EXPECT_NEAR(copy.parameters[0], -0.01, 1e-15);
    EXPECT_NEAR(copy.parameters[1], -1.99, 1e-15);
    EXPECT_NEAR(copy.parameters[2], 11.0, 1e-12);
    EXPECT_NEAR(copy.maximum.x, -2.0, 1e-12) << "keeps its sign";
    EXPECT_NEAR(std::fabs(copy.maximum.y), 1.0, 1e-12);
    EXPECT_NEAR(copy.RMS.x, std::sqrt(6.0 / 4.0), 1e-12);
    EXPECT_NEAR(copy.RMS.y, std::sqrt(2.0 / 4.0), 1e-12);
    EXPECT_EQ(copy.RMS.z, 0.0);
    EXPECT_EQ(copy.residuals[3].name, CString(u"3"));
    EXPECT_EQ(copy.residuals[3].z, 0.0);

    CXYZ out(0, 0, 3);
    ASSERT_EQ(copy.Transform(second[3], out, 1), 1);
    EXPECT_NEAR(out.x, first[3].x + copy.residuals[3].x, 1e-12);
    ASSERT_EQ(copy.Transform(out, out, 0), 1);
    EXPECT_LT(out.Len(CXYZ(100, 100, 3)), 1e-12) << "z is the caller's";
    copy.parameters[0] = copy.parameters[1] = 0.0;
    EXPECT_EQ(copy.Transform(out, out, 0), 0) << "all in one point";
    copy.Init();
    EXPECT_TRUE(copy.parameters.IsEmpty());
    EXPECT_TRUE(copy.residuals.IsEmpty());
    EXPECT_TRUE(copy.sourcePoints.IsEmpty());
    EXPECT_EQ(copy.CalPara(), 0);
    EXPECT_EQ(copy.RMS.x, -1.0);
    EXPECT_EQ(copy.RMS.y, -1.0);
}

TEST(Helmert, RefusesCoincidentPointsAndNoOthers) {
    for (const double at : {0.0, 1.0, 123.456, 500000.123, 4e6}) {
        for (const int count : {2, 3, 10, 100, 10000}) {
            CHelmert helmert;
            CPlaneAffine affine;
            const auto any = [](double x, double y) {
                return CXYZ(x - y * 2 + std::fmod(x * 1e5, 7.0), y + x * 2, 0);
            };
            for (const double apart : {0.0, 1.0, 0.01}) {
                const bool is = apart > 0.0;
                EXPECT_EQ(fitted(helmert, count, at, at * 8.3, apart, any), is) << at << ", " << count;
                EXPECT_EQ(helmert.parameters.IsEmpty(), !is);
                EXPECT_EQ(helmert.CheckPairs(), !is ? -2 : count == 2 ? 3 : 1) << at << ", " << count;
                EXPECT_EQ(fitted(affine, count, at, is ? at : at * 8.3, apart, any), is && count > 2)
                    << at << ", " << count;
                EXPECT_EQ(affine.CheckPairs(), count == 2 ? -1 : is ? 1 : -2) << at << ", " << count;
            }
        }
    }
    CPlaneAffine affine;
    Points line;
    for (int i = 0; i < 9; ++i)
        add(line, std::to_string(i), 1000.0 + i, 3e5 + 0.3 * i);
    EXPECT_EQ(affine.SetPoints(line, line), 9);
    EXPECT_EQ(affine.CalPara(), 0) << "on a line";
    EXPECT_EQ(affine.CheckPairs(), -3);
    affine.sourcePoints[3].x = std::numeric_limits<double>::infinity();
    EXPECT_EQ(affine.CheckPairs(), 0);
    CHelmert diagonal;
    for (const double x : {-1.0, 1.0}) {
        add(diagonal.sourcePoints, "", x, x);
        add(diagonal.targetPoints, "", x, x);
    }
    EXPECT_EQ(diagonal.CheckPairs(), 3);
}

// The first correction of the parameters is all but exact and says nothing about the next ones.
TEST(Helmert, RefinesUntilCorrectionsEnd) {
    Points first, second;
    add(first, "A", 4058462.1930, 5291878.7750);
    add(first, "B", 4058462.1900, 5291878.7780);
    add(second, "A", 4058461.993, 5291878.008);
    add(second, "B", 4058461.990, 5291878.011);
    CHelmert helmert;
    EXPECT_EQ(helmert.SetPoints(first, second), first.GetSize());
    ASSERT_EQ(helmert.CalPara(), 1);
    EXPECT_NEAR(helmert.parameters[3], 0.0413180001, 6e-11);
}

TEST(PlaneAffine, BothWays) {
    CPlaneAffine affine;
    const auto skewed = [](double x, double y) { return CXYZ(2 * x - y + 100, 0.5 * x + 3 * y - 7, 0); };
    EXPECT_EQ(fitted(affine, 2, 0, 0, 1, skewed), 0);
    ASSERT_EQ(fitted(affine, 5, 4, -3, 10, skewed), 1);
    const double expected[] = {2, -1, 0.5, 3, 100, -7};
    for (int i = 0; i < 6; ++i)
        EXPECT_NEAR(affine.parameters[i], expected[i], 1e-13) << i;
    EXPECT_LT(affine.RMS.x, 1e-13);
    EXPECT_LT(affine.RMS.y, 1e-13);
    const CPlaneAffine copy(affine);
    CXYZ point(11, 5, 9);
    ASSERT_EQ(copy.Transform(point, point, 1), 1);
    EXPECT_LT(point.Len(CXYZ(117, 13.5, 9)), 1e-12);
    ASSERT_EQ(copy.Transform(point, point, 0), 1);
    EXPECT_LT(point.Len(CXYZ(11, 5, 9)), 1e-12);
    affine.parameters[0] = affine.parameters[1] = affine.parameters[3] = 0.0;
    EXPECT_EQ(affine.Transform(point, point, 0), 0) << "flat";
    affine.Init();
    EXPECT_EQ(affine.Transform(point, point, 1), 0);
}

// Parameters to half a unit of the last digit that is printed, those of the translation to half a millimetre.
template <class Pairs>
void expectFit(CHelmert& helmert, const Pairs& pairs, const double* parameters, double ofTurn,
               double ofResiduals) {
    Points first, second;
    for (const auto& pair : pairs) {
        add(first, pair.name, pair.targetX, pair.targetY);
        add(second, pair.name, pair.x, pair.y);
    }
    EXPECT_EQ(helmert.SetPoints(first, second), first.GetSize());
    ASSERT_EQ(helmert.CalPara(), 1);
    for (int i = 0; i < 4; ++i)
        EXPECT_NEAR(helmert.parameters[i], parameters[i], i < 2 ? ofTurn : 0.0005) << i;
    for (int i = 0; i < helmert.residuals.GetSize(); ++i) {
        EXPECT_NEAR(helmert.residuals[i].x, pairs[i].vx, ofResiduals) << pairs[i].name;
        EXPECT_NEAR(helmert.residuals[i].y, pairs[i].vy, ofResiduals) << pairs[i].name;
    }
}

TEST(Helmert, ConformalTransformationOfATextbook) {
    CHelmert helmert;
    const double rounding = 5e-10;  // of coordinates of a million
    expectFit(helmert, ghilani::kPairs, ghilani::kConformal, 5e-6, rounding);
    EXPECT_NEAR(helmert.RMS.x, ghilani::kExactRms[0], rounding);
    EXPECT_NEAR(helmert.RMS.y, ghilani::kExactRms[1], rounding);
    EXPECT_NEAR(helmert.maximum.x, ghilani::kPairs[2].vx, rounding) << "keeps its sign";
    EXPECT_NEAR(helmert.maximum.y, ghilani::kPairs[2].vy, rounding);
}

TEST(Helmert, ExampleOfAProgramsManual) {
    CHelmert helmert;
    expectFit(helmert, geoeasy::kPairs, geoeasy::kConformal, 5e-10, 0.0005);
    for (const auto& point : geoeasy::kTransformed) {
        CXYZ transformed(point.x, point.y, 0);
        ASSERT_EQ(helmert.Transform(transformed, transformed, 1), 1);
        EXPECT_NEAR(transformed.x, point.targetX, 0.0007);
        EXPECT_NEAR(transformed.y, point.targetY, 0.0007);
    }
}

}  // namespace
