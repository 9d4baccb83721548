// The scan-area file, second version.
#include <fieldscan/scan_area.h>
#include <fieldscan/survey.h>
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "tests/temp_folder.h"

namespace {

constexpr double kDegree = 0.017453292519943295;

using ScanAreaFile2 = TempFolder;

CScanArea sample() {
    CScanArea area;
    area.columnCount = 2;
    area.rowCount = 1;
    area.areaAngle1.SetWPK(80 * kDegree, 0, 350 * kDegree);
    area.areaAngle2.SetWPK(100.25 * kDegree, 0, 359.9999 * kDegree);
    area.imageNames.Add(u" Wall, east 1.jpg");
    area.imageNames.Add(u"");
    CWPK shot(90.5 * kDegree, -1.25 * kDegree, 359.999999 * kDegree),
        vertex(80.5 * kDegree, 0, 350.12346 * kDegree);
    area.shootAngles.Add(shot);
    area.shootAngles.Add(vertex);
    area.outlineAngles.Add(vertex);
    return area;
}

const char kSample[] =
    "WQ_FSCAN_AREA_FORMAT_V2\n"
    "columns,2,0.00000,0.00000,0.00000,1000\n"
    "rows,1,0.00000,0.00000,0.00000,2000\n"
    "shots,2,0.00000,0.00000,0.00000,3000\n"
    "outline,1,0.00000,0.00000,0.00000,4000\n"
    "350.000 80.000\n"
    "359.999 100.250\n"
    " Wall, east 1.jpg,0,359.99999,90.50000,-1.25000,5110\n"
    ",1,350.12346,80.50000,0.00000,5110\n"
    "350.1235 80.5000\n";

TEST_F(ScanAreaFile2, IsWrittenAndRead) {
    ASSERT_EQ(sample().Write2(path("v2")), 1);
    EXPECT_EQ(get("v2"), kSample);
    CScanArea back;
    ASSERT_EQ(back.Read2(path("v2")), 1);
    EXPECT_EQ(back.CheckParameter(), 1);
    EXPECT_EQ(back.headerLine, CString(u"WQ_FSCAN_AREA_FORMAT_V2"));
    EXPECT_EQ(back.imageNames[0], CString(u" Wall, east 1.jpg"));
    EXPECT_EQ(back.imageNames[1], CString());
    EXPECT_EQ(back.shootAngles[0].kappa, 359.99999 * kDegree) << "not 360, which is 0";
    EXPECT_NEAR(back.shootAngles[0].phi, -1.25 * kDegree, 1e-15);
    EXPECT_EQ(back.Read(path("v2")), 0);
    EXPECT_EQ(get("v2"), kSample);
    EXPECT_EQ(sample().Write(path("v1")), 1);
    EXPECT_EQ(back.Read2(path("v1")), 0);
    EXPECT_EQ(back.shootAngles.GetSize(), 0);
}

TEST_F(ScanAreaFile2, RefusesWhatWouldNotReadBackAndTouchesNoFile) {
    put("v2", "before");
    CScanArea bad[] = {sample(), sample(), sample(), sample()};
    bad[0].shootAngles[1].omega = NAN;
    bad[1].areaAngle2.kappa = INFINITY;
    bad[2].imageNames[0] = bad[3].imageNames[1] = u"two\nlines";
    for (CScanArea& area : bad)
        EXPECT_EQ(area.Write2(path("v2")), 0) << &area - bad;
    EXPECT_EQ(get("v2"), "before");
    EXPECT_EQ(sample().Write2(u"/dev/full"), 0);
    EXPECT_EQ(sample().Write2(path("none/x")), 0);
}

TEST_F(ScanAreaFile2, KeepsTheFullCircleThroughPlanAndBothVersions) {
    CScanArea area, first, second;
    EXPECT_EQ(area.SetFullCircle(100 * kDegree, 70 * kDegree), 0);
    EXPECT_EQ(area.SetFullCircle(70 * kDegree, NAN), 0);
    EXPECT_TRUE(area.outlineAngles.IsEmpty());
    ASSERT_EQ(area.SetFullCircle(70 * kDegree, 100 * kDegree), 1);
    EXPECT_EQ(area.CheckOutline(), 1);
    EXPECT_EQ(area.areaAngle1.kappa, 0.0);
    EXPECT_EQ(area.areaAngle2.kappa, 359.9999 * kDegree);
    ASSERT_EQ(area.Write(path("v1")), 1);
    ASSERT_EQ(area.Write2(path("v2")), 1);
    ASSERT_EQ(first.Read(path("v1")), 1);
    ASSERT_EQ(second.Read2(path("v2")), 1);
    EXPECT_EQ(first.areaAngle2.kappa, area.areaAngle2.kappa);
    EXPECT_EQ(second.areaAngle2.kappa, 359.999 * kDegree);
    EXPECT_EQ(second.outlineAngles[3].kappa, area.areaAngle2.kappa);
    for (CScanArea* plan : {&area, &first, &second}) {
        ASSERT_EQ(plan->CalShootAng(plan->areaAngle1, plan->areaAngle2), 1);
        EXPECT_EQ(plan->columnCount, 37);
        EXPECT_EQ(plan->rowCount, 4);
    }
    second.CalHVPolyline2();
    const CPolyline& outline = second.outlinePolyline;
    for (int tenth = 1; tenth < 3600; ++tenth)
        EXPECT_EQ(CCalcXYZHV::IsPolyInside(outline, tenth * 0.1, 0), 1) << tenth;
    EXPECT_EQ(CCalcXYZHV::IsPolyInside(outline, 359.9999, 0), 1);
    EXPECT_EQ(CCalcXYZHV::IsPolyInside(outline, 180, 20.001), 0);
    EXPECT_EQ(CCalcXYZHV::IsPolyInside(outline, 180, 349.999), 0);
}

TEST_F(ScanAreaFile2, RefusesWhatIsCutOrForeign) {
    const std::string whole = kSample;
    CScanArea area;
    for (std::size_t end = 0; end < whole.size(); end = whole.find('\n', end) + 1) {
        put("cut", whole.substr(0, end));
        EXPECT_EQ(area.Read2(path("cut")), 0) << end;
        EXPECT_LE(area.shootAngles.GetSize(), 2);
    }
    const std::pair<const char*, std::vector<const char*>> changes[] = {
        {"_V2", {"_V3"}},
        {"WQ", {"wq"}},
        {"columns", {"rows"}},
        {"columns,2", {"columns,x", "columns,2x"}},
        {",1000", {",2000"}},
        {"shots,2", {"shots,2147483647", "shots,-1"}},
        {"outline,1", {"outline,-1"}},
        {"350.000 80", {"350.000 x", "350.000,80"}},
        {"Wall", {"Wa\rll"}},
        {".jpg,0", {".jpg,1"}},
        {",0,359", {"359"}},
        {"90.50000", {"nan", "x"}},
        {"5110", {"51100", "5210", "5010", "4110", "511", "51a0", "51/0", "5100"}},
        {"1235 80.5000", {"1235 80.5000 1"}}};
    for (const auto& [from, replacements] : changes)
        for (const char* to : replacements) {
            std::string text = whole;
            put("bad", text.replace(text.find(from), std::string(from).size(), to));
            EXPECT_EQ(area.Read2(path("bad")), 0) << to;
        }
    put("cut", whole.substr(0, whole.size() - 6));
    EXPECT_EQ(area.Read2(path("cut")), 0) << "8 for 80.5";
    std::string crlf = withLineEnds(whole, "\r\n");
    put("crlf", crlf);
    EXPECT_EQ(area.Read2(path("crlf")), 1);
    EXPECT_EQ(area.imageNames[0], CString(u" Wall, east 1.jpg"));
    put("turn", crlf.replace(crlf.find("350.1235"), 8, "360.0000"));
    EXPECT_EQ(area.Read2(path("turn")), 1);
    EXPECT_EQ(area.outlineAngles[0].kappa, 0.0);
}

}  // namespace
