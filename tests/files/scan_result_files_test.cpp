// Scan result files, plain and versioned.
#include <fieldscan/scan_result_files.h>
#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <utility>

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
    points.SetSize(2);
    points[0] = point(u"P", u"");
    points[1] = point(u"P", u"WALL");
    const CString scan = path("scan");
    EXPECT_TRUE(ScanFileAdd(scan, points[0]) && ScanFileAdd(scan, points[1]) &&
                ScanFileAdd(scan, points[0], u"extra, \u5cb3") && ScanFileAdd(scan, points));
    const std::string plain = "P,1.500000,-2.000000,3.000001\n",
                      coded = "P,1.500000,-2.000000,3.000001,WALL\n";
    EXPECT_EQ(get("scan"),
              plain + coded + "P,1.500000,-2.000000,3.000001,,-7,extra, " + kanji() + "\n" + plain + coded);
    points.SetSize(0);
    EXPECT_TRUE(ScanFileAdd(path("none"), points) && get("none").empty());
    const CXYZ longName(CString('n', 5000), 0, 0, 0);
    ScanFileAdd(path("long"), longName);
    EXPECT_EQ(get("long").size(), 5000u + 3 * 9 + 1);
    for (const CString& bad : {CString(), path("no/folder"), CString(folder.c_str()), CString(u"/dev/full")})
        EXPECT_EQ(ScanFileAdd(bad, longName) + ScanFileAdd(bad, longName, u"") +
                      KVX4NP_CSVFileAdd(bad, longName, 0, 0, u""),
                  0);
    CFile file;
    EXPECT_TRUE(!ScanFileOpen(&file, CString()) && ScanFileOpen(&file, scan));
    EXPECT_EQ(file.GetPosition(), file.GetLength());
    EXPECT_TRUE(ScanFileClose(&file) && !file.IsOpen() && ScanFileClose(&file));
}

TEST_F(ScanFiles, HeadersAreComparedExactly) {
    const std::pair<std::string, int> rows[] = {
        {"HEAD1.0\r\nnext\n", 1},   {" HEAD1.0 \t\nnext\n", 1}, {"HEAD1.0", 1}, {"Head1.0\r\nnext\n", 0},
        {"HEAD1.0.1\r\nnext\n", 0}, {"\r\nnext\n", 0},          {"", 0}};
    for (const auto& [bytes, equal] : rows) {
        put("head", bytes);
        CFile file;
        file.Open(path("head"), CFile::modeRead);
        EXPECT_EQ(ReadHeader(&file, u"HEAD1.0"), equal) << bytes;
        EXPECT_EQ(ReadHeader(&file, u""), 0) << "an empty header never matches";
    }
    CFile file;
    file.Open(path("head"), CFile::modeCreate | CFile::modeWrite);
    EXPECT_TRUE(WriteHeader(&file, u"HEAD \u5cb3") && get("head") == "HEAD " + kanji() + "\r\n");
    file.Close();
    EXPECT_EQ(WriteHeader(&file, u"HEAD"), 1) << "always";
    EXPECT_EQ(ReadHeader(&file, u"HEAD"), 0);
}

TEST_F(ScanFiles, VersionedFilesComeBack) {
    Points points, readPoints;
    Numbers first, second, readFirst, readSecond;
    CStringArray texts, readTexts;
    points.SetSize(2);
    points[0] = point(u"P1", u"WALL");
    points[1] = point(u"P 2", u"");
    first.Add(359.99994);
    second.Add(90);
    texts.Add(u"a text");  // the second point lacks all three
    EXPECT_FALSE(KVX4NP_CSVFileWrite(path("v"), points, first, second, texts, 1) || exists("v"));
    ASSERT_EQ(KVX4NP_CSVFileWrite(path("v"), points, first, second, texts, 0), 1);
    const std::string firstLine = "P1,1.500000,-2.000000,3.000001,WALL,-7,a text,359.9999,90.0000\n",
                      secondLine = "P 2,1.500000,-2.000000,3.000001,,-7,,0.0000,0.0000\n",
                      lines = firstLine + secondLine;
    EXPECT_EQ(get("v"), kVersion + lines);
    ASSERT_EQ(KVX4NP_CSVFileWrite(path("v"), points, first, second, texts, 1), 1);
    EXPECT_EQ(get("v"), kVersion + lines + lines);
    EXPECT_TRUE(KVX4NP_CSVFileAdd(path("added"), points[0], 359.99994, 90, u"a text") &&
                KVX4NP_CSVFileAdd(path("added"), points[1], 0, 0, u""));
    EXPECT_EQ(get("added"), kVersion + lines);

    for (std::size_t cut = 0; cut <= kVersion.size(); ++cut) {  // an interrupted first call
        put("cut", kVersion.substr(0, cut));
        EXPECT_EQ(KVX4NP_CSVFileAdd(path("cut"), points[1], 0, 0, u""), 1);
        EXPECT_EQ(get("cut"), kVersion + secondLine) << cut;
        put("cut", kVersion.substr(0, cut));
        EXPECT_EQ(KVX4NP_CSVFileWrite(path("cut"), points, first, second, texts, 1), 1);
        EXPECT_EQ(get("cut"), kVersion + lines) << cut;
    }
    put("cut", "FIELD_SCAN_X");
    EXPECT_EQ(KVX4NP_CSVFileAdd(path("cut"), points[0], 359.99994, 90, u"a text"), 1);
    EXPECT_EQ(get("cut"), "FIELD_SCAN_X\n" + firstLine) << "another file's line";

    ASSERT_EQ(KVX4NP_ReadCSVFile(path("v"), readPoints, readFirst, readSecond, readTexts), 1);
    ASSERT_EQ(readPoints.GetSize(), 4);
    EXPECT_EQ(readPoints[2].name + readPoints[2].code + readTexts[2], CString(u"P1WALLa text"));
    EXPECT_TRUE(readPoints[3].name == u"P 2" && readPoints[3].attr[2] == -7);
    EXPECT_TRUE(readFirst[2] == 359.9999 && readSecond[2] == 90.0);

    const std::tuple<std::string, int, int> rows[] = {
        {kVersion, 1, 0},
        {"", 0, 0},
        {"field_scan_mpt_filever1.0\r\n" + lines, 0, 0},
        {kVersion + "P,1,2,3,c,4,t,5\n\n" + lines + "torn,1,2", 1, 2},
        {kVersion + " Q , 1 , 2 ,3 , c , 99999999999 , t , 5 , 6 , more , fields\r\n", 1, 1}};
    for (const auto& [bytes, result, count] : rows) {
        put("r", bytes);
        EXPECT_EQ(KVX4NP_ReadCSVFile(path("r"), readPoints, readFirst, readSecond, readTexts), result);
        EXPECT_EQ(readPoints.GetSize(), count) << bytes;
        EXPECT_EQ(readFirst.GetSize() + readSecond.GetSize() + readTexts.GetSize(), 3 * count);
    }
    EXPECT_EQ(readPoints[0].name + readPoints[0].code + readTexts[0], CString(u"Qct"));
    EXPECT_TRUE(readPoints[0].attr[2] == 2147483647 && readSecond[0] == 6.0) << "as 32 bits saturate";
    EXPECT_EQ(KVX4NP_ReadCSVFile(path("missing"), readPoints, readFirst, readSecond, readTexts), 0);
    EXPECT_EQ(readPoints.GetSize() + readTexts.GetSize(), 0) << "emptied first";
}

}  // namespace
