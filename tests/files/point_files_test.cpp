// Point files, occupied-point files, image-coordinate files.
#include <fieldscan/point_files.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <string>

#include "tests/shared_data.h"
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
        std::string text = std::to_string(result);
        for (int i = 0; i < points.GetSize(); ++i) {
            text += "|";
            for (int k = 0; k < points[i].name.GetLength(); ++k)
                text += static_cast<char>(points[i].name[k]);
            for (const double value : {points[i].x, points[i].y, points[i].z}) {
                char number[40];
                std::snprintf(number, sizeof number, ":%g", value);
                text += number;
            }
        }
        return text;
    }
    Points points;
};

void addPoint(Points& points, const char16_t* name, double x, double y, double z) {
    CXYZ point(name, x, y, z);
    points.Add(point);
}

TEST_F(PointFiles, WritesTheStatedLines) {
    addPoint(points, u"P1", 1.5, -0.0000004, 1e15);
    addPoint(points, u"\u5cb3 e", 0.0000005, 2.5e-7, std::numeric_limits<double>::infinity());
    CString where = path("out");
    EXPECT_EQ(WriteCSVFile(&where, points, 1), 0) << "append needs the file";
    EXPECT_FALSE(exists("out"));
    EXPECT_EQ(WriteCSVFile(&where, points, 0), 1);
    const std::string lines =
        "P1,1.500000,-0.000000,1000000000000000.000000\n" + kanji() + " e,0.000000,0.000000,inf\n";
    EXPECT_EQ(get("out"), lines);
    EXPECT_EQ(WriteCSVFile(&where, points, 1), 1);
    EXPECT_EQ(get("out"), lines + lines);
    EXPECT_EQ(WriteCSVFile(&where, points, 2), 1) << "anything but 1 replaces";
    EXPECT_EQ(get("out"), lines);

    CString empty, full(u"/dev/full"), none = path("none/out");
    EXPECT_EQ(
        WriteCSVFile(&empty, points, 0) + WriteCSVFile(nullptr, points, 0) + WriteCSVFile(&none, points, 0),
        0);
    EXPECT_EQ(WriteCSVFile(&full, points, 0), 0) << "the medium is full";
    CSize size(1, 2);
    EXPECT_EQ(WriteImcFile(&full, &none, size, points), 0);
}

TEST_F(PointFiles, ReadsLinesOfEveryKind) {
    const struct {
        const char *bytes, *expected;
    } rows[] = {{"A,1,2,3\nB,4,5,6\n", "1|A:1:2:3|B:4:5:6"},
                {"A,1,2,3\r\n B\t, 4 ,+5e1 , 0x10\r\n", "1|A:1:2:3|B:4:50:16"},
                {"A,1,2,3\nlast,7,8,9", "1|A:1:2:3|last:7:8:9"},
                {"A,1,2,3,code,six,seven,eight\n", "1|A:1:2:3"},
                {"A,1\n,,,\nx y\n", "1|A:1:0:0|:0:0:0|x y:0:0:0"},
                {"A,nan,-inf,1e999\n", "1|A:nan:-inf:inf"},
                {"A,1,2,3\n\nB,4,5,6\n", "1|A:1:2:3"},
                {"A,1,2,3\n \r\nB,4,5,6\n", "1|A:1:2:3"},
                {"", "1"},
                {"\n", "1"},
                {"A,1.5x,--2,3\n", "1|A:1.5:0:3"},
                {"\x81\x40"
                 "A ,\x81\x40 2\x81\x40,\x8A\x78,3\n",
                 "1|A:2:0:3"}};
    for (const auto& row : rows) {
        if (*row.bytes == '\x81' && !usePage(932))
            continue;
        EXPECT_EQ(read(row.bytes, ReadCSVFile), row.expected) << row.bytes;
    }
    const struct {
        const char *bytes, *expected;
    } occupied[] = {{"ST1,1,2,3,1.55\r\n\r\n\nST2,4,5,6\n", "1|ST1:1:2:3|ST2:4:5:6"},
                    {"ST1,1,2,3\rST2,4,5,6\r\rST3,7,8,9", "1|ST1:1:2:3|ST2:4:5:6|ST3:7:8:9"},
                    {"\r\n", "1"}};
    for (const auto& row : occupied)
        EXPECT_EQ(read(row.bytes, ReadOccInfoFile), row.expected) << row.bytes;

    read(std::string(100000, 'n') + ",1,2,3\n" + std::string("A\0B,1,2,3\n", 10) + "\xDC\x81,5,6,7\n",
         ReadCSVFile);
    ASSERT_EQ(points.GetSize(), 3);
    EXPECT_EQ(points[0].name.GetLength(), 100000);
    EXPECT_EQ(points[1].name.GetLength(), 3);
    EXPECT_EQ(points[2].name, CString(ansiPage() == 932 ? u"\uff9c\u0081" : u"\u00dc\u0081"));
}

