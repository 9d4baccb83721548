// Scan areas: checks, polylines, the crossing of the zero direction.
#include <fieldscan/scan_area.h>
#include <gtest/gtest.h>

#include <cmath>
#include <iterator>
#include <string>
#include <utility>

#include "tests/scanarea/scan_areas.h"

namespace {

TEST(ScanArea, ChecksCountsThenCornersThenTheGrid) {
    CScanArea area;
    EXPECT_EQ(area.CheckParameter(), 1) << "an empty grid";
    fillGrid(area, 2, 3);
    EXPECT_EQ(area.CheckParameter(), 1);
    const std::pair<int, void (*)(CScanArea&)> cases[] = {
        {-1,
         [](CScanArea& a) {
             a.imageNames.RemoveAt(0);
             a.shootAngles.RemoveAt(0);
         }},
        {-2,
         [](CScanArea& a) {
             a.shootAngles.RemoveAt(0);
             a.areaAngle1.omega = -1;
         }},
        {-1,
         [](CScanArea& a) {
             a.columnCount = 65536 * 3;
             a.rowCount = 65536;
         }},
        {-3, [](CScanArea& a) { a.areaAngle1.omega = -1e-300; }},
        {-3, [](CScanArea& a) { a.areaAngle2.kappa = kPi * 2; }},
        {-3, [](CScanArea& a) { a.areaAngle2.omega = std::nan(""); }},
        {1, [](CScanArea& a) { a.areaAngle1.kappa = std::nextafter(kPi * 2, 0.0); }},
        {-4, [](CScanArea& a) { a.shootAngles[5].omega += 1.5 * kRadian; }},
        {1, [](CScanArea& a) { a.shootAngles[5].omega -= 1.5 * kRadian; }},
        {1, [](CScanArea& a) { a.shootAngles[5].omega = a.shootAngles[4].omega + 0.99 * kRadian; }},
        {-4, [](CScanArea& a) { a.shootAngles[5].kappa += 1.5 * kRadian; }},
        {1, [](CScanArea& a) { a.shootAngles[2].kappa -= 1.5 * kRadian; }},
        // The limit itself.
        {1,
         [](CScanArea& a) {
             a.shootAngles[0].omega = 0;
             a.shootAngles[1].omega = kRadian;
         }},
        {1,
         [](CScanArea& a) {
             a.columnCount = -3;
             a.rowCount = -2;
         }},
    };
    for (std::size_t k = 0; k < std::size(cases); ++k) {
        CScanArea spoilt(area);
        cases[k].second(spoilt);
        EXPECT_EQ(spoilt.CheckParameter(), cases[k].first) << "case " << k;
    }
}

TEST(ScanArea, CopiesAllButTheTablesAndPolylines) {
    CScanArea a, b;
    const auto counts = {&CScanArea::columnCount, &CScanArea::rowCount};
    const auto directions = {&CScanArea::shootAngles, &CScanArea::outlineAngles};
    for (const auto count : counts)
        a.*count = 2;
    for (const auto list : directions)
        addDirection(a.*list, 5, 90);
    a.headerLine = u"header";
    a.imageNames.Add(u"IMG1.jpg");
    a.areaAngle2.kappa = 1;
    a.workTable1.Add(1);
    a.CalHVPolyline1();
    b.workTable1.Add(7);
    b.outlinePolyline.AddVertex(CVertex());
    b = a;
    b = *&b;
    a.Init();
    for (const auto count : counts) {
        EXPECT_EQ(b.*count, 2);
        EXPECT_EQ(a.*count, 0);
    }
    for (const auto list : directions) {
        EXPECT_EQ((b.*list).GetSize(), 1);
        EXPECT_TRUE((a.*list).IsEmpty());
    }
    EXPECT_EQ(b.headerLine, CString(u"header"));
    EXPECT_TRUE(a.headerLine.IsEmpty());
    EXPECT_EQ(b.imageNames[0], CString(u"IMG1.jpg"));
    EXPECT_TRUE(a.imageNames.IsEmpty());
    EXPECT_EQ(b.areaAngle2.kappa, 1.0);
    EXPECT_EQ(b.workTable1[0], 7.0);
    EXPECT_TRUE(a.workTable1.IsEmpty());
    EXPECT_EQ(b.shootPolyline.GetVertexSize(), 0);
    EXPECT_EQ(b.outlinePolyline.GetVertexSize(), 1);
    EXPECT_EQ(a.shootPolyline.GetVertexSize(), 1) << "Init leaves the polylines";
}

TEST(ScanArea, NamesTheOrientationFiles) {
    CScanArea area;
    EXPECT_EQ(area.IsWithImage(), 0);
    const std::pair<const char16_t*, const char16_t*> rows[] = {
        {u"IMG0001.jpg", u"IMG0001.ext"}, {u" a.b.c ", u"a.b.ext"}, {u"none", u".ext"}, {u".", u".ext"}};
    area.columnCount = 2;
    area.rowCount = 3;
    for (const auto& [image, orientation] : rows)
        area.imageNames.Add(image);
    CString name(u"before");
    EXPECT_EQ(area.GetExtFileName(-1, name), 0);
    EXPECT_EQ(area.GetExtFileName(6, name), 0);
    EXPECT_EQ(name, CString(u"before"));
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(area.GetExtFileName(i, name), 1) << i;
        EXPECT_EQ(name, CString(rows[i].second));
    }
    EXPECT_EQ(area.GetExtFileName(5, name), 1) << "inside the grid, without a name";
    EXPECT_EQ(area.IsWithImage(), 1);
    area.imageNames[0].Empty();
    EXPECT_EQ(area.IsWithImage(), 0);
}

