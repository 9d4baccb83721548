// Lines that were cut off, texts that would not come back from a line.
#include <fieldscan/camera.h>
#include <fieldscan/point_files.h>
#include <fieldscan/scan_area.h>
#include <fieldscan/scan_result_files.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

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

// A last line without line feed is a point when it has its fields, else the rest of a call that never ended.
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
        {kVersion.substr(0, kVersion.size() - 1), kVersion},
        {"F", kVersion},
        {"", kVersion},
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

// A text on a line of its own, or after the last field that is read, may hold a comma.
TEST_F(RecordedLines, TextsThatWouldNotComeBackAreRefused) {
    using Text = const CString&;
    const auto with = [](Text name, Text code) {
        CXYZ point(name, 1, 2, 3);
        point.code = code;
        return point;
    };
    const auto list = [&](Text name) -> Points& {
        points.SetSize(2);
        points[1].name = name;
        return points;
    };
    const auto asMark = [&](Text name) {
        CCamera camera;
        camera.marks.SetSize(1);
        camera.markNames.Add(name);
        return camera.Write(file);
    };
    const auto asImage = [&](CString image, Text name) {
        CSize size(1, 1);
        return WriteImcFile(&file, &image, size, list(name));
    };
    const auto asShot = [&](Text name) {
        CScanArea area;
        area.imageNames.Add(name);
        return area.Write(file);
    };
    enum Kind { field, line, word };
    const std::tuple<Kind, const char*, std::function<int(Text)>> writers[] = {
        {field, "name", [&](Text t) { return ScanFileAdd(file, with(t, u"")); }},
        {field, "name before text", [&](Text t) { return ScanFileAdd(file, with(t, u""), u""); }},
        {field, "code before text", [&](Text t) { return ScanFileAdd(file, with(u"P", t), u""); }},
        {field, "names", [&](Text t) { return ScanFileAdd(file, list(t)); }},
        {field, "new names", [&](Text t) { return WriteCSVFile(&file, list(t), 0); }},
        {field, "added names", [&](Text t) { return WriteCSVFile(&file, list(t), 1); }},
        {field, "versioned name", [&](Text t) { return KVX4NP_CSVFileAdd(file, with(t, u""), 0, 0, u""); }},
        {field, "versioned code", [&](Text t) { return KVX4NP_CSVFileAdd(file, with(u"P", t), 0, 0, u""); }},
        {field, "versioned text", [&](Text t) { return KVX4NP_CSVFileAdd(file, with(u"P", u""), 0, 0, t); }},
        {field, "versioned names",
         [&](Text t) { return KVX4NP_CSVFileWrite(file, list(t), first, second, texts, 0); }},
        {line, "code", [&](Text t) { return ScanFileAdd(file, with(u"P", t)); }},
        {line, "text", [&](Text t) { return ScanFileAdd(file, with(u"P", u""), t); }},
        {line, "image", [&](Text t) { return asImage(t, u"P"); }},
        {line, "shot", asShot},
        {word, "mark", asMark},
        {word, "image point", [&](Text t) { return asImage(u"image", t); }}};
    put("file", "kept\n");
    for (const CString& text : {CString(u"a\nb"), CString(u"a\rb"), CString(u"a\0b", 3), CString(u"\uFEFFa")})
        for (const auto& [kind, what, write] : writers)
            EXPECT_EQ(write(text), 0) << what;
    for (const auto& [kind, what, write] : writers) {
        std::vector<const char16_t*> refused;
        if (kind == word)
            refused = {u"", u"a b", u"a\tb"};
        if (kind == field)
            refused = {u"a,b"};
        for (const char16_t* text : refused)
            EXPECT_EQ(write(text), 0) << what;
    }
    EXPECT_EQ(get("file"), "kept\n");
    for (const auto& [kind, what, write] : writers)
        EXPECT_EQ(write(u"a,b"), kind != field) << what;
}

}  // namespace
