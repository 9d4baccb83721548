// Scan result files, plain and versioned.
#include <fieldscan/scan_result_files.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "tests/shared_data.h"
#include "tests/temp_folder.h"

namespace {

using Points = CArray<CXYZ, CXYZ&>;
using Numbers = CArray<double, double>;
using ScanFiles = TempFolder;

const std::string kVersion = "FIELD_SCAN_MPT_FILEVER1.0\r\n";

CXYZ point(const char16_t* name, const char16_t* code) {
    CXYZ result(name, 1.5, -2, 3.0000005);
    result.code = code;
    result.attr[2] = -7;
    return result;
}

TEST_F(ScanFiles, AppendTheStatedLines) {
    Points points;
    for (const char16_t* code : {u"", u"WALL"}) {
        CXYZ each = point(u"P", code);
        points.Add(each);
    }
    EXPECT_EQ(ScanFileAdd(path("scan"), points[0]), 1);
    EXPECT_EQ(ScanFileAdd(path("scan"), points[1]), 1);
    EXPECT_EQ(ScanFileAdd(path("scan"), points[0], u"extra, \u5cb3"), 1);
    EXPECT_EQ(ScanFileAdd(path("scan"), points), 1);
    const std::string plain = "P,1.500000,-2.000000,3.000001\n",
                      coded = "P,1.500000,-2.000000,3.000001,WALL\n";
    EXPECT_EQ(get("scan"),
              plain + coded + "P,1.500000,-2.000000,3.000001,,-7,extra, " + kanji() + "\n" + plain + coded);
    points.SetSize(0);
    EXPECT_EQ(ScanFileAdd(path("none"), points), 1);
    EXPECT_EQ(get("none"), "");
    const CXYZ longName(CString('n', 5000), 0, 0, 0);
    ScanFileAdd(path("long"), longName);
    EXPECT_EQ(get("long").size(), 5000u + 3 * 9 + 1);
    for (const CString& bad : {CString(), path("no/folder"), CString(folder.c_str()), CString(u"/dev/full")})
        EXPECT_EQ(ScanFileAdd(bad, longName) + ScanFileAdd(bad, longName, u"") +
                      KVX4NP_CSVFileAdd(bad, longName, 0, 0, u""),
                  0);
    CFile file;
    EXPECT_EQ(ScanFileOpen(&file, CString()), 0);
    EXPECT_EQ(ScanFileOpen(&file, path("scan")), 1);
    EXPECT_EQ(file.GetPosition(), file.GetLength());
    EXPECT_EQ(ScanFileClose(&file), 1);
    EXPECT_FALSE(file.IsOpen());
    EXPECT_EQ(ScanFileClose(&file), 1);
}

TEST_F(ScanFiles, HeadersAreComparedExactly) {
    const struct {
        const char* line;
        int equal;
    } rows[] = {{"HEAD1.0\r\n", 1},   {" HEAD1.0 \t\n", 1}, {"HEAD1.0", 1}, {"Head1.0\r\n", 0},
                {"HEAD1.0.1\r\n", 0}, {"\r\n", 0},          {"", 0}};
    for (const auto& row : rows) {
        put("head", std::string(row.line) + (*row.line ? "next\n" : ""));
        if (std::string(row.line) == "HEAD1.0")
            put("head", row.line);
        CFile file;
        file.Open(path("head"), CFile::modeRead);
        EXPECT_EQ(ReadHeader(&file, u"HEAD1.0"), row.equal) << row.line;
        EXPECT_EQ(ReadHeader(&file, u""), 0) << "an empty header never matches";
    }
    CFile file;
    file.Open(path("head"), CFile::modeCreate | CFile::modeWrite);
    EXPECT_EQ(WriteHeader(&file, u"HEAD \u5cb3"), 1);
    EXPECT_EQ(get("head"), "HEAD " + kanji() + "\r\n");
    file.Close();
    EXPECT_EQ(WriteHeader(&file, u"HEAD"), 1) << "always";
    EXPECT_EQ(ReadHeader(&file, u"HEAD"), 0);
}

TEST_F(ScanFiles, VersionedFilesComeBack) {
    Points points, readPoints;
    Numbers first, second, readFirst, readSecond;
    CStringArray texts, readTexts;
    CXYZ each = point(u"P1", u"WALL");
    points.Add(each);
    each = point(u"P 2", u"");
    points.Add(each);
    first.Add(359.99994);
    second.Add(90);
    texts.Add(u"a text");  // the second point lacks all three
    EXPECT_EQ(KVX4NP_CSVFileWrite(path("v"), points, first, second, texts, 1), 0);
    EXPECT_FALSE(exists("v"));
    ASSERT_EQ(KVX4NP_CSVFileWrite(path("v"), points, first, second, texts, 0), 1);
    const std::string lines =
        "P1,1.500000,-2.000000,3.000001,WALL,-7,a text,359.9999,90.0000\n"
        "P 2,1.500000,-2.000000,3.000001,,-7,,0.0000,0.0000\n";
    EXPECT_EQ(get("v"), kVersion + lines);
    ASSERT_EQ(KVX4NP_CSVFileWrite(path("v"), points, first, second, texts, 1), 1);
    EXPECT_EQ(get("v"), kVersion + lines + lines);
    EXPECT_EQ(KVX4NP_CSVFileAdd(path("added"), points[0], 359.99994, 90, u"a text"), 1);
    EXPECT_EQ(KVX4NP_CSVFileAdd(path("added"), points[1], 0, 0, u""), 1);
    EXPECT_EQ(get("added"), kVersion + lines);

    for (std::size_t cut = 0; cut <= kVersion.size(); ++cut) {  // an interrupted first call
        put("cut", kVersion.substr(0, cut));
        EXPECT_EQ(KVX4NP_CSVFileAdd(path("cut"), points[1], 0, 0, u""), 1);
        EXPECT_EQ(get("cut"), kVersion + lines.substr(lines.find('\n') + 1)) << cut;
        put("cut", kVersion.substr(0, cut));
        EXPECT_EQ(KVX4NP_CSVFileWrite(path("cut"), points, first, second, texts, 1), 1);
        EXPECT_EQ(get("cut"), (cut > 0 ? kVersion : "") + lines) << cut;
    }
    put("cut", "FIELD_SCAN_X");
    EXPECT_EQ(KVX4NP_CSVFileAdd(path("cut"), points[0], 359.99994, 90, u"a text"), 1);
    EXPECT_EQ(get("cut"), "FIELD_SCAN_X\n" + lines.substr(0, lines.find('\n') + 1)) << "another file's line";

    ASSERT_EQ(KVX4NP_ReadCSVFile(path("v"), readPoints, readFirst, readSecond, readTexts), 1);
    ASSERT_EQ(readPoints.GetSize(), 4);
    EXPECT_EQ(readPoints[2].name + readPoints[2].code + readTexts[2], CString(u"P1WALLa text"));
    EXPECT_EQ(readPoints[3].name, CString(u"P 2"));
    EXPECT_EQ(readPoints[3].attr[2], -7);
    EXPECT_EQ(readFirst[2], 359.9999);
    EXPECT_EQ(readSecond[2], 90.0);

    const struct {
        std::string bytes;
        int result, points;
    } rows[] = {{kVersion, 1, 0},
                {"", 0, 0},
                {"field_scan_mpt_filever1.0\r\n" + lines, 0, 0},
                {kVersion + "P,1,2,3,c,4,t,5\n\n" + lines + "torn,1,2", 1, 2},
                {kVersion + " Q , 1 , 2 ,3 , c , 99999999999 , t , 5 , 6 , more , fields\r\n", 1, 1}};
    for (const auto& row : rows) {
        put("r", row.bytes);
        EXPECT_EQ(KVX4NP_ReadCSVFile(path("r"), readPoints, readFirst, readSecond, readTexts), row.result);
        EXPECT_EQ(readPoints.GetSize(), row.points) << row.bytes;
        EXPECT_EQ(readFirst.GetSize() + readSecond.GetSize() + readTexts.GetSize(), 3 * row.points);
    }
    EXPECT_EQ(readPoints[0].name + readPoints[0].code + readTexts[0], CString(u"Qct"));
    EXPECT_EQ(readPoints[0].attr[2], 2147483647) << "as 32 bits saturate";
    EXPECT_EQ(readSecond[0], 6.0);
    EXPECT_EQ(KVX4NP_ReadCSVFile(path("missing"), readPoints, readFirst, readSecond, readTexts), 0);
    EXPECT_EQ(readPoints.GetSize() + readTexts.GetSize(), 0) << "emptied first";
}

TEST_F(ScanFiles, AppendTheBytesOfRealLists) {
    for (const SharedList& list : kSharedLists) {
        Points points;
        list.read(points);
        if (points.IsEmpty())
            GTEST_SKIP() << kNoSharedData;
        if (!usePage(list.codePage))
            continue;
        ASSERT_EQ(ScanFileAdd(path(list.name), points), 1);
        EXPECT_TRUE(get(list.name) == sharedBytes("points/" + list.name + ".ScanFileAdd.txt")) << list.name;
    }
}

}  // namespace