TEST(ScanArea, NormalizesIntoTheHalfOpenTurn) {
    const auto normalized = [](double angle) {
        CScanArea().NormalizeAngle(angle);
        EXPECT_GE(angle, 0.0);
        EXPECT_LT(angle, kPi * 2);
        return angle;
    };
    const double rows[][2] = {{-kPi / 2, kPi * 1.5},  {4 * kPi + 0.1, 0.1},     {kPi * 2, 0}, {-kPi * 2, 0},
                              {-100, 32 * kPi - 100}, {1000, 1000 - 318 * kPi}, {-1e-20, 0},  {1, 1}};
    for (const auto& [given, expected] : rows)
        EXPECT_NEAR(normalized(given), expected, 1e-12) << given;
    for (int turns = -3000; turns < 3000; ++turns)
        for (const double side : {-1e300, 1e300})
            normalized(std::nextafter(turns * kPi * 2, side));
}

TEST(ScanArea, RebuildsItsPolylines) {
    CScanArea area;
    fillGrid(area, 2, 1);
    addDirection(area.outlineAngles, 350, 80);
    addDirection(area.outlineAngles, 10, 100);
    for (int twice = 0; twice < 2; ++twice) {
        area.CalHVPolyline1();
        area.CalHVPolyline2();
    }
    ASSERT_EQ(area.shootPolyline.GetVertexSize(), 2);
    ASSERT_EQ(area.outlinePolyline.GetVertexSize(), 2);
    const CVertex &shot = *area.shootPolyline.GetVertex(1), &vertex = *area.outlinePolyline.GetVertex(0);
    EXPECT_LT(shot.Len(CXYZ(11, 0, 80)), 1e-12);
    EXPECT_EQ(shot.flag, 0x20);
    EXPECT_LT(vertex.Len(CXYZ(350, 10, 0)), 1e-12);
    EXPECT_LT(area.outlinePolyline.GetVertex(1)->Len(CXYZ(10, 350, 0)), 1e-12) << "below the horizon";
}

CScanArea outlineOf(std::initializer_list<double> horizontalDegrees) {
    CScanArea area;
    int k = 0;
    for (const double h : horizontalDegrees)
        addDirection(area.outlineAngles, h, 80 + k++ % 3);
    return area;
}

std::string joined(const CArray<int, int&>& indices) {
    std::string text;
    for (int i = 0; i < indices.GetSize(); ++i)
        text += std::to_string(indices[i]);
    return text;
}

TEST(Outline, SplitsAtTheZeroDirection) {
    const struct {
        std::initializer_list<double> horizontal;
        const char *after, *before;  // zero
        double left, right;
    } rows[] = {{{350, 10, 20, 340}, "12", "30", 340, 20},
                {{10, 20, 30}, "", "012", 10, 30},
                {{0, 180}, "0", "1", 180, 0},  // half a turn exactly
                {{0, 179.9}, "", "01", 0, 179.9},
                {{350, 10, 355, 5, 20, 340}, "134", "250", 340, 20},  // twice
                {{5, 355}, "0", "1", 355, 5},
                {{90}, "", "0", 90, 90}};
    for (const auto& row : rows) {
        CScanArea area = outlineOf(row.horizontal);
        EXPECT_EQ(area.CheckZeroCross(), *row.after != 0) << row.left;
        CArray<int, int&> after, before;
        after.SetSize(9);
        area.DivideZeroCross(&after, &before);
        EXPECT_EQ(joined(after), row.after);
        EXPECT_EQ(joined(before), row.before);
        area.areaAngle1.phi = 3;
        EXPECT_EQ(area.CalPolylineTopLeftBottomRight(), 1);
        EXPECT_EQ(area.areaAngle1.kappa, row.left * kRadian);
        EXPECT_EQ(area.areaAngle2.kappa, row.right * kRadian);
        EXPECT_EQ(area.areaAngle1.omega, 80 * kRadian);
        EXPECT_EQ(area.areaAngle1.phi, 3.0);
    }
    CScanArea five = outlineOf({1, 2, 3, 4, 5});
    five.CalPolylineTopLeftBottomRight();
    EXPECT_EQ(five.areaAngle2.omega, 82 * kRadian);
    EXPECT_EQ(five.GetMinmumHAngleIndex(), 3) << "the last of equal ones";

    CScanArea empty;
    CArray<int, int&> after, before;
    after.SetSize(2);
    empty.DivideZeroCross(&after, &before);
    empty.DivideZeroCross(nullptr, nullptr);
    EXPECT_EQ(after.GetCapacity(), 0);
    EXPECT_EQ(empty.CheckZeroCross(), 0);
    EXPECT_EQ(empty.GetMinmumHAngleIndex(), -1);
    empty.CalPolylineTopLeftBottomRight();
    EXPECT_EQ(empty.areaAngle1.omega, 360.0);
    EXPECT_EQ(empty.areaAngle1.kappa, 360.0);
    EXPECT_EQ(empty.areaAngle2.omega, -1.0);
    EXPECT_EQ(empty.areaAngle2.kappa, -1.0);
}

}  // namespace
