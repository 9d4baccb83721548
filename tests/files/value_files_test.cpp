// Files of a value a line: panorama information, exterior orientation, unit settings, ranges.
#include <fieldscan/panorama_files.h>
#include <fieldscan/range.h>
#include <fieldscan/unit_settings.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "tests/temp_folder.h"

namespace {

using namespace std::string_literals;
using ValueFiles = TempFolder;

TEST_F(ValueFiles, PanoramaAndExteriorOrientation) {
    double a = 7, b = 7, c = 7, d = 7;
    EXPECT_EQ(KVX4NP_WritePanoramaInfo(path("p"), 80.25, 359.9999994, 0.0125, -0.025), 1);
    const std::string version = "KVX4NP_PANORAMAINFO_FILEVER1.0";
    EXPECT_EQ(get("p"), version + "\r\n80.250000\t// Vert Angle of Top-Left Corner[deg]\r\n" +
                            "359.999999\t// Horz Angle of Top-Left Corner[deg]\r\n" +
                            "0.012500\t// Vert Angle Resolution[deg]\r\n" +
                            "-0.025000\t// Horz Angle Resolution[deg]\r\n");
    put("in", " " + version + " \t\nnone\n 2.5deg\n// comment\r\n1e999");
    EXPECT_EQ(KVX4NP_ReadPanoramaInfo(path("in"), a, b, c, d), 1);
    EXPECT_EQ(a, 0.0) << "no number, none before";
    EXPECT_EQ(b, 2.5);
    EXPECT_EQ(c, 2.5) << "no number: the one before";
    EXPECT_GT(d, 1e308);
    put("in", version + "\n1\n \r\n3\n4\n");
    EXPECT_EQ(KVX4NP_ReadPanoramaInfo(path("in"), a, b, c, d), 0);
    EXPECT_EQ(a, 1.0);
    EXPECT_EQ(b, 2.5);
    EXPECT_EQ(c, 2.5);

    const std::string lines =
        "KZ5_EXT_FILEVER1.0\r\n1.500000\t// X0[m]\r\n-2.500000\t// Y0[m]\r\n3.500000\t// Z0[m]\r\n"
        "4.500000\t// omega[deg]\r\n5.500000\t// phi[deg]\r\n6.500000\t// kappa[deg]\r\n";
    const std::vector<double> written = {1.5, -2.5, 3.5, 4.5, 5.5, 6.5};
    EXPECT_EQ(WriteExtFile(path("p"), 1.5, -2.5, 3.5, 4.5, 5.5, 6.5), 1) << "replaces";
    EXPECT_EQ(get("p"), lines);
    EXPECT_EQ(KVX4NP_ReadPanoramaInfo(path("p"), a, b, c, d), 0) << "the other version line";
    std::size_t end = 0;
    for (int cut = 0; cut <= 7; ++cut, end = lines.find('\n', end) + 1) {
        put("cut", lines.substr(0, end));
        std::vector<double> v(6, 7.0), expected(written);
        EXPECT_EQ(ReadExtFile(path("cut"), v[0], v[1], v[2], v[3], v[4], v[5]), cut == 7);
        std::fill(expected.begin() + std::max(cut - 1, 0), expected.end(), 7.0);
        EXPECT_EQ(v, expected) << cut;
    }
    EXPECT_EQ(WriteExtFile(nullptr, 0, 0, 0, 0, 0, 0), 0);
    EXPECT_EQ(ReadExtFile(nullptr, a, a, a, a, a, a), 0);
}

TEST_F(ValueFiles, ALineThatHoldsNothingFailsTheRead) {
    const std::string utf8 = "\xE3\x80\x80", cp932 = "\x81\x40";
    const std::tuple<unsigned int, std::string, bool> rows[] = {
        {65001, "\0"s, false}, {65001, " \0002.5"s, false}, {65001, utf8 + " " + utf8 + "\r", false},
        {932, cp932, false},   {1252, cp932, true},         {65001, utf8 + "2.5", true}};
    for (const auto& [page, line, holds] : rows) {
        if (!usePage(page))
            continue;
        double a = 7, b = 7, c = 7, d = 7;
        put("in", "KVX4NP_PANORAMAINFO_FILEVER1.0\n1\n" + line + "\n3\n4\n");
        EXPECT_EQ(KVX4NP_ReadPanoramaInfo(path("in"), a, b, c, d), holds) << line;
        EXPECT_EQ(a, 1);
        EXPECT_EQ(b, !holds ? 7 : page == 1252 ? 1 : 2.5) << line;
        EXPECT_EQ(d, holds ? 4 : 7) << line;
        CTSUnit unit;
        put("in", "1.0\n" + line + "\n3\n");
        EXPECT_EQ(unit.Read(path("in")), holds) << line;
    }
}

TEST_F(ValueFiles, UnitSettingsOfBothVersions) {
    CTSUnit unit, set;
    unit.meterFeet = 2;
    unit.feet = -1;
    unit.angle = 0;
    set = unit;
    EXPECT_TRUE(set.version == u"FIELD_SCAN_UNI_FILEVER1.0" && CTSUnit(unit).version.IsEmpty());
    EXPECT_EQ(CTSUnit(set).Write(path("u")), 1);
    const std::string v11 = "FIELD_SCAN_UNI_FILEVER1.1\n2\t\t\t// meter-feet\n-1\t\t\t// feet\n";
    EXPECT_EQ(get("u"), v11 + "0\t\t\t// angle\n");

    const std::pair<std::string, const char*> rows[] = {
        {v11 + "0\t\t\t// angle\n", "1 2 -1 0"},
        {"field_scan_uni_filever1.1\n2\n3\n5\n", "1 2 3 1"},
        {" 1.0 any\r\n 2 x\r\n99999999999", "1 2 2147483647 1"},
        {"FIELD_SCAN_UNI_FILEVER1.1\nx\ny\nz", "1 0 0 1"},
        {v11, "0 2 -1 1"},
        {"FIELD_SCAN_UNI_FILEVER1.0\n2\n", "0 2 0 1"},
        {"FIELD_SCAN_UNI_FILEVER1.0\n", "0 0 0 1"},
        {"\n2\n3\n", "0 0 0 1"}};
    for (const auto& [bytes, expected] : rows) {
        put("in", bytes);
        unit = set;
        std::ostringstream text;
        text << unit.Read(path("in")) << ' ' << unit.meterFeet << ' ' << unit.feet << ' ' << unit.angle;
        EXPECT_EQ(text.str(), expected) << bytes;
    }
    EXPECT_FALSE(set.Read(path("none/x")) || set.Read(u"") || set.Write(path("none/x")) || set.feet != -1);
}

struct Range : public TempFolder {
    Range() {
        range.AddPoint(CXYZ(3000.48, -4000000, 12));
        range.AddPoint(CXYZ(-12, 5, 30.48));
    }
    CRange range;
};

TEST_F(Range, GrowsWithItsPoints) {
    for (const CXYZ& bad : {CXYZ(NAN, 0, 0), CXYZ(0, NAN, 0), CXYZ(0, 0, NAN)})
        EXPECT_EQ(range.AddPoint(bad), 0);
    EXPECT_TRUE(range.AddPoint(CXYZ(0, 0, 20)) && range.count == 3 && range.lower.x == -12);
    EXPECT_TRUE(range.lower.z == 12 && range.upper.EQ(CXYZ(3000.48, 5, 30.48), 0));
    for (const CXYZ* corner : {&range.lower, &range.upper})
        for (const double off : {0.0, 1e-9, -1e-9})
            EXPECT_EQ(range.IsInside(CXYZ(corner->x + off, 0, 20)) +
                          range.IsInside(CXYZ(0, corner->y + off, 20)) +
                          range.IsInside(CXYZ(0, 0, corner->z + off)),
                      off == 0 || (off > 0) == (corner == &range.lower) ? 3 : 0);
    const CRange copy(range);
    range = CRange();
    EXPECT_TRUE(!range.IsInside(CXYZ(0, 0, 20)) && (range = copy).IsInside(CXYZ(0, 0, 20)));
    range.count = 2147483647;
    EXPECT_TRUE(range.AddPoint(CXYZ()) && range.count == 2147483647);
    range.Init();
    EXPECT_TRUE(!range.IsInside(CXYZ(0, 0, 0)) && range.AddPoint(CXYZ(7, 8, 9)) && range.lower.x == 7);
}

// The rest of a file's layout: its sample, which samples_test.cpp writes.
TEST_F(Range, FileInEveryUnit) {
    for (int i = 0; i < 6; ++i) {
        ASSERT_EQ(range.Write(path("f"), static_cast<RANGE_AXES>(i / 3), static_cast<RANGE_UNIT>(i % 3)), 1);
        CRange back;
        EXPECT_TRUE(back.Read(path("f")) && back.count == 2) << i;
        EXPECT_TRUE(back.lower.EQ(range.lower, 2e-9) && back.upper.EQ(range.upper, 2e-9)) << i;
        // 30.48 m are 100 international feet, 12 m are 39.37 US survey feet.
        EXPECT_EQ(get("f").find(" 100.0000000000\t") != std::string::npos, i % 3 == 1);
        EXPECT_EQ(get("f").find(" -39.3700000000 39.3700000000\t") != std::string::npos, i == 5);
    }
    EXPECT_FALSE(range.Write(path("f"), static_cast<RANGE_AXES>(2), RANGE_METRE) ||
                 range.Write(path("f"), RANGE_MATH, static_cast<RANGE_UNIT>(3)) || get("f").empty());
    EXPECT_TRUE(!range.Read(path("none")) && range.count == 0);
    range.count = -3;
    EXPECT_TRUE(range.Write(path("f"), RANGE_MATH, RANGE_METRE) && range.Read(path("f"))) << "empty";
}

TEST_F(Range, RefusesWhatIsNoRange) {
    const auto read = [&](std::string text) {
        std::replace(text.begin(), text.end(), '|', '\n');
        put("in", "FIELD_SCAN_RNG_FILEVER1.0" + text);
        return range.Read(path("in"));
    };
    EXPECT_TRUE(read(" \r|0\r|0 m|4|1 2 3\r|1 3 4") && read("|0|0|4|-inf -1e999 3|inf 1 4"));
    for (const char* text :
         {"1|0|0|4|1 2 3|1 3 4", "|2|0|4|1 2 3|1 3 4", "|north|0|4|1 2 3|1 3 4", "|0|3|4|1 2 3|1 3 4",
          "|0||4|1 2 3|1 3 4", "|0|ft|4|1 2 3|1 3 4", "|0|0|x|1 2 3|1 3 4", "|0|0|4|2 2 3|1 3 4",
          "|0|0|-4|1 2 3|1 3 4", "|0|0|4|1 nan 3|1 3 4", "|0|0|4|1 2 3|1 3 2", "|0|0|4|1 2 -3|1 3",
          "|0|0|4|1 2 3"})
        EXPECT_TRUE(!read(text) && range.count == 0 && range.upper.Len() == 0) << text;
}

}  // namespace
