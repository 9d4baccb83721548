// Files of a value a line: panorama information, exterior orientation, unit settings, ranges. What the
// writers leave is compared with their samples in samples_test.cpp.
#include <fieldscan/panorama_files.h>
#include <fieldscan/range.h>
#include <fieldscan/unit_settings.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <sstream>
#include <string>
#include <tuple>

#include "tests/temp_folder.h"

namespace {

using namespace std::string_literals;
using ValueFiles = TempFolder;

std::string joined(std::initializer_list<double> values) {
    std::ostringstream text;
    text.precision(10);
    for (const double value : values)
        text << value << ' ';
    return text.str();
}

// The result of reading, then the values, which were 7.
std::string panorama(const unsigned short* file) {
    double a = 7, b = 7, c = 7, d = 7;
    const int result = KVX4NP_ReadPanoramaInfo(file, a, b, c, d);
    return std::to_string(result) + ": " + joined({a, b, c, d});
}
std::string orientation(const unsigned short* file) {
    double v[6] = {7, 7, 7, 7, 7, 7};
    const int result = ReadExtFile(file, v[0], v[1], v[2], v[3], v[4], v[5]);
    return std::to_string(result) + ": " + joined({v[0], v[1], v[2], v[3], v[4], v[5]});
}

TEST_F(ValueFiles, APanoramaValueThatIsNoNumberIsTheOneBefore) {
    const std::string utf8 = "\xE3\x80\x80", cp932 = "\x81\x40";  // the ideographic blank
    const std::tuple<unsigned int, std::string, const char*> rows[] = {
        {65001, "none\n 2.5deg\n// comment\r\n1e999", "1: 0 2.5 2.5 inf "},
        {65001, "1\n" + utf8 + "2.5\n3\n4\n", "1: 1 2.5 3 4 "},
        {1252, "1\n" + cp932 + "\n3\n4\n", "1: 1 1 3 4 "},
        // A line that holds nothing fails the read.
        {932, "1\n" + cp932 + "\n3\n4\n", "0: 1 7 7 7 "},
        {65001, "1\n" + utf8 + " " + utf8 + "\r\n3\n4\n", "0: 1 7 7 7 "},
        {65001, "1\n \r\n3\n4\n", "0: 1 7 7 7 "},
        {65001, "1\n\0\n3\n4\n"s, "0: 1 7 7 7 "},
        {65001, "1\n \0002.5\n3\n4\n"s, "0: 1 7 7 7 "},
        {65001, "1\n2\n3\n", "0: 1 2 3 7 "}};
    for (const auto& [page, lines, expected] : rows) {
        if (!usePage(page))
            continue;
        put("in", " KVX4NP_PANORAMAINFO_FILEVER1.0 \t\n" + lines);
        EXPECT_EQ(panorama(path("in")), expected) << lines;
    }
}

TEST_F(ValueFiles, PanoramaAndOrientationComeBack) {
    EXPECT_EQ(KVX4NP_WritePanoramaInfo(path("file"), 80.25, 359.9999994, 0.0125, -0.025), 1);
    EXPECT_EQ(panorama(path("file")), "1: 80.25 359.999999 0.0125 -0.025 ");
    EXPECT_EQ(WriteExtFile(path("file"), 1.5, -2.5, 3.5, 4.5, 5.5, 6.5), 1) << "replaces";
    EXPECT_EQ(orientation(path("file")), "1: 1.5 -2.5 3.5 4.5 5.5 6.5 ");
    EXPECT_EQ(panorama(path("file")), "0: 7 7 7 7 ") << "the other version line";
    put("file", "KZ5_EXT_FILEVER1.0\n1\n2\n3\n4\n5\n");
    EXPECT_EQ(orientation(path("file")), "0: 1 2 3 4 5 7 ");
    EXPECT_EQ(WriteExtFile(nullptr, 0, 0, 0, 0, 0, 0), 0);
    EXPECT_EQ(orientation(nullptr), "0: 7 7 7 7 7 7 ");
}

TEST_F(ValueFiles, UnitSettingsOfBothVersions) {
    CTSUnit unit, set;
    unit.meterFeet = 2;
    unit.feet = -1;
    unit.angle = 0;
    set = unit;
    EXPECT_EQ(set.version, u"FIELD_SCAN_UNI_FILEVER1.0");
    EXPECT_EQ(CTSUnit(unit).version, u"");
    const std::string v11 = "FIELD_SCAN_UNI_FILEVER1.1\n2\t\t\t// meter-feet\n-1\t\t\t// feet\n";
    EXPECT_EQ(CTSUnit(set).Write(path("u")), 1);
    EXPECT_EQ(get("u"), v11 + "0\t\t\t// angle\n");

    const std::tuple<std::string, int, const char*> rows[] = {
        {v11 + "0\t\t\t// angle\n", 1, "2 -1 0 "},
        {"field_scan_uni_filever1.1\n2\n3\n5\n", 1, "2 3 1 "},
        {" 1.0 any\r\n 2 x\r\n99999999999", 1, "2 2147483647 1 "},
        {"FIELD_SCAN_UNI_FILEVER1.1\nx\ny\nz", 1, "0 0 1 "},
        {v11, 0, "2 -1 1 "},
        {"FIELD_SCAN_UNI_FILEVER1.0\n2\n", 0, "2 0 1 "},
        {"FIELD_SCAN_UNI_FILEVER1.0\n", 0, "0 0 1 "},
        {"1.0\n \0002\n3\n"s, 0, "0 0 1 "},
        {"\n2\n3\n", 0, "0 0 1 "}};
    for (const auto& [bytes, result, expected] : rows) {
        put("in", bytes);
        unit = set;
        EXPECT_EQ(unit.Read(path("in")), result) << bytes;
        EXPECT_EQ(joined({1.0 * unit.meterFeet, 1.0 * unit.feet, 1.0 * unit.angle}), expected) << bytes;
    }
    EXPECT_EQ(set.Read(path("none/x")), 0);
    EXPECT_EQ(set.Write(path("none/x")), 0);
    EXPECT_EQ(set.feet, -1);
}

struct Range : public TempFolder {
    Range() {
        EXPECT_EQ(range.AddPoint(CXYZ(3000.48, -4000000, 12)), 1);
        EXPECT_EQ(range.AddPoint(CXYZ(-12, 5, 30.48)), 1);
    }
    // Count and corners.
    static std::string shown(const CRange& r) {
        return joined({1.0 * r.count, r.lower.x, r.lower.y, r.lower.z, r.upper.x, r.upper.y, r.upper.z});
    }
    CRange range;
};

TEST_F(Range, GrowsWithItsPoints) {
    for (const CXYZ& bad : {CXYZ(NAN, 0, 0), CXYZ(0, NAN, 0), CXYZ(0, 0, NAN)})
        EXPECT_EQ(range.AddPoint(bad), 0);
    EXPECT_EQ(range.AddPoint(CXYZ(0, 0, 20)), 1);
    EXPECT_EQ(shown(range), "3 -12 -4000000 12 3000.48 5 30.48 ");
    range.count = 2147483647;
    EXPECT_EQ(range.AddPoint(CXYZ()), 1);
    EXPECT_EQ(range.count, 2147483647);
    range.Init();
    EXPECT_EQ(range.AddPoint(CXYZ(7, 8, 9)), 1);
    EXPECT_EQ(shown(range), "1 7 8 9 7 8 9 ");
}

TEST_F(Range, ItsEdgesAreInside) {
    for (const CXYZ* corner : {&range.lower, &range.upper}) {
        const double out = corner == &range.lower ? -1e-9 : 1e-9;
        for (const double off : {0.0, out, -out}) {
            EXPECT_EQ(range.IsInside(CXYZ(corner->x + off, 0, 20)), off != out) << off;
            EXPECT_EQ(range.IsInside(CXYZ(0, corner->y + off, 20)), off != out) << off;
            EXPECT_EQ(range.IsInside(CXYZ(0, 0, corner->z + off)), off != out) << off;
        }
    }
    EXPECT_EQ(CRange().IsInside(CXYZ()), 0) << "without points";
}

TEST_F(Range, FileInEveryUnit) {
    for (int i = 0; i < 6; ++i) {
        ASSERT_EQ(range.Write(path("f"), static_cast<RANGE_AXES>(i / 3), static_cast<RANGE_UNIT>(i % 3)), 1);
        CRange back;
        EXPECT_EQ(back.Read(path("f")), 1) << i;
        EXPECT_EQ(shown(back), shown(range)) << i;
        // 30.48 m are 100 international feet, 12 m are 39.37 US survey feet.
        EXPECT_EQ(get("f").find(" 100.0000000000\t") != std::string::npos, i % 3 == 1);
        EXPECT_EQ(get("f").find(" -39.3700000000 39.3700000000\t") != std::string::npos, i == 5);
    }
    EXPECT_EQ(range.Write(path("none"), static_cast<RANGE_AXES>(2), RANGE_METRE), 0);
    EXPECT_EQ(range.Write(path("none"), RANGE_MATH, static_cast<RANGE_UNIT>(3)), 0);
    range.count = -3;
    EXPECT_EQ(range.Write(path("f"), RANGE_MATH, RANGE_METRE), 1);
    EXPECT_EQ(range.Read(path("f")), 1) << "empty";
    EXPECT_EQ(range.Read(path("none")), 0);
    EXPECT_EQ(range.count, 0);
}

TEST_F(Range, RefusesWhatIsNoRange) {
    const auto read = [&](std::string text) {
        std::replace(text.begin(), text.end(), '|', '\n');
        put("in", "FIELD_SCAN_RNG_FILEVER1.0" + text);
        return range.Read(path("in"));
    };
    EXPECT_EQ(read(" \r|0\r|0 m|4|1 2 3\r|1 3 4"), 1);
    EXPECT_EQ(read("|0|0|4|-inf -1e999 3|inf 1 4"), 1);
    for (const char* text :
         {"1|0|0|4|1 2 3|1 3 4", "|2|0|4|1 2 3|1 3 4", "|north|0|4|1 2 3|1 3 4", "|0|3|4|1 2 3|1 3 4",
          "|0||4|1 2 3|1 3 4", "|0|ft|4|1 2 3|1 3 4", "|0|0|x|1 2 3|1 3 4", "|0|0|4|2 2 3|1 3 4",
          "|0|0|-4|1 2 3|1 3 4", "|0|0|4|1 nan 3|1 3 4", "|0|0|4|1 2 3|1 3 2", "|0|0|4|1 2 -3|1 3",
          "|0|0|4|1 2 3"}) {
        EXPECT_EQ(read(text), 0) << text;
        EXPECT_EQ(shown(range), "0 0 0 0 0 0 0 ") << text;
    }
}

}  // namespace
