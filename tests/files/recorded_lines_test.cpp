// Lines that were cut off, texts that would not come back from a line, byte order marks.
#include <fieldscan/camera.h>
#include <fieldscan/panorama_files.h>
#include <fieldscan/point_files.h>
#include <fieldscan/range.h>
#include <fieldscan/scan_area.h>
#include <fieldscan/scan_result_files.h>
#include <fieldscan/unit_settings.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <tuple>
#include <utility>

#include "tests/temp_folder.h"

namespace {

using Points = CArray<CXYZ, CXYZ&>;

class RecordedLines : public TempFolder {
protected:
    void SetUp() override {
        TempFolder::SetUp();
        file = path("file");
        points.SetSize(1);
        points[0] = CXYZ(u"N", 1.0, 2.0, 3.0);
    }
    int readVersioned() { return KVX4NP_ReadCSVFile(file, points, first, second, texts); }
    CString file;
    Points points;
    CArray<double, double> first, second;
    CStringArray texts;
};

const std::string kVersion = "FIELD_SCAN_MPT_FILEVER1.0\r\n", kPlain = "N,1.000000,2.000000,3.000000\n",
                  kVersioned = "N,1.000000,2.000000,3.000000,,0,,0.0000,0.0000\n";

// A last line without line feed is a point when it has its fields, else what a writer left that never
// finished.
TEST_F(RecordedLines, AppendingKeepsPointsAndCutsTheirRests) {
    const std::string whole = "A,1,2,3\n";
    std::string tooLong;
    tooLong.resize(20000000, 'B');
    const std::pair<std::string, std::string> rows[] = {
        {"", ""},
        {whole, whole},
        {whole + "B,4,5,6", whole + "B,4,5,6\n"},
        {whole + "B,4,5,6,CO", whole + "B,4,5,6,CO\n"},
        {whole + "B,4,5,", whole},
        {whole + "B,4,5,-", whole},
        {whole + "B,4,5,na", whole},
        {whole + "B,4,5,nan", whole + "B,4,5,nan\n"},
        {whole + "B,4,5," + std::string(3, '\0'), whole},
        {whole + std::string(600, '\0'), whole},
        {whole + "B,4,5", whole},
        {whole + "B", whole},
        {"B,4", ""},
        {whole + std::string(3000, 'B') + ",4", whole},
        {whole + std::string(3000, 'B') + ",4,5,6", whole + std::string(3000, 'B') + ",4,5,6\n"},
        {tooLong, tooLong + "\n"}};
    for (const auto& [before, kept] : rows) {
        put("file", before);
        EXPECT_EQ(ScanFileAdd(file, points[0]), 1);
        EXPECT_TRUE(get("file") == kept + kPlain) << before.substr(0, 30);
        put("file", before);
        EXPECT_EQ(WriteCSVFile(&file, points, 1), 1);
        EXPECT_TRUE(get("file") == kept + kPlain) << before.substr(0, 30);
    }
}

TEST_F(RecordedLines, AppendingKeepsVersionedPointsAndCutsTheirRests) {
    usePage(65001);
    const std::string whole = kVersion + "A,1,2,3,c,4,t,5,6\n", mark = "\xEF\xBB\xBF";
    const std::pair<std::string, std::string> rows[] = {
        {whole, whole},
        {whole + "B,1,2,3,c,4,t,5,6", whole + "B,1,2,3,c,4,t,5,6\n"},
        {whole + "B,1,2,3,c,4,t,5,", whole},
        {whole + "B,1,2,3", whole},
        {kVersion + "B", kVersion},
        {mark + whole + "B,1,2,3", mark + whole},
        {mark + "FIELD_SCAN", mark + kVersion},
        {"FIELD_SCAN_MPT_FILEVER1.0 \nB,1,2,3", "FIELD_SCAN_MPT_FILEVER1.0 \n"},
        {std::string(20, '\0'), kVersion},
        {"FIELD_SCAN_X", "FIELD_SCAN_X\n"},
        {"notes\nof another kind", "notes\nof another kind\n"}};
    for (const auto& [before, kept] : rows) {
        if (before.rfind(mark, 0) == 0 && ansiPage() != 65001)
            continue;
        put("file", before);
        EXPECT_EQ(KVX4NP_CSVFileAdd(file, points[0], 0, 0, u""), 1);
        EXPECT_EQ(get("file"), kept + kVersioned);
        put("file", before);
        EXPECT_EQ(KVX4NP_CSVFileWrite(file, points, first, second, texts, 1), 1);
        EXPECT_EQ(get("file"), kept + kVersioned);
    }
}

TEST_F(RecordedLines, ReadersDropWhatWasCutOff) {
    for (const char* rest : {"B", "B,4,5", "B,4,5,", "B,4,5,-"}) {
        put("file", "A,1,2,3\n" + std::string(rest));
        EXPECT_EQ(ReadCSVFile(&file, points, 1), 1);
        EXPECT_EQ(points.GetSize(), 1) << rest;
        EXPECT_EQ(ReadOccInfoFile(&file, points, 1), 1);
        EXPECT_EQ(points.GetSize(), 1) << rest;
    }
    put("file", kVersion + "A,1,2,3,c,4,t,5,6\nB,1,2,3,c,4,t,5,");
    EXPECT_EQ(readVersioned(), 1);
    EXPECT_EQ(points.GetSize(), 1);
}

TEST_F(RecordedLines, TextsThatWouldNotComeBackAreRefused) {
    const CString comma(u"a,b"), feed(u"a\nb"), carriage(u"a\rb"), nul = CString('a') + CString(u"\0b", 2);
    const auto with = [&](const CString& name, const CString& code) {
        CXYZ point(name, 1, 2, 3);
        point.code = code;
        return point;
    };
    const auto inLists = [&](const CXYZ& point, int append) {
        Points list;
        list.SetSize(2);
        list[1] = point;
        return WriteCSVFile(&file, list, append) + (point.code.IsEmpty() ? ScanFileAdd(file, list) : 0) +
               KVX4NP_CSVFileWrite(file, list, first, second, texts, append);
    };
    const auto asMark = [&](const CString& name) {
        CCamera camera;
        camera.marks.SetSize(1);
        camera.markNames.Add(name);
        return camera.Write(file);
    };
    const auto asImage = [&](CString image, const CString& name) {
        CSize size(1, 1);
        points[0].name = name;
        return WriteImcFile(&file, &image, size, points);
    };
    const auto asShot = [&](const CString& name) {
        CScanArea area;
        area.imageNames.Add(name);
        return area.Write(file);
    };
    put("file", "kept\n");
    for (const CString& word : {CString(), CString(u"a b"), CString(u"a\tb")}) {
        EXPECT_EQ(asMark(word), 0);
        EXPECT_EQ(asImage(u"image", word), 0);
    }
    for (const CString& text : {comma, feed, carriage, nul, CString(u"\uFEFFa")}) {
        EXPECT_EQ(ScanFileAdd(file, with(text, u"")), 0);
        EXPECT_EQ(ScanFileAdd(file, with(text, u""), u""), 0);
        EXPECT_EQ(ScanFileAdd(file, with(u"P", text), u""), 0);
        EXPECT_EQ(KVX4NP_CSVFileAdd(file, with(text, u""), 0, 0, u""), 0);
        EXPECT_EQ(KVX4NP_CSVFileAdd(file, with(u"P", text), 0, 0, u""), 0);
        EXPECT_EQ(KVX4NP_CSVFileAdd(file, with(u"P", u""), 0, 0, text), 0);
        EXPECT_EQ(inLists(with(text, u""), 0), 0);
        EXPECT_EQ(inLists(with(text, u""), 1), 0);
        if (text == comma)
            continue;
        EXPECT_EQ(ScanFileAdd(file, with(u"P", text)), 0);
        EXPECT_EQ(ScanFileAdd(file, with(u"P", u""), text), 0);
        EXPECT_EQ(asMark(text), 0);
        EXPECT_EQ(asImage(text, u"P"), 0);
        EXPECT_EQ(asImage(u"image", text), 0);
        EXPECT_EQ(asShot(text), 0);
    }
    EXPECT_EQ(get("file"), "kept\n");
    EXPECT_EQ(ScanFileAdd(file, with(u"P", u""), comma), 1) << "after the fields that are read";
    EXPECT_EQ(ScanFileAdd(file, with(u"P", comma)), 1);
    EXPECT_EQ(asMark(comma), 1);
    EXPECT_EQ(asImage(comma, comma), 1);
    EXPECT_EQ(asShot(comma), 1);
}

// As spreadsheets write one. Elsewhere its bytes are characters.
TEST_F(RecordedLines, AByteOrderMarkIsPassedOver) {
    CString name;
    CSize size;
    double v[6];
    CTSUnit unit;
    CScanArea area;
    const std::pair<std::string, std::function<bool()>> rows[] = {
        {"A,1,2,3\n", [&] { return ReadCSVFile(&file, points, 1) && points[0].name == u"A"; }},
        {"A,1,2,3\n", [&] { return ReadOccInfoFile(&file, points, 1) && points[0].name == u"A"; }},
        {"i\n1 2\n0\n", [&] { return ReadImcFile(&file, &name, size, points, 1) && name == u"i"; }},
        {kVersion + "A,1,2,3,c,4,t,5,6\n", [&] { return readVersioned() && points.GetSize() == 1; }},
        {"1\n2\n3\n0\n0\n4\n5\n0\n",
         [&] {
             CCamera camera;
             return camera.Read(file) && camera.focal == 1.0;
         }},
        {"3 4\n1 2\n1 2\n", [&] { return area.Read(file) && area.columnCount == 3; }},
        {"WQ_FSCAN_AREA_FORMAT_V2\n",
         [&] { return !area.Read2(file) && area.headerLine == u"WQ_FSCAN_AREA_FORMAT_V2"; }},
        {"KVX4NP_PANORAMAINFO_FILEVER1.0\n1\n2\n3\n4\n",
         [&] { return KVX4NP_ReadPanoramaInfo(file, v[0], v[1], v[2], v[3]) == 1; }},
        {"KZ5_EXT_FILEVER1.0\n1\n2\n3\n4\n5\n6\n",
         [&] { return ReadExtFile(file, v[0], v[1], v[2], v[3], v[4], v[5]) == 1; }},
        {"FIELD_SCAN_UNI_FILEVER1.1\n1\n2\n3\n", [&] { return unit.Read(file) && unit.angle == 3; }},
        {"FIELD_SCAN_RNG_FILEVER1.0\n0\n0\n1\n1 2 3\n1 2 3\n", [&] { return CRange().Read(file) == 1; }}};
    for (const auto& [bytes, reads] : rows) {
        put("file", "\xEF\xBB\xBF" + bytes);
        if (usePage(65001)) {
            EXPECT_TRUE(reads()) << bytes;
        }
        if (usePage(1252)) {
            EXPECT_FALSE(reads()) << bytes;
        }
    }
}

}  // namespace
