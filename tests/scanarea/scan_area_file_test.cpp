// The first version of the scan-area file, the message to the operator and the log.
#include <fieldscan/message.h>
#include <fieldscan/scan_area.h>
#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "tests/scanarea/scan_areas.h"
#include "tests/temp_folder.h"

namespace {

CString shown;

struct ScanAreaFile : public TempFolder {
    ScanAreaFile() { shown.Empty(); }
    ~ScanAreaFile() override { CKTImgMsg::SetHandler(before); }
    const CKTImgMsg::Handler before =
        CKTImgMsg::SetHandler([](const CString& text, const CRect&) { shown += text + u"|"; });
};

TEST_F(ScanAreaFile, KeepsGridCornersAndNames) {
    CScanArea area;
    area.areaAngle1.SetWPK(80.5 * kRadian, 9, 350 * kRadian);
    area.areaAngle2.SetWPK(100.25 * kRadian, 9, 20 * kRadian);
    ASSERT_EQ(area.Write(path("job")), 1);
    EXPECT_EQ(get("job"), "0 0\n350.000000 80.500000\n20.000000 100.250000\n");
    fillGrid(area, 2, 1);
    area.imageNames[1] = u"\u5cb3 1.jpg";
    area.imageNames.Add(u"extra.jpg");
    ASSERT_EQ(area.Write(path("job")), 1);
    EXPECT_EQ(get("job"),
              "2 1\n350.000000 80.500000\n20.000000 100.250000\n10.000000 80.000000 IMG0.jpg\n"
              "11.000000 80.000000 " +
                  kanji() + " 1.jpg\n0.000000 0.000000 extra.jpg\n");
    CScanArea read;
    read.headerLine = u"old";
    addDirection(read.outlineAngles, 1, 1);
    ASSERT_EQ(read.Read(path("job")), 1);
    EXPECT_EQ(read.columnCount, 2);
    EXPECT_EQ(read.rowCount, 1);
    EXPECT_EQ(read.areaAngle1.kappa, 350 * kRadian);
    EXPECT_EQ(read.areaAngle1.phi, 0.0);
    EXPECT_EQ(read.areaAngle2.omega, 100.25 * kRadian);
    EXPECT_EQ(read.shootAngles[1].kappa, 11 * kRadian);
    EXPECT_EQ(read.imageNames.GetSize(), 3);
    EXPECT_EQ(read.imageNames[1], CString(kanji().c_str())) << "a name ends at its first blank";
    EXPECT_TRUE(read.headerLine.IsEmpty());
    EXPECT_TRUE(read.outlineAngles.IsEmpty());
    EXPECT_TRUE(shown.IsEmpty());
}

TEST_F(ScanAreaFile, ReadsWhatItCan) {
    const std::string corners = "350 80.5\r\n2e1 +100.25 // right\n";
    const std::tuple<std::string, int, int> rows[] = {
        {"", 0, 0},
        {"1 1\n", 0, 0},
        {"1 1\n350 80\n", 0, 0},
        {"1\n" + corners, 0, 0},
        {"WQ_FSCAN_AREA_FORMAT_V2\n" + corners, 0, 0},
        {"1 1\n350\n20 100\n", 0, 0},
        {"1 1\n" + corners, 1, 0},
        {"999999999 999999999\n" + corners + "1 2 a\n\nnonsense\n3 b\n4 5\n6 7 c", 1, 3},
        {"1 1\n" + corners + "1 2 " + std::string(3000, 'n') + "\n", 1, 1},
        {std::string("1 1\n") + corners + std::string("\0\0\n1 2 a\0b\n", 11), 1, 1}};
    for (const auto& [bytes, result, shots] : rows) {
        put("job", bytes);
        CScanArea area;
        fillGrid(area, 2, 2);
        EXPECT_EQ(area.Read(path("job")), result) << bytes;
        EXPECT_EQ(area.imageNames.GetSize(), shots) << bytes;
        EXPECT_EQ(area.shootAngles.GetSize(), shots) << bytes;
        if (bytes.size() > 3000) {
            EXPECT_EQ(area.imageNames[0].GetLength(), 3000);
        }
        EXPECT_EQ(area.areaAngle2.kappa, result ? 20 * kRadian : 0.0) << bytes;
    }
}

TEST_F(ScanAreaFile, TellsTheOperatorWhenAccessIsDenied) {
    CScanArea area;
    EXPECT_EQ(area.Read(CString()), 0);
    EXPECT_EQ(area.Write(CString()), 0);
    EXPECT_EQ(area.Read(path("none")), 0);
    EXPECT_EQ(area.Write(path("none/job")), 0);
    EXPECT_TRUE(shown.IsEmpty()) << "other failures are silent";
    const CString where(folder.c_str());
    fillGrid(area, 1, 1);
    EXPECT_EQ(area.Write(where), 0);
    EXPECT_EQ(shown, accessDenied(where));
    EXPECT_EQ(area.imageNames.GetSize(), 1);
    EXPECT_EQ(area.Read(where), 0);
    EXPECT_EQ(shown, accessDenied(where) + accessDenied(where));
    EXPECT_EQ(area.imageNames.GetSize(), 0) << "Init comes first";
    EXPECT_EQ(area.Write(u"/dev/full"), 0) << "the medium is full";
}

class Derived : public CScanArea {
public:
    using CScanArea::GetImgCsvLine;
    using CScanArea::kLineSize;
    using CScanArea::WriteLogFile;
};

TEST_F(ScanAreaFile, GivesLinesAndTheLogToDerivedClasses) {
    put("lines", "one\r\n" + std::string(600, 'x') + "\nlast");
    CFile file;
    ASSERT_EQ(file.Open(path("lines"), CFile::modeRead), 1);
    Derived area;
    char buffer[Derived::kLineSize + 1];
    buffer[Derived::kLineSize] = 'S';
    for (const std::string& line : {std::string("one\r\n"), std::string(511, 'x'), std::string("last")}) {
        EXPECT_EQ(area.GetImgCsvLine(&file, buffer), static_cast<int>(line.size()));
        EXPECT_EQ(buffer, line);
    }
    EXPECT_EQ(area.GetImgCsvLine(&file, buffer), 0);
    EXPECT_EQ(buffer[Derived::kLineSize], 'S');

    const std::filesystem::path disk = deviceRoot(folder) / "Internal Disk";
    area.WriteLogFile(u"lost");  // no such folder: nothing happens
    std::filesystem::create_directories(disk / "FIELD_SCAN");
    area.WriteLogFile(u"first\n");
    area.WriteLogFile(u"\u5cb3\n");
    EXPECT_EQ(get((disk / "FIELD_SCAN/log.txt").string()), "first\n" + kanji() + "\n");
    std::filesystem::remove_all(disk);
}

}  // namespace
