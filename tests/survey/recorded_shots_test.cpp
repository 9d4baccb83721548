// Polar shots against what a field recorder printed for them.
#include <fieldscan/survey.h>
#include <gtest/gtest.h>

#include <cmath>

namespace {

// Shots of an excavation from its station OA15 as the field recorder printed them. Angles are ddd.mmss, x is
// north; the last three are of the second face.
// clang-format off
const struct { int name; double horizontal, zenith, slopeDistance, planDistance, x, y, z; } kShots[] = {
    {10001, 21.0602, 56.2659, 4.696, 3.914, 205885.618, 450402.042, 61.309},
    {1117, 19.3338, 39.3520, 5.290, 3.371, 205885.143, 450401.762, 62.790},
    {1403, 104.5941, 16.5318, 6.497, 1.887, 205881.479, 450402.456, 64.931},
    {1594, 228.0506, 25.0813, 4.805, 2.041, 205880.603, 450399.114, 63.064},
    {1650, 198.5042, 28.1452, 5.014, 2.373, 205879.721, 450399.867, 63.131},
    {1652, 280.4754, 33.0928, 5.272, 2.884, 205882.507, 450397.801, 63.128},
    {1673, 215.4426, 24.1005, 5.122, 2.097, 205880.265, 450399.408, 63.387},
    {1764, 173.4351, 15.0651, 6.426, 1.676, 205880.301, 450400.816, 64.918},
    {1786, 198.4504, 37.3811, 3.924, 2.396, 205879.698, 450399.863, 61.821},
    {1415, 66.1328, 349.1309, 6.172, 1.154, 205881.502, 450399.577, 64.777},
    {1679, 256.2044, 358.5826, 7.810, 0.140, 205882.000, 450400.769, 66.523},
    {1680, 235.0956, 358.5820, 7.802, 0.140, 205882.047, 450400.748, 66.515}};
// clang-format on

// In the second face the distance in plan, as slope distance times sine, is negative, and x and y are
// exchanged.
TEST(RecordedShots, GiveThePlacesThatTheRecorderPrinted) {
    const CXYZ station(205881.967, 450400.633, 57.057);
    const double instrumentHeight = 1.657;
    for (const auto& shot : kShots) {
        const double horizontal = CCalcXYZHV::Angle60To100(shot.horizontal, 0);
        const double zenith = CCalcXYZHV::Angle60To100(shot.zenith, 0), radians = zenith / 57.29577951308232;
        const double inPlan = shot.slopeDistance * std::sin(radians);
        const double upward = shot.slopeDistance * std::cos(radians);
        EXPECT_NEAR(std::fabs(inPlan), shot.planDistance, 0.001) << shot.name;
        CXYZ bySlope, byPlan;
        ASSERT_EQ(
            CCalcXYZHV::CalcXYZ(bySlope, horizontal, inPlan, zenith, upward, station, instrumentHeight, 0, 1),
            1);
        ASSERT_EQ(CCalcXYZHV::CalcXYZ(byPlan, horizontal, inPlan, zenith, station, instrumentHeight, 0, 1),
                  1);
        const bool secondFace = zenith > 180.0;
        for (const CXYZ& place : {bySlope, byPlan}) {
            EXPECT_NEAR(secondFace ? place.y : place.x, shot.x, 0.001) << shot.name;
            EXPECT_NEAR(secondFace ? place.x : place.y, shot.y, 0.001) << shot.name;
            EXPECT_NEAR(place.z, shot.z, 0.001) << shot.name;
        }
    }
}

}  // namespace