TEST_F(PointFiles, MakesAMissingFileUnlessItMustExist) {
    CString where = path("new"), empty, name(u"before"), inNoFolder = path("none/new"),
            aFolder(folder.c_str());
    CSize size(7, 8);
    addPoint(points, u"old", 1, 2, 3);
    EXPECT_EQ(ReadCSVFile(&where, points, 1), 0);
    EXPECT_EQ(points.GetCapacity(), 0) << "the list is emptied at once";
    EXPECT_EQ(ReadImcFile(&where, &name, size, points, 1), 0);
    EXPECT_EQ(name, CString(u"before"));
    EXPECT_FALSE(exists("new"));
    EXPECT_EQ(ReadCSVFile(&where, points, 0), 1);
    EXPECT_TRUE(exists("new"));
    std::filesystem::remove(folder / "new");
    EXPECT_EQ(ReadImcFile(&where, &name, size, points, 0), 0) << "no second line";
    EXPECT_TRUE(name.IsEmpty());
    EXPECT_TRUE(exists("new"));
    EXPECT_EQ(size.cx * 10 + size.cy, 78);
    CString unreadable(u"/proc/self/mem");
    for (CString* bad : {&unreadable, &empty, &inNoFolder, &aFolder, static_cast<CString*>(nullptr)})
        EXPECT_EQ(ReadCSVFile(bad, points, 0) + ReadOccInfoFile(bad, points, 0) +
                      ReadImcFile(bad, &name, size, points, 0),
                  0);
}

TEST_F(PointFiles, ImageCoordinates) {
    CString where = path("imc"), name(u"IMG 1.jpg"), readName;
    CSize size(1280, 1024), readSize;
    addPoint(points, u"1", 12.5, -1023.00000000005, 99);
    addPoint(points, u"\u5cb3", 1e15, 0, 99);
    ASSERT_EQ(WriteImcFile(&where, &name, size, points), 1);
    EXPECT_EQ(get("imc"), "IMG 1.jpg\n1280 1024\n2\n1        12.5000000000     -1023.0000000001\n" + kanji() +
                              " 1000000000000000.0000000000         0.0000000000\n");
    ASSERT_EQ(ReadImcFile(&where, &readName, readSize, points, 1), 1);
    EXPECT_EQ(readName, name);
    EXPECT_EQ(readSize, size);
    ASSERT_EQ(points.GetSize(), 2);
    EXPECT_EQ(points[1].name, CString(kanji().c_str()));
    EXPECT_EQ(points[1].x + points[1].z, 1e15);

    const auto reader = [&](CString* file, Points& list, int mustExist) {
        readSize = CSize(7, 8);
        return ReadImcFile(file, &readName, readSize, list, mustExist);
    };
    const struct {
        const char *bytes, *expected;
        int width;
    } rows[] = {{"i\n640 480\n0\n", "1", 640},
                {"i\n640 480\n-5\nA 1 2\n", "1", 640},
                {"i\n640 480\n2\nA 1 2 \r\nB 3 4 tail", "1|A:1:2:0|B:3:4:0", 640},
                {"i\n640 480\n2\nA 1\nB x 4\n", "1|A:1:0:0|B:0:0:0", 640},
                {"i\n640 480\n3\nA 1 2\n\nC 5 6\n", "0|A:1:2:0|:0:0:0|:0:0:0", 640},
                {"i\n640 480\n2\nA 1 2\n", "0|A:1:2:0|:0:0:0", 640},
                {"i\n640 480\n2000000000\nA 1 2\nB 3 4\n", "0|A:1:2:0|B:3:4:0", 640},
                {"i\n640 480\n2000000000\n", "0", 640},
                {"i\n640 480\n1\n", "0", 640},
                {"i\nwide 480\nfew\nA 1 2\n", "1", 7},
                {"i\n640 480\n\n", "0", 640},
                {"i\n \n1\nA 1 2\n", "0", 7},
                {"i", "0", 7},
                {"", "0", 7}};
    for (const auto& row : rows) {
        EXPECT_EQ(read(row.bytes, reader), row.expected) << row.bytes;
        EXPECT_EQ(readSize.cx, row.width) << row.bytes;
    }
}

