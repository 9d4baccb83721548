// The readers of point, image-coordinate and scan result files on any bytes. What was read is written so that
// it reads the same again, or refused.
#include <fieldscan/point_files.h>
#include <fieldscan/scan_result_files.h>

#include "fuzz/input.h"
#include "platform/framework/line_text.h"

namespace {

using Points = CArray<CXYZ, CXYZ&>;

struct Versioned {
    Points points;
    CArray<double, double> first, second;
    CStringArray texts;
};

// True if the point's texts read the same again from a line of the file.
bool fits(const CXYZ& point, const CString& text) {
    return fieldscan::fitsField(point.name) && fieldscan::fitsField(point.code) && fieldscan::fitsField(text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    FuzzedDataProvider input(data, size);
    chooseCodePage(input);
    const int which = input.ConsumeIntegralInRange(0, 4);
    const std::string bytes = input.ConsumeRemainingBytesAsString();
    file().put(bytes);
    CString path = file().path();
    Points points;
    if (which == 0) {
        (void)ReadCSVFile(&path, points, 1);
        require(static_cast<std::size_t>(points.GetSize()) <= bytes.size());
        const auto write = [&] { return WriteCSVFile(&path, points, 0); };
        if (allFit(points.GetSize(), [&](int i) { return fits(points[i], CString()); }))
            comesBack([&] { return ReadCSVFile(&path, points, 1); }, write);
        else
            require(write() == 0);
    } else if (which == 1) {
        (void)ReadOccInfoFile(&path, points, 1);
        require(static_cast<std::size_t>(points.GetSize()) <= bytes.size());
    } else if (which == 2) {
        CString name;
        CSize image;
        (void)ReadImcFile(&path, &name, image, points, 1);
        require(static_cast<std::size_t>(points.GetSize()) <= bytes.size());
    } else if (which == 3) {
        Versioned scan;
        (void)KVX4NP_ReadCSVFile(path, scan.points, scan.first, scan.second, scan.texts);
        require(scan.points.GetSize() == scan.first.GetSize() &&
                scan.first.GetSize() == scan.second.GetSize() &&
                scan.second.GetSize() == scan.texts.GetSize());
        const bool fit =
            allFit(scan.points.GetSize(), [&](int i) { return fits(scan.points[i], scan.texts[i]); });
        require(KVX4NP_CSVFileWrite(path, scan.points, scan.first, scan.second, scan.texts, 0) == fit);
    } else {
        CFile scan;
        require(scan.Open(path, CFile::modeRead) == 1);
        require(ReadHeader(&scan, u"FIELD_SCAN_MPT_FILEVER1.0") == 0 ||
                bytes.find("FIELD_SCAN") < bytes.size());
        require(ScanFileAdd(path, CXYZ(u"P", 1, 2, 3)) == 1);
        // A last line without its end is ended first, or cut off.
        const std::string after = file().get(), line = "P,1.000000,2.000000,3.000000\n",
                          lines = bytes.substr(0, bytes.rfind('\n') + 1);
        require(after == lines + line || (lines != bytes && after == bytes + "\n" + line) ||
                (bytes == "\xEF\xBB\xBF" && after == bytes + line));
    }
    return 0;
}
