// Point files, occupied-point files, image-coordinate files.
#include <fieldscan/point_files.h>
#include <fieldscan/scan_result_files.h>
#include <gtest/gtest.h>

#include <limits>
#include <sstream>
#include <string>
#include <tuple>
#include <utility>

#include "tests/temp_folder.h"

namespace {

using Points = CArray<CXYZ, CXYZ&>;

class PointFiles : public TempFolder {
protected:
    // Reads bytes as a file; the result, then each point as "name:x:y:z".
    template <class Read>
    std::string read(const std::string& bytes, Read reader) {
        put("in", bytes);
        CString where = path("in");
        const int result = reader(&where, points, 1);
        std::ostringstream text;
        text << result;
        for (int i = 0; i < points.GetSize(); ++i) {
            text << '|';
            for (int k = 0; k < points[i].name.GetLength(); ++k)
                text << static_cast<char>(points[i].name[k]);
            text << ':' << points[i].x << ':' << points[i].y << ':' << points[i].z;
        }
        return text.str();
    }
    void addPoint(const CString& name, double x, double y, double z) {
        CXYZ point(name, x, y, z);
        points.Add(point);
    }
    Points points;
};

TEST_F(PointFiles, WritesALineAPoint) {
    addPoint(u"P1", 1.5, -0.0000004, 1e15);
    addPoint(u"\u5cb3 e", 0.0000005, 2.5e-7, std::numeric_limits<double>::infinity());
    addPoint(u"", 9.9999996, 4470123.45675, -450);
    addPoint(CString('n', 40), 1, 2, 3);
    CString where = path("out");
    EXPECT_EQ(WriteCSVFile(&where, points, 1), 0) << "append needs the file";
    EXPECT_FALSE(exists("out"));
    EXPECT_EQ(WriteCSVFile(&where, points, 0), 1);
    const std::string lines = "P1,1.500000,-0.000000,1000000000000000.000000\n" + kanji() +
                              " e,0.000000,0.000000,inf\n,10.000000,4470123.456750,-450.000000\n" +
                              std::string(40, 'n') + ",1.000000,2.000000,3.000000\n";
    EXPECT_EQ(get("out"), lines);
    EXPECT_EQ(WriteCSVFile(&where, points, 1), 1);
    EXPECT_EQ(get("out"), lines + lines);
    EXPECT_EQ(WriteCSVFile(&where, points, 2), 1);
    EXPECT_EQ(get("out"), lines) << "anything but 1 replaces";
}

TEST_F(PointFiles, WithoutAPathFail) {
    CString name;
    CSize size;
    EXPECT_EQ(WriteCSVFile(nullptr, points, 0), 0);
    EXPECT_EQ(WriteImcFile(nullptr, &name, size, points), 0);
    EXPECT_EQ(ReadCSVFile(nullptr, points, 0), 0);
    EXPECT_EQ(ReadOccInfoFile(nullptr, points, 0), 0);
    EXPECT_EQ(ReadImcFile(nullptr, &name, size, points, 0), 0);
}

TEST_F(PointFiles, ReadsLinesOfEveryKind) {
    const std::pair<const char*, const char*> rows[] = {
        {"A,1,2,3\nB,4,5,6\n", "1|A:1:2:3|B:4:5:6"},
        {"A,1,2,3\r\n B\t, 4 ,+5e1 , 0x10\r\n", "1|A:1:2:3|B:4:50:16"},
        {"A,1,2,3\nlast,7,8,9", "1|A:1:2:3|last:7:8:9"},
        {"A,1,2,3,code,six,seven,eight\n", "1|A:1:2:3"},
        {"A,1\n,,,\nx y\n", "1|A:1:0:0|:0:0:0|x y:0:0:0"},
        {"A,nan,-inf,1e999\n", "1|A:nan:-inf:inf"},
        {"A,1,2,3\n\nB,4,5,6\n", "1|A:1:2:3"},
        {"A,1,2,3\n \r\nB,4,5,6\n", "1|A:1:2:3"},
        {"", "1"},
        {"\n", "1"},
        {"A,1.5x,--2,3\n", "1|A:1.5:0:3"}};
    for (const auto& [bytes, expected] : rows)
        EXPECT_EQ(read(bytes, ReadCSVFile), expected) << bytes;
    const std::pair<const char*, const char*> occupied[] = {
        {"ST1,1,2,3,1.55\r\n\r\n\nST2,4,5,6\n", "1|ST1:1:2:3|ST2:4:5:6"},
        {"ST1,1,2,3\rST2,4,5,6\r\rST3,7,8,9", "1|ST1:1:2:3|ST2:4:5:6|ST3:7:8:9"},
        {"\r\n", "1"}};
    for (const auto& [bytes, expected] : occupied)
        EXPECT_EQ(read(bytes, ReadOccInfoFile), expected) << bytes;

    if (usePage(932)) {
        EXPECT_EQ(read("\x81\x40\x41 ,\x81\x40 2\x81\x40,\x8A\x78,3\n", ReadCSVFile), "1|A:2:0:3");
        EXPECT_EQ(read("A,1,2,3\n\x81\x40 \n", ReadOccInfoFile), "1|A:1:2:3");
        EXPECT_EQ(read("A,1,2,3\n \x81\x40\x81\x40\r\nB,4,5,6\n", ReadCSVFile), "1|A:1:2:3");
        EXPECT_EQ(read("A,1,2,3\n\x81\x41\nB,4,5,6\n", ReadCSVFile).substr(0, 2), "1|");
        EXPECT_EQ(points.GetSize(), 3) << "a comma of the page's own is no blank";
    }
}

TEST_F(PointFiles, ReadsNamesOfAnyBytes) {
    usePage(932);
    read(std::string(100000, 'n') + ",1,2,3\n" + std::string("A\0B,1,2,3\n", 10) + "\xDC\x81,5,6,7\n",
         ReadCSVFile);
    ASSERT_EQ(points.GetSize(), 3);
    EXPECT_EQ(points[0].name.GetLength(), 100000);
    EXPECT_EQ(points[1].name, CString(u"A\0B", 3));
    EXPECT_EQ(points[2].name, CString(ansiPage() == 932 ? u"\uff9c\u0081" : u"\u00dc\u0081"));
}

TEST_F(PointFiles, MakesAMissingFileUnlessItMustExist) {
    CString where = path("new"), name(u"before");
    CSize size(7, 8);
    addPoint(u"old", 1, 2, 3);
    EXPECT_EQ(ReadCSVFile(&where, points, 1), 0);
    EXPECT_EQ(points.GetCapacity(), 0) << "the list is emptied at once";
    EXPECT_EQ(ReadImcFile(&where, &name, size, points, 1), 0);
    EXPECT_EQ(name, u"before");
    EXPECT_FALSE(exists("new"));
    EXPECT_EQ(ReadCSVFile(&where, points, 0), 1);
    EXPECT_TRUE(std::filesystem::remove(folder / "new"));
    EXPECT_EQ(ReadImcFile(&where, &name, size, points, 0), 0) << "no second line";
    EXPECT_TRUE(exists("new"));
    EXPECT_EQ(name, u"");
    EXPECT_EQ(size.cx, 7);
}

TEST_F(PointFiles, ImageCoordinates) {
    CString where = path("imc"), name(u"IMG 1.jpg"), readName;
    CSize size(1280, 1024), readSize;
    addPoint(u"1", 12.5, -1023.00000000005, 99);
    addPoint(u"\u5cb3", 1e15, 0, 99);
    ASSERT_EQ(WriteImcFile(&where, &name, size, points), 1);
    EXPECT_EQ(get("imc"), "IMG 1.jpg\n1280 1024\n2\n1        12.5000000000     -1023.0000000001\n" + kanji() +
                              " 1000000000000000.0000000000         0.0000000000\n");
    ASSERT_EQ(ReadImcFile(&where, &readName, readSize, points, 1), 1);
    EXPECT_EQ(readName, name);
    EXPECT_EQ(readSize.cx, 1280);
    EXPECT_EQ(readSize.cy, 1024);
    ASSERT_EQ(points.GetSize(), 2);
    EXPECT_EQ(points[1].name, CString(kanji().c_str()));
    EXPECT_EQ(points[1].x, 1e15);
    EXPECT_EQ(points[1].z, 0.0);
}

TEST_F(PointFiles, ReadsImageCoordinatesOfEveryKind) {
    CString readName;
    CSize readSize;
    const auto reader = [&](CString* file, Points& list, int mustExist) {
        readSize = CSize(7, 8);
        return ReadImcFile(file, &readName, readSize, list, mustExist);
    };
    const std::tuple<const char*, const char*, int> rows[] = {
        {"i\n640 480\n0\n", "1", 640},
        {"i\n640 480\n-5\nA 1 2\n", "1", 640},
        {"i\n640 480\n2\nA 1 2 \r\nB 3 4 tail", "1|A:1:2:0|B:3:4:0", 640},
        {"i\n640 480\n2\nA 1\nB x 4\n", "1|A:1:0:0|B:0:0:0", 640},
        {"i\n640 480\n3\nA 1 2\n\nC 5 6\n", "0|A:1:2:0|:0:0:0|:0:0:0", 640},
        {"i\n640 480\n2\nA 1 2\n", "0|A:1:2:0|:0:0:0", 640},
        {"i\n640 480\n2000000000\nA 1 2\nB 3 4\n", "0|A:1:2:0|B:3:4:0", 640},
        {"i\n640 480\n1\n", "0", 640},
        {"i\nwide 480\nfew\nA 1 2\n", "1", 7},
        {"i\n640 480\n\n", "0", 640},
        {"i\n \n1\nA 1 2\n", "0", 7},
        {"i", "0", 7},
        {"", "0", 7}};
    for (const auto& [bytes, expected, width] : rows) {
        EXPECT_EQ(read(bytes, reader), expected) << bytes;
        EXPECT_EQ(readSize.cx, width) << bytes;
    }
    if (usePage(932)) {
        EXPECT_EQ(read("i\n\x81\x40\n1\nA 1 2\n", reader), "0");
        EXPECT_EQ(read("i\n640 480\n2\n\x81\x40 \nB 3 4\n", reader), "0|:0:0:0|:0:0:0");
    }
}

// Many enough for a list in large pages. The room for the points follows the length of the lines so far.
TEST_F(PointFiles, ReadsManyLinesOfUnequalLength) {
    std::string shortLines, longLines;
    for (int i = 0; i < 450000; ++i)
        shortLines += "a\n";
    for (int i = 0; i < 100; ++i)
        longLines += "b," + std::string(5000, ' ') + "7\n";
    for (const std::string& bytes : {shortLines + longLines, longLines + shortLines}) {
        put("in", bytes);
        CString where = path("in");
        ASSERT_EQ(ReadCSVFile(&where, points, 1), 1);
        ASSERT_EQ(points.GetSize(), 450100);
        double sum = 0;
        for (int i = 0; i < points.GetSize(); ++i)
            sum += points[i].x;
        EXPECT_EQ(sum, 700);
        EXPECT_LT(points.GetCapacity(), 33 * points.GetSize());
    }
}

TEST(PointText, NumbersAndTitles) {
    CString title;
    EXPECT_EQ(EditFileName(u"\\SD Card\\JOB 1.cam", title), 1);
    EXPECT_EQ(title, u"JOB 1");
    EXPECT_EQ(CStringToDBL(u" -12.5e1,"), -125.0);
    EXPECT_EQ(CStringToDBL(CString('0', 300) + u"7"), 7.0);
}

// Mountains from the list of Japan's national survey: trail bytes that are "\" and "|", a character that the
// page lacks and one that it has twice.
TEST_F(PointFiles, NamesInKanji) {
    const std::tuple<const char16_t*, double, double, double, const char*> rows[] = {
        {u"十勝岳", 43.41777777777777, 142.6863888888889, 2077,
         "\x8F\\\x8F\x9F\x8Ax,43.417778,142.686389,2077.000000\n"},
        {u"佩楯山", 32.95305555555556, 131.64583333333331, 754,
         "\x98\xCE\x8F|\x8ER,32.953056,131.645833,754.000000\n"},
        {u"薬萊山", 38.57555555555556, 140.70527777777778, 553,
         "\x96\xF2?\x8ER,38.575556,140.705278,553.000000\n"},
        {u"燧ヶ岳<柴安嵓>", 36.955000000000005, 139.28527777777776, 2356,
         "\xE0\x9C\x83\x96\x8Ax<\x8E\xC4\x88\xC0\xFA\xB0>,36.955000,139.285278,2356.000000\n"}};
    if (!usePage(932))
        GTEST_SKIP() << "the code page is another";
    std::string lines;
    for (const auto& [name, x, y, z, line] : rows) {
        addPoint(name, x, y, z);
        lines += line;
    }
    CString where = path("out");
    ASSERT_EQ(WriteCSVFile(&where, points, 0), 1);
    EXPECT_EQ(get("out"), lines);
    Points back;
    ASSERT_EQ(ReadCSVFile(&where, back, 1), 1);
    ASSERT_EQ(back.GetSize(), 4);
    for (const int i : {0, 1, 3})
        EXPECT_EQ(back[i].name, points[i].name) << i;
    EXPECT_EQ(back[2].name, CString(u"薬?山"));
}

}  // namespace
