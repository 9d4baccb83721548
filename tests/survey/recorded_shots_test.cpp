// Polar shots against what a field recorder printed for them.
#include <fieldscan/survey.h>
#include <gtest/gtest.h>

#include <cmath>

#include "tests/published/excavation.h"

namespace {

// In the second face the distance in plan, as slope distance times sine, is negative, and x and y are
// exchanged.
TEST(RecordedShots, GiveThePlacesThatTheRecorderPrinted) {
    const CXYZ station(excavation::kStation[0], excavation::kStation[1], excavation::kStation[2]);
    for (const auto& shot : excavation::kShots) {
        const double horizontal = CCalcXYZHV::Angle60To100(shot.horizontal, 0);
        const double zenith = CCalcXYZHV::Angle60To100(shot.zenith, 0), radians = zenith / 57.29577951308232;
        const double inPlan = shot.slopeDistance * std::sin(radians);
        const double upward = shot.slopeDistance * std::cos(radians);
        EXPECT_NEAR(std::fabs(inPlan), shot.planDistance, 0.001) << shot.name;
        CXYZ bySlope, byPlan;
        ASSERT_EQ(CCalcXYZHV::CalcXYZ(bySlope, horizontal, inPlan, zenith, upward, station,
                                      excavation::kInstrumentHeight, 0, 1),
                  1);
        ASSERT_EQ(CCalcXYZHV::CalcXYZ(byPlan, horizontal, inPlan, zenith, station,
                                      excavation::kInstrumentHeight, 0, 1),
                  1);
        const bool secondFace = zenith > 180.0;
        for (const CXYZ& place : {bySlope, byPlan}) {
            EXPECT_NEAR(secondFace ? place.y : place.x, shot.place[0], 0.001) << shot.name;
            EXPECT_NEAR(secondFace ? place.x : place.y, shot.place[1], 0.001) << shot.name;
            EXPECT_NEAR(place.z, shot.place[2], 0.001) << shot.name;
            EXPECT_NEAR(place.z - station.z, shot.rise, 0.001) << shot.name;
        }
    }
}

}  // namespace
