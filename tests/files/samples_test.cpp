// A sample of each file format, docs/samples, is read and written again byte for byte, also with other line
// ends and a byte order mark; docs/file_formats.md shows the same lines.
#include <fieldscan/fieldscan.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "tests/temp_folder.h"

namespace {

int rewrite(const std::string& name, CString from, CString to) {
    CArray<CXYZ, CXYZ&> points;
    CArray<double, double> first, second;
    CStringArray texts;
    CString image;
    CSize size;
    CCamera camera;
    CTSUnit unit;
    CScanArea area;
    CRange range;
    double v[6];
    if (name == "camera.txt")
        return camera.Read(from) && camera.Write(to);
    if (name == "unit_settings.txt")
        return unit.Read(from) && unit.Write(to);
    if (name == "scan_area.txt")
        return area.Read(from) && area.Write(to);
    if (name == "scan_area_v2.txt")
        return area.Read2(from) && area.Write2(to);
    if (name == "range.txt")
        return range.Read(from) && range.Write(to, RANGE_SURVEY, RANGE_METRE);
    if (name == "points.csv")
        return ReadCSVFile(&from, points, 1) && WriteCSVFile(&to, points, 0);
    if (name == "image_points.txt")
        return ReadImcFile(&from, &image, size, points, 1) && WriteImcFile(&to, &image, size, points);
    if (name == "versioned_scan.csv")
        return KVX4NP_ReadCSVFile(from, points, first, second, texts) &&
               KVX4NP_CSVFileWrite(to, points, first, second, texts, 0);
    if (name == "panorama_info.txt")
        return KVX4NP_ReadPanoramaInfo(from, v[0], v[1], v[2], v[3]) &&
               KVX4NP_WritePanoramaInfo(to, v[0], v[1], v[2], v[3]);
    if (name == "exterior_orientation.ext")
        return ReadExtFile(from, v[0], v[1], v[2], v[3], v[4], v[5]) &&
               WriteExtFile(to, v[0], v[1], v[2], v[3], v[4], v[5]);
    // What follows the four fields of a point is not read in these two.
    if (name == "occupied_points.csv" && ReadOccInfoFile(&from, points, 1) && points.GetSize() == 1) {
        points[0].code = u"1.525";
        return ScanFileAdd(to, points);
    }
    if (name == "scan_results.csv" && ReadCSVFile(&from, points, 1) && points.GetSize() == 3) {
        points[1].code = points[2].code = u"WALL";
        points[2].attr[2] = 3;
        return ScanFileAdd(to, points[0]) && ScanFileAdd(to, points[1]) &&
               ScanFileAdd(to, points[2], u"a text");
    }
    return 0;
}

using Samples = TempFolder;

TEST_F(Samples, AreWrittenAsTheyWereRead) {
    // With a drive on Windows, so that it can follow a folder.
    const std::filesystem::path docs = std::filesystem::absolute(FIELDSCAN_DOCS);
    const std::string page = get((docs / "file_formats.md").string());
    int samples = 0;
    for (const auto& entry : std::filesystem::directory_iterator(docs / "samples")) {
        const std::string name = entry.path().filename().string(), bytes = get(entry.path().string());
        ++samples;
        std::string lines = bytes;
        lines.erase(std::remove(lines.begin(), lines.end(), '\r'), lines.end());
        std::vector<std::string> variants = {lines.substr(0, lines.size() - 1), bytes,
                                             withLineEnds(lines, "\r\n")};
        const std::string marked = "\xEF\xBB\xBF" + bytes;  // as spreadsheets write it
        if (usePage(65001))
            variants.push_back(marked);
        for (const std::string& variant : variants) {
            put("in", variant);
            std::filesystem::remove(folder / name);
            // The second version of the scan-area file takes a last line without an end for a cut-off one.
            const bool cut = name == "scan_area_v2.txt" && variant == variants[0];
            EXPECT_EQ(rewrite(name, path("in"), path(name)), !cut) << name;
            EXPECT_EQ(get(name), cut ? "" : bytes) << name;
        }
        // In other code pages the mark is three characters. Unit settings of no version are the same as the
        // sample's.
        if (usePage(1252) && name != "unit_settings.txt") {
            put("in", marked);
            std::filesystem::remove(folder / name);
            rewrite(name, path("in"), path(name));
            EXPECT_NE(get(name), bytes) << name;
        }
        const std::string shown = withLineEnds("\n" + variants[0], "\n    ") + "\n";
        EXPECT_NE(page.find(shown), std::string::npos) << name << " in file_formats.md";
    }
    EXPECT_EQ(samples, 12);
}

}  // namespace
