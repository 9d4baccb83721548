// The shooting grid.
#include <fieldscan/scan_area.h>
#include <gtest/gtest.h>

#include <cmath>
#include <tuple>

#include "tests/scanarea/scan_areas.h"

namespace {

CWPK direction(double horizontal, double zenith) { return CWPK(zenith * kRadian, 0.5, horizontal * kRadian); }

TEST(ShootingGrid, CoversAnAreaAcrossZero) {
    for (const bool upward : {false, true}) {
        CScanArea area;
        area.columnCount = 40;
        area.rowCount = 30;
        const CWPK left = direction(350, upward ? 110 : 80), right = direction(20, upward ? 80 : 110);
        ASSERT_EQ(area.CalShootAng(left, right), 1);
        EXPECT_EQ(area.CheckParameter(), 1);
        EXPECT_EQ(area.columnCount, 40);
        EXPECT_EQ(area.rowCount, 30);
        const CWPK &first = area.shootAngles[0], &last = area.shootAngles[1199];
        EXPECT_EQ(first.kappa, left.kappa);
        EXPECT_EQ(last.kappa, right.kappa);
        EXPECT_EQ(last.phi, 0.0);
        EXPECT_EQ(first.omega, direction(0, 80).omega) << "the top comes first";
        EXPECT_EQ(last.omega, direction(0, 110).omega);
        for (int i = 0; i < 1200; ++i) {
            const CWPK& shot = area.shootAngles[i];
            const double column = 350 + 30.0 / 39 * (i % 40);
            EXPECT_NEAR(shot.kappa, (column < 360 ? column : column - 360) * kRadian, 1e-14);
            EXPECT_EQ(shot.kappa, area.workTable1[i % 40]);
            EXPECT_EQ(shot.omega, area.workTable2[i / 40]);
        }
        EXPECT_EQ(area.imageNames[0], CString(u"IMG0001.jpg"));
        EXPECT_EQ(area.imageNames[1199], CString(u"IMG1200.jpg"));
    }
}

TEST(ShootingGrid, CountsAndNames) {
    const std::tuple<int, int, double, double, int, int> rows[] = {
        {0, 0, 130, 95, 4, 2},         {0, 5, 130.1, 95, 5, 2},
        {7, 3, 130, 95, 7, 3},         {7, 3, 100, 95, 1, 3},
        {7, 3, 130, 85, 7, 1},         {7, 3, 100, 85, 1, 1},
        {0, 0, 100, 85, 1, 1},         {1, 1, 130, 95, 1, 1},
        {0, 0, 460 - 1e-9, 85, 37, 1}, {0, 0, 100 - 360 - 1e-13, 85, 1, 1},
        {0, 0, -230, 95, 4, 2}};
    for (const auto& [columns, lines, right, bottom, expectedColumns, expectedRows] : rows) {
        CScanArea area;
        area.columnCount = columns;
        area.rowCount = lines;
        area.imageNames.Add(u"first.jpg");
        area.imageNames.Add(u"wall.v09.tif");
        ASSERT_EQ(area.CalShootAng(direction(100, 85), direction(right, bottom)), 1);
        EXPECT_EQ(area.columnCount, expectedColumns) << right;
        EXPECT_EQ(area.rowCount, expectedRows) << right;
        EXPECT_EQ(area.CheckParameter(), 1);
        EXPECT_EQ(area.imageNames[0], CString(u"wall.v10.tif")) << "goes on";
        if (columns == 1) {
            EXPECT_NEAR(area.shootAngles[0].kappa, 115 * kRadian, 1e-15) << "in the middle";
            EXPECT_NEAR(area.shootAngles[0].omega, 90 * kRadian, 1e-15);
        }
    }
}

TEST(ShootingGrid, GivesEndsARoundingStepApartOneShot) {
    for (const double side : {-1e300, 1e300}) {
        CScanArea area;
        area.columnCount = area.rowCount = 3;
        const CWPK left = direction(100, 85),
                   right(std::nextafter(left.omega, side), 0, std::nextafter(left.kappa, side));
        ASSERT_EQ(area.CalShootAng(left, right), 1);
        EXPECT_EQ(area.columnCount, 1) << side;
        EXPECT_EQ(area.rowCount, 1) << side;
    }
}

TEST(ShootingGrid, Refuses) {
    CScanArea area;
    area.columnCount = 2;
    area.rowCount = 1;
    for (const double bad : {NAN, INFINITY}) {
        ASSERT_EQ(area.CalShootAng(direction(10, 90), direction(20, 90)), 1);
        EXPECT_EQ(area.CalShootAng(direction(10, 90), direction(20, bad)), 0);
        EXPECT_EQ(area.columnCount, 2) << "kept";
        EXPECT_EQ(area.rowCount, 1) << "kept";
        EXPECT_TRUE(area.shootAngles.IsEmpty());
        EXPECT_TRUE(area.imageNames.IsEmpty());
        EXPECT_TRUE(area.workTable1.IsEmpty());
    }
    area.areaAngle2.kappa = 7.0;
    EXPECT_EQ(area.CalShootAng(direction(10, 90), direction(20, 90)), 0) << "a corner out of range";
    area.areaAngle2.kappa = 0.0;
    area.columnCount = area.rowCount = 65536;
    EXPECT_EQ(area.CalShootAng(direction(10, 80), direction(20, 90)), 0);
}

}  // namespace
