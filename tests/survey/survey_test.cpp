// Units, angles, observations.
#include <fieldscan/survey.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <tuple>
#include <vector>

#include "platform/time_records.h"
#include "tests/print_text.h"

namespace {

using S = CCalcXYZHV;
const double kInf = std::numeric_limits<double>::infinity();

TEST(Units, MultiplyToTheLastBit) {
    EXPECT_EQ(S::MtoUSFT(1), std::nextafter(3937.0 / 1200.0, 0.0));
    EXPECT_EQ(S::USFTtoM(1), std::nextafter(1200.0 / 3937.0, 1.0));
    EXPECT_EQ(S::MtoIntFT(1), 1.0 / 0.3048);
    EXPECT_EQ(S::IntFTtoM(10), 10 * 0.3048);
    EXPECT_EQ(S::DEGtoGON(1), 10.0 / 9.0);
    EXPECT_EQ(S::DEGtoMIL(1), 160.0 / 9.0);
    EXPECT_EQ(S::GONtoDEG(400), 360.0);
    EXPECT_EQ(S::MILtoDEG(-6400), -360.0);
}

TEST(Angles, Angle0To360KeepsTheClosedRange) {
    // 1e300 is a multiple of 360, too.
    const double rows[][2] = {{360, 360},   {720.5, 0.5},   {720, 360},    {-10, 350},
                              {-0.0, -0.0}, {-360, 0.0},    {-1e-20, 360}, {361, 1},
                              {kInf, kInf}, {-kInf, -kInf}, {1e300, 360},  {1e15, 280}};
    for (const auto& [given, expected] : rows) {
        double angle = given;
        S::Angle0To360(angle);
        EXPECT_EQ(angle, expected) << given;
        EXPECT_EQ(std::signbit(angle), std::signbit(expected)) << given;
    }
}

TEST(Angles, RoundForDisplay) {
    const double gons[][2] = {
        {399.99980, 0.0}, {399.99974, 399.9995}, {12.34524, 12.345}, {12.34526, 12.3455}, {12.34576, 12.346},
        {-0.0001, 0.0},   {-1, 399.0},           {400, 0.0},         {1200.0007, 0.0005}};
    for (const auto& [gon, expected] : gons)
        EXPECT_NEAR(S::RoundGON(gon), expected, 1e-9) << gon;
    EXPECT_EQ(S::RoundGON(12.34526), 12345.5 * 0.001) << "the last bit";
    const std::tuple<double, int, double> mils[] = {
        {1234.563, 0, 1234.565},  {1234.562, 0, 1234.56},  {1234.568, 0, 1234.57},
        {6399.999, 0, 0.0},       {1234.563, 1, 1234.564}, {1234.565, 7, 1234.566},
        {1234.567, -1, 1234.568}, {1234.569, 1, 1234.57},  {1234.562, 1, 1234.562}};
    for (const auto& [mil, mode, expected] : mils)
        EXPECT_NEAR(S::RoundMIL(mil, mode), expected, 1e-9) << mil << " mode " << mode;
    EXPECT_EQ(S::RoundMIL(0.081, 1), 0.08) << "8.1 - 8 falls just short of the threshold";
    EXPECT_NEAR(S::RoundMIL(12.341, 1), 12.342, 1e-12) << "12341 * 0.1 - 1234 does not";
    EXPECT_TRUE(std::isnan(S::RoundGON(std::nan(""))));
    EXPECT_LT(S::RoundMIL(1e300, 0), 6400.0);
}

TEST(Angles, DifferencesKeepTheOrderAtHalfATurn) {
    const double rows[][3] = {{10, 20, 10},      {20, 10, -10}, {350, 10, 20},   {10, 350, -20},
                              {0, 180, -180},    {180, 0, 180}, {90, 270, -180}, {270, 90, 180},
                              {5, 5, 0},         {0, 360, 0.0}, {360, 0, 0.0},   {-90, 90, 180},
                              {1, 1 + 2e-16, 0}, {181, 0, 179}, {0, 181, -179}};
    for (const auto& [a, b, expected] : rows) {
        const double d = S::AngleDifference(a, b);
        EXPECT_EQ(d, expected) << a << " to " << b;
        EXPECT_EQ(S::AngleDifference_Over0(a, b), d < 0 ? d + 360 : d);
        EXPECT_EQ(S::AngleDifference_Under0(a, b), d > 0 ? d - 360 : d);
    }
    EXPECT_NEAR(S::AngleDifference(359.9, 0.1), 0.2, 1e-12);
    EXPECT_EQ(S::AngleZ0toH0(100), 350.0);
    EXPECT_EQ(S::AngleH0toZ0(350), 100.0);
}

TEST(PackedAngles, CarryAndCut) {
    const std::tuple<double, int, int, double> rows[] = {
        {10.999999, 0, 0, 11.0},       {12.5, 0, 0, 12.3},
        {-12.5, 0, 0, -12.3},          {-12.5, 1, 0, 347.3},
        {1.0 / 3600, 0, 0, 0.0001},    {359.99999, 1, 0, 360.0},
        {0.99972222222, 0, 0, 0.5959}, {12.345678, 0, 1, 12.20444408},
        {12.345678, 0, 0, 12.2044},    {1.0085, 0, 0, 1.0031}};
    for (const auto& [degrees, normalize, keep, packed] : rows)
        EXPECT_NEAR(S::Angle100To60(degrees, normalize, keep), packed, 1e-11) << degrees;
    EXPECT_EQ(S::Angle60To100(12.3, 0), 12.5);
    EXPECT_EQ(S::Angle60To100(123.45306, 0), 123 + (45 * 60.0 + 306 * 0.1) * 2.777777777777778e-4);
    EXPECT_EQ(S::Angle60To100(-90.0, 1), 270.0);
    const double cut = (30 * 60.0 + 450 * 0.1) * 2.777777777777778e-4;
    EXPECT_EQ(S::Angle60To100(-12.3045, 0), cut - 12);
    for (int second = 0; second < 3600; ++second) {
        const int minute = second / 60;
        const double packed = 7 + minute * 0.01 + second % 60 * 0.0001;
        ASSERT_NEAR(S::Angle60To100(packed, 0), 7 + second / 3600.0, 1e-13) << second;
        ASSERT_NEAR(S::Angle100To60(S::Angle60To100(packed, 0), 0, 0), packed, 1e-13) << second;
    }
    for (const double wild : {kInf, -kInf, std::nan(""), 1e300, -1e12}) {
        EXPECT_GE(S::AngleStr(S::Angle100To60(wild, 0, 0), 0).GetLength(), 7) << wild;
        EXPECT_GE(S::AngleStr(S::Angle60To100(wild, 1), 0).GetLength(), 7) << wild;
    }
}

TEST(Display, FormatsAnglesAndTimes) {
    const std::tuple<double, int, const char16_t*> rows[] = {
        {123.4530, 0, u"123°45'30\""}, {12.3, 0, u"12°30'00\""}, {12.3, 3, u""},
        {-1.0203, 1, u"-1°-2'"},       {12.3, 1, u"12°30'"},     {12.3, 2, u"12°"},
        {0.0059, 0, u"0°00'59\""},     {12.29, 1, u"12°29'"},    {12.3, -1, u""}};
    for (const auto& [packed, mode, text] : rows)
        EXPECT_EQ(S::AngleStr(packed, mode), CString(text)) << packed << " mode " << mode;
    EXPECT_EQ(S::ByoToStr(3661), CString(u"01:01:01"));
    EXPECT_EQ(S::ByoToStr(360000), CString(u"100:00:00"));
    EXPECT_EQ(S::ByoToStr(-5), CString(u"00:00:-5"));
    SYSTEMTIME start = {2006, 11, 3, 15, 14, 3, 59, 999}, end = {2006, 11, 4, 16, 0, 5, 0, 0};
    EXPECT_EQ(S::TimeToString(start), CString(u"200611151403"));
    EXPECT_EQ(S::GetTakenTime(start, end), -838);
    const FILETIME early = {999990000u, 29800000u}, same = {999999999u, 29800000u},
                   late = {1000000000u, 29800000u};
    EXPECT_EQ(S::FILETIMEFastRate(late, early), 1);
    EXPECT_EQ(S::FILETIMEFastRate(early, late), 0);
    EXPECT_EQ(S::FILETIMEFastRate(early, same), 2) << "within a millisecond";
    EXPECT_EQ(S::FILETIMEFastRate({0, 29800001u}, {4294867295u, 29800000u}), 1);
}

TEST(Observations, DirectionsInEveryQuadrant) {
    const double rows[][3] = {{1, 0, 0},       {2, 2, 45},    {0, 1, 90},   {-2, 2, 135}, {-1, 0, 180},
                              {-1, -0.0, 180}, {-2, -2, 225}, {0, -1, 270}, {2, -2, 315}, {1, -0.0, -0.0}};
    for (const auto& [dx, dy, expected] : rows) {
        double zenith = 0, direction = -1;
        const CXYZ target(100 + dx, 200 + dy, 11.5);
        EXPECT_EQ(S::XYZToHV(CXYZ(100, 200, 10), target, 1.5, zenith, direction), 1);
        EXPECT_NEAR(direction, expected, 1e-12) << dx << " " << dy;
        EXPECT_EQ(zenith, 90.0);
    }
    double zenith = -7, direction = -7;
    EXPECT_EQ(S::XYZToHV(CXYZ(1, 2, 3), CXYZ(1, 2, 9), 0, zenith, direction), 0);
    EXPECT_EQ(direction, 0.0);
    EXPECT_EQ(zenith, -7.0);
    EXPECT_EQ(S::XYZToHV(CXYZ(0, 0, 0), CXYZ(1, 0, -1), 0, zenith, direction), 1);
    EXPECT_NEAR(zenith, 135, 1e-12);

    // Mathematical axes: from y toward x; below the horizon the angle is not the usual one.
    const std::tuple<CXYZ, double, double, double> others[] = {
        {{1000, 0, 0}, 0, 90, 90},
        {{-1000, 0, 1001.5}, 1.5, 45, 270},
        {{0, 1000, -1000 * std::tan(10 / 57.29577951308232)}, 0, -260, 0}};
    for (const auto& [to, height, up, expected] : others) {
        EXPECT_EQ(S::CalcXYZToVH(to, CXYZ(0, 0, 0), height, zenith, direction), 1);
        EXPECT_EQ(direction, expected);
        EXPECT_NEAR(zenith, up, 1e-12);
    }
    // Straight up and down at heights whose two differences are rounded apart: no NaN.
    S::CalcXYZToVH(CXYZ(5, 5, 0.4 + 30.7), CXYZ(5, 5, 0.4), 1.7, zenith, direction);
    EXPECT_NEAR(zenith, 0.0, 1e-5);
    S::CalcXYZToVH(CXYZ(5, 5, 0.4 - 30.7), CXYZ(5, 5, 0.4), 1.6, zenith, direction);
    EXPECT_NEAR(zenith, 90.0 - 270.0, 1e-5);
}

TEST(Observations, ATargetAtTheInstrumentHasNoZenithAngle) {
    double zenith = 0, direction = 0;
    for (const double z : {0.0, 0.001, 0.002}) {  // of the last two, one difference is rounded away from 0
        S::CalcXYZToVH(CXYZ(5, 5, z + 1.537), CXYZ(5, 5, z), 1.537, zenith, direction);
        EXPECT_TRUE(std::isnan(zenith)) << z << ": " << zenith;
    }
}

void expectAt(const CXYZ& point, double x, double y, double z) {
    EXPECT_EQ(std::vector<double>({point.x, point.y, point.z}), std::vector<double>({x, y, z}));
}

TEST(Observations, CoordinatesFromAnObservation) {
    const CXYZ station(u"ST", 1000, 2000, 50);
    CXYZ out(u"T", 1, 2, 3);
    EXPECT_EQ(S::CalcXYZ(out, 30, 100, 80, 5, station, 0.25, 1, 1e-13), 0);
    EXPECT_EQ(S::CalcXYZ(out, 30, 100, 80, station, 0.25, 1, 1e-13), 0);
    EXPECT_EQ(out.x, 1.0);
    EXPECT_EQ(out.attr[0], 0);
    EXPECT_EQ(S::CalcXYZ(out, 29, 0, 80, 5, station, 0.25, 1, 1e-12), 1) << "the least scale";
    EXPECT_EQ(S::CalcXYZ(out, 29, 200, 80, 5, station, 0.25, 1, 2), 1);
    expectAt(out, 1086.6025, 2050.0, 67.6365);  // cos 80 sqrt(100 100 + 5 5) + 50.25 = 67.63652...
    EXPECT_EQ(out.name, CString(u"T"));
    float angles[2];
    std::memcpy(angles, out.attr, sizeof angles);
    EXPECT_EQ(angles[0], 29.0f);
    EXPECT_EQ(angles[1], 80.0f);

    EXPECT_EQ(S::CalcXYZ(out, 30, 100, 80, station, 0.25, 0, 1), 1);
    expectAt(out, 1086.6025, 2050.0, 67.8827);  // 100 cot 80 + 50.25
    EXPECT_EQ(S::CalcXYZ(out, 28, 250, 80, station, 0.25, 2, 2.5), 1);
    expectAt(out, 1086.6025, 2050.0, 67.8827);  // turned and scaled
    EXPECT_EQ(S::CalcXYZ(out, 30, 100, 270, station, 0.25, 0, 1), 1);
    expectAt(out, 2050.0, 1086.6025, 50.25);  // second face: exchanged
    out.SetXYZ(7, 7, 7);
    EXPECT_EQ(S::CalcXYZ(out, 30, 100, 0, station, 0.25, 0, 1), 0) << "straight up";
    expectAt(out, 1086.6025, 2050.0, 7);
    EXPECT_EQ(S::CalcXYZ(out, 30, 100, 270, 0, station, 0.25, 0, 1), 1);
    EXPECT_EQ(out.x, 2050.0);
    EXPECT_EQ(S::CalcXYZ(out, 30, 100, 180, station, 0.25, 0, 1), 1) << "180 is first face";
    EXPECT_EQ(out.x, 1086.6025);

    CXYZ p(u"P", 1.5, 2.5, 3.5);
    S::CnvSokuToMath(p);
    expectAt(p, 2500, 1500, 3500);
    S::CnvMathToSoku(p);
    expectAt(p, 1.5, 2.5, 3.5);
    EXPECT_EQ(p.name, CString(u"P"));
}

}  // namespace