TEST_F(PointFiles, AMillionPoints) {
    points.SetSize(1000000);
    for (int i = 0; i < points.GetSize(); ++i)
        points[i].SetXYZ(i * 0.001, 4000000 + i, -i);
    CString where = path("many");
    ASSERT_EQ(WriteCSVFile(&where, points, 0), 1);
    ASSERT_EQ(ReadCSVFile(&where, points, 1), 1);
    ASSERT_EQ(points.GetSize(), 1000000);
    EXPECT_EQ(points[999999].x + points[123456].y, 999.999 + 4123456);
}

// The room for the points follows the length of the lines so far.
TEST_F(PointFiles, LinesOfUnequalLength) {
    std::string shortLines, longLines;
    for (int i = 0; i < 50000; ++i)
        shortLines += "a\n";
    for (int i = 0; i < 100; ++i)
        longLines += "b," + std::string(5000, ' ') + "7\n";
    for (const std::string& bytes : {shortLines + longLines, longLines + shortLines}) {
        put("in", bytes);
        CString where = path("in");
        ASSERT_EQ(ReadCSVFile(&where, points, 1), 1);
        ASSERT_EQ(points.GetSize(), 50100);
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
    EXPECT_EQ(title, CString(u"JOB 1"));
    EXPECT_EQ(EditFileName(u"\\SD Card\\", title), 0);
    EXPECT_EQ(CStringToDBL(u" -12.5e1,"), -125.0);
    EXPECT_EQ(CStringToDBL(u""), 0.0);
    EXPECT_EQ(CStringToDBL(CString('0', 300) + u"7"), 7.0);
}

// Lists whose bytes other software produced.
TEST_F(PointFiles, WriteTheBytesOfRealLists) {
    for (const SharedList& list : kSharedLists) {
        list.read(points);
        if (points.IsEmpty())
            GTEST_SKIP() << kNoSharedData;
        if (!usePage(list.codePage))
            continue;
        CString where = path("out");
        ASSERT_EQ(WriteCSVFile(&where, points, 0), 1);
        EXPECT_TRUE(get("out") == sharedBytes("points/" + list.name + ".WriteCSVFile.txt")) << list.name;
        Points back;
        ASSERT_EQ(ReadCSVFile(&where, back, 1), 1);
        ASSERT_EQ(back.GetSize(), points.GetSize());
        int replaced = 0;
        for (int i = 0; i < back.GetSize(); ++i) {
            const bool lacking = back[i].name.Find('?') >= 0;
            replaced += lacking;
            ASSERT_TRUE(lacking || back[i].name == points[i].name) << list.name << " " << i;
        }
        EXPECT_EQ(replaced, list.name[0] == 'm' ? 3 : 0) << "characters that the page lacks";
    }
}

}  // namespace
