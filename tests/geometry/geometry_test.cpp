// Points, attitude angles, rotation matrices.
#include <fieldscan/attitude.h>
#include <fieldscan/points.h>
#include <fieldscan/rotation.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <random>
#include <tuple>
#include <utility>
#include <vector>

#include "tests/print_text.h"

namespace {

const double kPi = 3.141592653589793;

CXYZ station() {
    CXYZ point(u"ST1", 6, 5, 8);
    point.code = u"NAIL";
    point.attr[4] = 7;
    return point;
}

using Three = std::array<double, 3>;

Three of(const CXYZ& point) { return {point.x, point.y, point.z}; }
Three of(const CWPK& angles) { return {angles.omega, angles.phi, angles.kappa}; }

double apart(const CWPK& a, const CWPK& b) {
    return std::fabs(a.omega - b.omega) + std::fabs(a.phi - b.phi) + std::fabs(a.kappa - b.kappa);
}

// With the name, code and attributes of station(), or without any.
void expectPoint(const CXYZ& point, Three values, bool named) {
    EXPECT_EQ(of(point), values);
    EXPECT_EQ(point.name, CString(named ? u"ST1" : u""));
    EXPECT_EQ(point.code, CString(named ? u"NAIL" : u""));
    EXPECT_EQ(point.attr[4], named ? 7 : 0);
}

TEST(Points, OperatorsKeepOrDropTheName) {
    const CXYZ a = station(), b(2, 0, 4);
    const std::tuple<CXYZ, Three, bool> rows[] = {
        {+a, {6, 5, 8}, true},           {-a, {-6, -5, -8}, true},      {a + b, {8, 5, 12}, true},
        {a - b, {4, 5, 4}, true},        {a * b, {12, 0, 32}, true},    {a * 2.0, {12, 10, 16}, true},
        {a / b, {3, 0, 2}, false},       {a / 2.0, {3, 2.5, 4}, false}, {a / 0.0, {0, 0, 0}, false},
        {a.Out(b), {20, -8, -10}, false}};
    for (const auto& [result, values, named] : rows)
        expectPoint(result, values, named);
    EXPECT_EQ((CXYZ(1, 1, 1) / 49.0).x, 1.0 / 49.0 * 1.0);
    EXPECT_EQ((CXYZ(49, 49, 49) / 49.0).x, 49 * (1.0 / 49.0)) << "by the reciprocal, which is not 1";

    CXYZ c = a;
    c += b;
    expectPoint(c, {8, 5, 12}, true);
    c -= b;
    c *= b;
    expectPoint(c, {12, 0, 32}, true);
    c = a;
    c /= b;
    c /= 0.0;
    expectPoint(c, {3, 5, 2}, true);
    c *= 2.0;
    c /= 4.0;
    expectPoint(c, {1.5, 2.5, 1}, true);
    c.Init();
    expectPoint(c, {0, 0, 0}, false);
}

TEST(Points, PlanePointsAreCopiedAndCleared) {
    CXYF flat, other;
    flat.SetXY(1.5f, -2.5f);
    other = flat;
    flat.Init();
    EXPECT_EQ(CXYF(other).x, 1.5f);
    EXPECT_EQ(other.y, -2.5f);
    EXPECT_EQ(flat.x, 0.0f);
    EXPECT_EQ(flat.y, 0.0f);
}

// Sums that another order would round otherwise.
TEST(Points, SumsHaveTheirOrder) {
    const CXYZ a(1e16, 1, 1), b(1, 1, 1);
    EXPECT_EQ(a.Inn(b), 1e16 + 2) << "z z + y y first";
    EXPECT_EQ(CXYZ(1e8, 1, 1).Len(), std::sqrt(1e16)) << "x x first";
    EXPECT_EQ(CXYZ().Len(CXYZ(1e8, 1, 1)), std::sqrt(1e16 + 2)) << "dz dz first";
    EXPECT_EQ(CXYZ(2, 3, 6).Len(), 7.0);
    EXPECT_EQ(CXYZ(1, 2, 2).EQ(CXYZ(0, 0, 0), 3.0), 1) << "inclusive";
    EXPECT_EQ(CXYZ(1, 2, 2).EQ(CXYZ(0, 0, 0), std::nextafter(3.0, 0.0)), 0);
    EXPECT_EQ(CXYZ(1, 2, 2).EQ(CXYZ(1, 2, 2), 0.0), 1);
}

TEST(Attitude, NormalizesIntoTheClosedRange) {
    const double turn = kPi * 2.0;
    const double rows[][2] = {{3.5, 3.5 - turn},   {-3.5, -3.5 + turn}, {7.0, 7.0 - turn},
                              {kPi, kPi},          {-kPi, -kPi},        {-0.0, -0.0},
                              {turn, 0.0},         {-turn, -0.0},       {3.0, 3.0},
                              {-7.0, -7.0 + turn}, {turn + kPi, kPi},   {1e9, std::fmod(1e9, turn)}};
    for (const auto& [given, expected] : rows) {
        double angle = given;
        CWPK::NormalizeAngle(angle);
        EXPECT_EQ(angle, expected) << given;
        EXPECT_EQ(std::signbit(angle), std::signbit(expected)) << given;
    }
    double nothing = std::nan("");
    CWPK::NormalizeAngle(nothing);
    EXPECT_TRUE(std::isnan(nothing));
}

TEST(Attitude, SubtractsByItsOwnRule) {
    const double turn = kPi * 2.0;
    EXPECT_EQ(CWPK::SubtractAngle(1.75, -1.5), turn - 3.25);
    EXPECT_EQ(CWPK::SubtractAngle(7.0, 0.5), 7.0 - turn - 0.5);
    EXPECT_EQ(CWPK::SubtractAngle(0.5, 7.0), 0.5 - (7.0 - turn));
    EXPECT_EQ(CWPK::SubtractAngle(1.0, 0.25), 0.75);
    EXPECT_EQ(CWPK::SubtractAngle(kPi, 0.0), kPi) << "a tie keeps d";
    const CWPK from(0.5, -1.0, 3.0), to(1.0, 2.0, -3.0);
    EXPECT_EQ(of(from.Subtract(to)), (Three{0.5, 3.0, -6.0})) << "not normalised";
    EXPECT_EQ(of(from + CWPK(3.0, -3.0, 3.0)), (Three{3.5 - turn, -4.0 + turn, 6.0 - turn}));
    EXPECT_EQ(of(CWPK(-3.0, 0, 0) - CWPK(3.0, 0, 0)), (Three{-6.0 + turn, 0, 0}));
    EXPECT_EQ((-CWPK(4.0, 0, 0)).omega, -4.0);
    CWPK compound(3.0, 0, 0);
    compound += CWPK(3.0, 0, 0);
    compound -= CWPK(3.0, 0, 0);
    EXPECT_EQ(compound.omega, 6.0 - turn - 3.0 + turn);
}

// Turns `v` around an axis.
void turn(long double (&v)[3], int axis, long double angle) {
    long double &a = v[(axis + 1) % 3], &b = v[(axis + 2) % 3];
    const long double c = std::cos(angle), s = std::sin(angle), before = a;
    a = c * a - s * b;
    b = s * before + c * b;
}

double farthest(const CRot& a, const CRot& b) {
    double most = 0;
    for (int k = 0; k < 9; ++k)
        most = std::max(most, std::fabs(a.m[k / 3][k % 3] - b.m[k / 3][k % 3]));
    return most;
}

TEST(Rotation, TurnsAroundOneAxisAfterTheOther) {
    const std::vector<int> axes[] = {{0}, {1}, {2}, {0, 1, 2}, {2, 1, 0}};  // in the order of ROT_SYSTEM
    std::mt19937_64 random(1);
    std::uniform_real_distribution<double> angle(-kPi, kPi);
    for (int i = 0; i < 1000; ++i) {
        const CWPK a(angle(random), angle(random), angle(random));
        for (int sys = ROT_W; sys <= ROT_KPW; ++sys) {
            CRot r;
            ASSERT_EQ(r.SetMatrix(static_cast<ROT_SYSTEM>(sys), a), 1);
            for (int column = 0; column < 3; ++column) {
                long double unit[3] = {};
                unit[column] = 1;
                for (const int axis : axes[sys])
                    turn(unit, axis, of(a)[static_cast<std::size_t>(axis)]);
                for (int row = 0; row < 3; ++row)
                    ASSERT_NEAR(r.m[row][column], static_cast<double>(unit[row]), 1e-15) << sys;
            }
        }
    }
}

TEST(Rotation, ResolvesWhatTheAnglesLeaveOpen) {
    CRot r;
    for (const ROT_SYSTEM sys : {ROT_WPK, ROT_KPW}) {
        // phi beyond a quarter turn is found only with a hint on that side
        r.SetMatrix(sys, CWPK(0.3, kPi - 0.3, -0.2));
        CWPK near(0.3, kPi - 0.4, -0.2), far(-2.8, 0.2, 2.9);
        r.CalAngle(sys, near);
        EXPECT_LT(apart(near, CWPK(0.3, kPi - 0.3, -0.2)), 1e-12);
        r.CalAngle(sys, far);
        EXPECT_LT(apart(far, CWPK(0.3 - kPi, 0.3, kPi - 0.2)), 1e-12);

        for (const double side : {1.0, -1.0}) {  // a quarter turn: omega from the hint, kappa the rest
            r.SetMatrix(sys, CWPK(0.5, side * kPi / 2, 0.7));
            CWPK locked(3.1, side * 1.5, 0.6);
            r.CalAngle(sys, locked);
            EXPECT_EQ(locked.omega, 3.1);
            EXPECT_NEAR(locked.phi, side * kPi / 2, 1e-7);
            const double sum = sys == ROT_WPK ? -side : side;  // omega and kappa are fixed together
            EXPECT_NEAR(locked.kappa, std::remainder(0.7 + sum * (0.5 - 3.1), 2 * kPi), 1e-12)
                << sys << " " << side;
        }
    }
    // The two solutions (0, 0, 0) and (pi, pi, pi) are as far from a hint in the middle: the first.
    CRot level;
    level.m[2][1] = level.m[1][0] = -0.0;
    CWPK middle(kPi / 2, kPi / 2, kPi / 2);
    level.CalAngle(ROT_WPK, middle);
    EXPECT_EQ(middle.phi, 0.0);
    r.m[2][0] = -1.0000000000000002;  // rounding may lead there
    CWPK clamped;
    EXPECT_EQ(r.CalAngle(ROT_WPK, clamped), 1);
    EXPECT_EQ(clamped.phi, kPi / 2);
}

TEST(Rotation, RefusesUnknownOrders) {
    CRot r;
    r.SetMatrix(ROT_KPW, CWPK(0.1, 0.2, 0.3));
    const CRot before(r);
    CWPK angles(1, 2, 3);
    for (const int sys : {7, -1, 5}) {
        EXPECT_EQ(r.SetMatrix(static_cast<ROT_SYSTEM>(sys), angles), 0);
        EXPECT_EQ(r.AddMatrix(static_cast<ROT_SYSTEM>(sys), angles), 0);
        EXPECT_EQ(r.CalAngle(static_cast<ROT_SYSTEM>(sys), angles), 0);
    }
    EXPECT_EQ(farthest(r, before), 0.0);
    EXPECT_EQ(of(angles), (Three{1, 2, 3}));
    const std::pair<ROT_SYSTEM, CWPK> rows[] = {{ROT_W, {1, 0, 0}}, {ROT_P, {0, 2, 0}}, {ROT_K, {0, 0, 3}}};
    for (const auto& [sys, part] : rows) {
        CWPK single(9, 9, 9);
        r.SetMatrix(sys, angles);
        EXPECT_EQ(r.CalAngle(sys, single), 1);
        EXPECT_LT(apart(single, part), 1e-15);
    }
}

TEST(Rotation, TurnsPointsAndComposes) {
    const double degrees[] = {10, -20, 130};
    CRot d, inverse, w, k;
    d.SetDIMat(degrees);
    CRot expected;
    expected.SetMatrix(ROT_KPW, CWPK(10 * kPi / 180, -20 * kPi / 180, 130 * kPi / 180));
    EXPECT_LT(farthest(d, expected), 1e-15);
    inverse.SetDIMatInv(degrees);
    EXPECT_LT(farthest(inverse * d, CRot()), 4e-16);

    w.SetMatrix(ROT_W, CWPK(0.4, 0, 0));
    k.SetMatrix(ROT_K, CWPK(0, 0, 0.9));
    CRot added(w), times(k), system(w);
    added.AddMatrix(k);
    times *= w;
    EXPECT_EQ(system.AddMatrix(ROT_K, CWPK(0, 0, 0.9)), 1);
    EXPECT_EQ(farthest(added, times), 0.0) << "the new one acts last";
    EXPECT_EQ(farthest(system, times), 0.0);
    CXYZ point = station(), turned;
    k.SetMatrix(ROT_K, CWPK(0, 0, kPi / 2));
    k.Rotate(point, turned);
    EXPECT_LT(turned.Len(CXYZ(-5, 6, 8)), 2e-15);
    EXPECT_EQ(turned.name, CString(u"ST1"));
    EXPECT_EQ(turned.code, CString(u"NAIL"));
    EXPECT_EQ((k * point).y, turned.y);
    k.Rotate(point, point);
    EXPECT_EQ(of(point), of(turned));
    k.T();
    EXPECT_NEAR((k * turned).x, 6, 1e-15);
}

}  // namespace
