// Directions against outlines, and what is wrong with an outline.
#include <fieldscan/scan_area.h>
#include <fieldscan/survey.h>
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "tests/scanarea/scan_areas.h"

namespace {

using Numbers = CArray<double, double>;

double inTurn(double degrees) {
    CCalcXYZHV::Angle0To360(degrees);
    return degrees;
}

using Directions = std::vector<std::pair<double, double>>;

// An outline of (horizontal angle, elevation), turned.
CPolyline angleOutline(const Directions& directions, double turnedBy = 0) {
    CPolyline outline;
    for (const auto& [h, v] : directions)
        outline.AddVertex(CVertex(inTurn(h + turnedBy), inTurn(v), 0, 0));
    return outline;
}

TEST(OutlineTests, GiveTheSameAnswerAtEveryHeading) {
    for (int heading = 0; heading < 360; ++heading) {
        const CPolyline outline = angleOutline({{-10, -5}, {10, -5}, {12, 8}, {0, 3}, {-8, 8}}, heading);
        const double rows[][3] = {{-5, 4.5, 1}, {0, 5, 0}, {-11, 0, 0}, {13, 0, 0}, {180, 0, 0}};
        for (const auto& [h, v, inside] : rows)
            EXPECT_EQ(CCalcXYZHV::IsPolyInside(outline, inTurn(h + heading), inTurn(v)), inside)
                << heading << ": " << h;
        double left, right, top, bottom;
        EXPECT_EQ(CCalcXYZHV::GetAngleRange(outline, left, right, top, bottom), 1);
        EXPECT_NEAR(CCalcXYZHV::AngleDifference(heading, left), -10, 1e-9) << heading;
        EXPECT_NEAR(CCalcXYZHV::AngleDifference(heading, right), 12, 1e-9) << heading;
    }
    EXPECT_EQ(CCalcXYZHV::IsPolyInside(CPolyline(), 0, 0), 0);
    const CPolyline halfTurn = angleOutline({{180, -5}, {0, -5}, {90, 8}, {300, 8}});
    EXPECT_EQ(CCalcXYZHV::IsPolyInside(halfTurn, 20, 0), 1) << "half a turn back crosses zero";
    EXPECT_EQ(CCalcXYZHV::IsPolyInside(angleOutline({{0, 0}, {1, 0}, {1, 1}}), std::nan(""), 0), 0);
    double left, right, top, bottom;
    EXPECT_EQ(CCalcXYZHV::GetAngleRange(angleOutline({{20, 30}, {40, 10}}), left, right, top, bottom), 1);
    EXPECT_NEAR(top, 30, 1e-12);
    EXPECT_NEAR(bottom, 10, 1e-12);
}

// A star-shaped outline has what is between its middle and an edge inside, and what is beyond the edge
// outside.
TEST(OutlineTests, AcceptTheInteriorOfAnyOutline) {
    std::mt19937_64 random(16);
    const auto between = [&](double a, double b) {
        return std::uniform_real_distribution<double>(a, b)(random);
    };
    for (int round = 0; round < 3000; ++round) {
        const std::size_t n = static_cast<std::size_t>(4 + random() % 197);
        const bool whole = round % 2 != 0;  // whole degrees, as an operator types them
        const double h = whole ? std::floor(between(0, 360)) : between(0, 360), v = between(-40, 40);
        Directions places;
        CScanArea area;
        for (std::size_t i = 0; i < n; ++i) {
            const double radius = between(5, 45),
                         angle = 2 * kPi / static_cast<double>(n) * static_cast<double>(i);
            const double x = h + radius * std::cos(angle), y = v + radius * std::sin(angle);
            places.emplace_back(whole && n < 9 ? std::round(x) : x, y);
            addDirection(area.outlineAngles, inTurn(places[i].first), 90 - y);
        }
        area.CalHVPolyline2();
        const CPolyline outline = round % 3 ? angleOutline(places) : area.outlinePolyline;  // through radians
        for (int k = 0; k < 8; ++k) {
            const std::size_t i = static_cast<std::size_t>(random() % n);
            const auto [px, py] = places[i];
            const auto [qx, qy] = places[(i + 1) % n];
            const double along = between(0, 1), outward = k % 4 ? between(0, 0.999) : between(1.001, 1.2);
            const double x = h + outward * (px + along * (qx - px) - h);
            const double y = v + outward * (py + along * (qy - py) - v);
            ASSERT_EQ(CCalcXYZHV::IsPolyInside(outline, inTurn(x), inTurn(y)), k % 4 != 0) << round;
        }
    }
}

TEST(OutlineTests, GiveTheSameAnswerInLists) {
    std::mt19937 random(6);
    const double unusual[] = {NAN, INFINITY, -INFINITY, -0.0, 1e-16, 360.0, -725.0, 30000.0};
    for (int round = 0; round < 6000; ++round) {
        const int middle = static_cast<int>(random() % 8) * 45;
        const unsigned width = round % 3 == 0 ? 360 : 80;  // up to full of wraps, in any order
        const auto angle = [&](int around) {
            const int value = static_cast<int>(random() % 300);
            const unsigned steps = round % 2 ? width / 5 : width * 100;  // few, so that points meet edges
            const double degrees =
                around + width * (static_cast<double>(random() % (steps + 1)) / steps - 0.5);
            return value < 8 && round % 5 == 0 ? unusual[value] : round % 4 ? inTurn(degrees) : degrees;
        };
        CPolyline outline;
        for (int i = round % 30 + 1; i > 0; --i)
            outline.AddVertex(CVertex(angle(middle), angle(0), 0, 0));
        Numbers h, v;
        for (int i = 0; i < 20; ++i) {
            h.Add(angle(middle));
            v.Add(angle(i % 4 == 3 ? 180 : 0));  // the opposite elevation passes edges too
        }
        CArray<int, int> inside;
        ASSERT_EQ(CCalcXYZHV::IsPolyInside(outline, h, v, inside), 1);
        for (int i = 0; i < 20; ++i)
            ASSERT_EQ(inside[i], CCalcXYZHV::IsPolyInside(outline, h[i], v[i])) << round << " " << h[i];
    }
}

TEST(OutlineTests, RefuseListsOfUnequalLengths) {
    Numbers two, one;
    two.SetSize(2);
    one.SetSize(1);
    CArray<int, int> inside;
    inside.SetSize(5);
    EXPECT_EQ(CCalcXYZHV::IsPolyInside(CPolyline(), two, one, inside), 0);
    EXPECT_TRUE(inside.IsEmpty());
    inside.SetSize(5);
    EXPECT_EQ(CPolyline().PtInPolyline(one, two, inside), 0);
    EXPECT_TRUE(inside.IsEmpty());
}

TEST(OutlineTests, PassAStarOfManyEdgesUntilTwoOfItsRaysAreExchanged) {
    for (int heading = 0; heading < 360; heading += 7) {
        CScanArea star;
        for (int i = 0; i < 200; ++i) {
            const double radius = i % 2 ? 40 : 20 + i % 7, angle = i * kPi / 100;
            addDirection(star.outlineAngles, inTurn(heading + radius * std::cos(angle)),
                         90 - radius * std::sin(angle));
        }
        EXPECT_EQ(star.CheckOutline(), 1) << heading;
        std::swap(star.outlineAngles[31], star.outlineAngles[33]);
        EXPECT_EQ(star.CheckOutline(), -4) << heading;
    }
}

// ---- CheckOutline ----

CScanArea outlineOf(const Directions& directions, double turnedBy) {
    CScanArea area;
    for (const auto& [horizontal, zenith] : directions)
        addDirection(area.outlineAngles, inTurn(horizontal + turnedBy), zenith);
    return area;
}

TEST(Outline, IsCheckedAtEveryHeading) {
    const auto around = [](double right) -> Directions {
        return {{0, 80}, {120, 80}, {240, 80}, {right, 80}, {right, 100}, {240, 100}, {120, 100}, {0, 100}};
    };
    const std::tuple<const char*, int, int, Directions> rows[] = {
        {"nothing", -1, -1, {}},
        {"a line", -1, -1, {{0, 80}, {10, 90}}},
        {"a line there and back", -1, -1, {{0, 80}, {0, 80}, {10, 90}}},
        {"a triangle", 1, -1, {{0, 80}, {10, 90}, {0, 100}}},
        {"the first vertex again", 1, -1, {{0, 80}, {10, 90}, {0, 100}, {0, 80}}},
        {"infinity", -2, 1, {{0, 80}, {10, INFINITY}, {0, 100}}},
        {"half a turn", -3, 2, {{0, 80}, {90, 80}, {90, 100}, {-90, 100}}},
        {"long edges", 1, -1, {{0, 80}, {179, 80}, {179, 100}, {0, 100}}},
        {"a wide area", 1, -1, around(359)},
        {"all round", -3, 2, around(360)},
        {"a bow tie", -4, 0, {{0, 80}, {10, 100}, {10, 80}, {0, 100}}},
        {"crossed by the last edge", -4, 0, {{0, 80}, {10, 80}, {10, 100}, {5, 70}}},
        {"a vertex on an edge", 1, -1, {{0, 80}, {10, 80}, {10, 100}, {5, 80}, {0, 100}}},
        {"a vertex beyond an edge", -4, 0, {{0, 80}, {10, 80}, {10, 100}, {5, 79.9999}, {0, 100}}},
        {"a vertex twice", 1, -1, {{0, 80}, {10, 80}, {5, 90}, {10, 100}, {0, 100}, {5, 90}}},
        {"a way to a hole and back",
         1,
         -1,
         {{0, 80}, {10, 80}, {10, 100}, {6, 92}, {6, 88}, {4, 90}, {6, 92}, {10, 100}, {0, 100}}},
        {"a spike", 1, -1, {{0, 80}, {10, 80}, {20, 80}, {10, 80}, {5, 100}}}};
    for (int heading = 0; heading < 360; ++heading) {
        for (const auto& [what, code, wrong, directions] : rows) {
            int edge = 99;
            EXPECT_EQ(outlineOf(directions, heading).CheckOutline(&edge), code) << what << " " << heading;
            EXPECT_EQ(edge, wrong) << what << " " << heading;
        }
        // Where the edges do not close, the one that wraps depends on the heading.
        EXPECT_EQ(outlineOf({{0, 80}, {100, 90}, {200, 80}}, heading).CheckOutline(), -3) << heading;
    }
    int edge;
    EXPECT_EQ(outlineOf({{0, 80}, {100, 90}, {200, 80}}, 0).CheckOutline(&edge), -3);
    EXPECT_EQ(edge, 2) << "200 degrees to 0";
}

}  // namespace
