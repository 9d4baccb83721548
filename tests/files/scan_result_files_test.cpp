// Scan result files, plain and versioned.
#include <fieldscan/scan_result_files.h>
#include <gtest/gtest.h>

#include <string>
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

TEST_F(ScanFiles, AddALineAPoint) {
    Points points;
    points.SetSize(2);
    points[0] = point(u"P", u"");
    points[1] = point(u"P", u"WALL");
    const CString scan = path("scan");
    EXPECT_EQ(ScanFileAdd(scan, points), 1);
    EXPECT_EQ(ScanFileAdd(scan, points[1]), 1);
    EXPECT_EQ(ScanFileAdd(scan, points[0], u"extra, \u5cb3"), 1);
    const std::string number = "P,1.500000,-2.000000,3.000001", coded = number + ",WALL\n";
    EXPECT_EQ(get("scan"), number + "\n" + coded + coded + number + ",,-7,extra, " + kanji() + "\n");
    points.SetSize(0);
    EXPECT_EQ(ScanFileAdd(path("none"), points), 1);
    EXPECT_EQ(get("none"), "");
    EXPECT_EQ(ScanFileAdd(path("long"), CXYZ(CString('n', 5000), 0, 0, 0)), 1);
    EXPECT_EQ(get("long").size(), 5000u + 3 * 9 + 1);
}

TEST_F(ScanFiles, OpenAtTheirEnd) {
    put("scan", "P,1,2,3\n");
    CFile file;
    EXPECT_EQ(ScanFileOpen(&file, CString()), 0);
    EXPECT_EQ(ScanFileOpen(&file, path("scan")), 1);
    EXPECT_EQ(file.GetPosition(), 8);
    EXPECT_EQ(ScanFileClose(&file), 1);
    EXPECT_FALSE(file.IsOpen());
    EXPECT_EQ(ScanFileClose(&file), 1) << "always";
}

TEST_F(ScanFiles, HeadersAreComparedExactly) {
    const std::pair<std::string, int> rows[] = {
        {"HEAD1.0\r\nnext\n", 1},   {" HEAD1.0 \t\nnext\n", 1}, {"HEAD1.0", 1}, {"Head1.0\r\nnext\n", 0},
        {"HEAD1.0.1\r\nnext\n", 0}, {"\r\nnext\n", 0},          {"", 0}};
    for (const auto& [bytes, equal] : rows) {
        put("head", bytes);
        CFile file;
        EXPECT_EQ(file.Open(path("head"), CFile::modeRead), 1);
        EXPECT_EQ(ReadHeader(&file, u"HEAD1.0"), equal) << bytes;
        EXPECT_EQ(ReadHeader(&file, u""), 0) << "an empty header never matches";
    }
    CFile file;
    EXPECT_EQ(file.Open(path("head"), CFile::modeCreate | CFile::modeWrite), 1);
    EXPECT_EQ(WriteHeader(&file, u"HEAD \u5cb3"), 1);
    file.Close();
    EXPECT_EQ(get("head"), "HEAD " + kanji() + "\r\n");
    EXPECT_EQ(WriteHeader(&file, u"HEAD"), 1) << "always";
    EXPECT_EQ(ReadHeader(&file, u"HEAD"), 0);
}

class VersionedFiles : public TempFolder {
protected:
    void SetUp() override {
        TempFolder::SetUp();
        points.SetSize(2);
        points[0] = point(u"P1", u"WALL");
        points[1] = point(u"P 2", u"");
        first.Add(359.99994);
        second.Add(90);
        texts.Add(u"a text");  // the second point lacks all three
    }
    int write(const char* name, int append) {
        return KVX4NP_CSVFileWrite(path(name), points, first, second, texts, append);
    }
    int add(const char* name) { return KVX4NP_CSVFileAdd(path(name), points[0], 359.99994, 90, u"a text"); }
    // The result of reading, then each point as its writer would have it.
    std::string read(const std::string& bytes) {
        put("read", bytes);
        Points back;
        Numbers backFirst, backSecond;
        CStringArray backTexts;
        const int result = KVX4NP_ReadCSVFile(path("read"), back, backFirst, backSecond, backTexts);
        EXPECT_EQ(backFirst.GetSize(), back.GetSize());
        EXPECT_EQ(backSecond.GetSize(), back.GetSize());
        EXPECT_EQ(backTexts.GetSize(), back.GetSize());
        EXPECT_EQ(KVX4NP_CSVFileWrite(path("again"), back, backFirst, backSecond, backTexts, 0), 1);
        return std::to_string(result) + ": " + get("again").substr(kVersion.size());
    }
    Points points;
    Numbers first, second;
    CStringArray texts;
    const std::string firstLine = "P1,1.500000,-2.000000,3.000001,WALL,-7,a text,359.9999,90.0000\n",
                      secondLine = "P 2,1.500000,-2.000000,3.000001,,-7,,0.0000,0.0000\n",
                      lines = firstLine + secondLine;
};

TEST_F(VersionedFiles, AreWrittenAndAddedTo) {
    EXPECT_EQ(write("file", 1), 0) << "append needs the file";
    EXPECT_FALSE(exists("file"));
    EXPECT_EQ(write("file", 0), 1);
    EXPECT_EQ(get("file"), kVersion + lines);
    EXPECT_EQ(write("file", 1), 1);
    EXPECT_EQ(get("file"), kVersion + lines + lines);
    EXPECT_EQ(add("new"), 1);
    EXPECT_EQ(add("new"), 1);
    EXPECT_EQ(get("new"), kVersion + firstLine + firstLine);
}

TEST_F(VersionedFiles, AreReadUpToTheFirstLineThatIsNone) {
    const std::pair<std::string, std::string> rows[] = {
        {kVersion + lines, "1: " + lines},
        {kVersion, "1: "},
        {"", "0: "},
        {"field_scan_mpt_filever1.0\r\n" + lines, "0: "},
        {kVersion + "P,1,2,3,c,4,t,5\n\n" + lines + "torn,1,2", "1: " + lines},
        {kVersion + " Q, 1 , 2 ,3 , c , 99999999999 , t , 5 , 6 , more , fields\r\n",
         "1: Q,1.000000,2.000000,3.000000,c,2147483647,t,5.0000,6.0000\n"}};
    for (const auto& [bytes, expected] : rows)
        EXPECT_EQ(read(bytes), expected) << bytes;
    EXPECT_EQ(KVX4NP_ReadCSVFile(path("missing"), points, first, second, texts), 0);
    EXPECT_EQ(points.GetSize(), 0) << "emptied first";
    EXPECT_EQ(first.GetSize(), 0);
    EXPECT_EQ(second.GetSize(), 0);
    EXPECT_EQ(texts.GetSize(), 0);
}

}  // namespace
