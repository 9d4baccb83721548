#include <fieldscan/scan_result_files.h>

#include <algorithm>
#include <string>
#include <string_view>

#include "files/point_lines.h"
#include "platform/framework/number_text.h"
#include "platform/system.h"

using namespace fieldscan;

namespace {

const char kVersion[] = "FIELD_SCAN_MPT_FILEVER1.0";
const char kVersionLine[] = "FIELD_SCAN_MPT_FILEVER1.0\r\n";

// The fields of a line behind name, x, y, z, in their order.
enum Field { kCode, kAttribute, kText, kFirst, kSecond, kFields };
constexpr int kCommas = 3 + kFields;

void appendVersioned(LineWriter& lines, const CXYZ& point, const CString& text, double first, double second) {
    appendScanPoint(lines, point, text);
    for (const double value : {first, second}) {
        lines.text() += ',';
        appendFixed(lines.text(), value, 4);
    }
    lines.endLine();
}

// Element i, or what a missing one stands for.
template <class Array, class Element>
Element elementOr(const Array& array, int i, const Element& missing) {
    return i < array.GetSize() ? array[i] : missing;
}

}  // namespace

int WriteHeader(CFile* file, CString header) {
    zeroIfOutOfMemory([&] {
        LineWriter lines(*file);
        lines.append(header);
        lines.text() += '\r';
        lines.endLine();
        return lines.finish() ? 1 : 0;
    });
    return 1;
}

int ReadHeader(CFile* file, CString header) {
    return zeroIfOutOfMemory([&] {
        std::string line;
        if (!readLine(*file, line))
            return 0;
        const CString found = wideTrimmed(system::ansiCodePage(), line);
        return !found.IsEmpty() && found == header ? 1 : 0;
    });
}

int KVX4NP_CSVFileWrite(CString path, CArray<CXYZ, CXYZ&>& points, CArray<double, double>& first,
                        CArray<double, double>& second, CStringArray& texts, int append) {
    const auto write = [&](LineWriter& lines) {
        for (int i = 0; i < points.GetSize(); ++i)
            appendVersioned(lines, points[i], elementOr(texts, i, CString()), elementOr(first, i, 0.0),
                            elementOr(second, i, 0.0));
    };
    if (append == 1)
        return appendToFile(path, CFile::modeWrite, kVersionLine, [&](LineWriter& lines) {
            if (lines.text() == kVersionLine)  // an empty file gets no version line here
                lines.text().clear();
            write(lines);
        });
    return zeroIfOutOfMemory([&] {
        CFile file;
        LineWriter lines(file);
        if (!file.Open(path, CFile::modeCreate | CFile::modeWrite))
            return 0;
        lines.text() = kVersionLine;
        write(lines);
        const bool written = lines.finish();
        return closeOnMedium(file) && written ? 1 : 0;
    });
}

// The version line and the point go to the medium together. Where a recording was cut off in the version
// line, the next point's call completes it: without it no reader takes the file.
int KVX4NP_CSVFileAdd(CString path, CXYZ point, double first, double second, CString text) {
    return appendToFile(path, kMadeIfMissing, kVersionLine,
                        [&](LineWriter& lines) { appendVersioned(lines, point, text, first, second); });
}

int KVX4NP_ReadCSVFile(CString path, CArray<CXYZ, CXYZ&>& points, CArray<double, double>& first,
                       CArray<double, double>& second, CStringArray& texts) {
    points.SetSize(0);
    first.SetSize(0);
    second.SetSize(0);
    texts.SetSize(0);
    const int result = zeroIfOutOfMemory([&] {
        CFile file;
        if (!file.Open(path, CFile::modeRead) || ReadHeader(&file, kVersion) != 1)
            return 0;
        const unsigned int codePage = system::ansiCodePage();
        std::string_view fields[kFields];
        std::string buffer;
        std::string split;
        for (std::string_view line; readLine(file, split, line);) {
            if (std::count(line.begin(), line.end(), ',') < kCommas)
                continue;
            CXYZ& point = addPoint(points, file, codePage, line);
            splitAtCommas(line, fields, kFields);
            point.code = wideTrimmed(codePage, fields[kCode]);
            point.attr[2] = parseInt(numberText(codePage, fields[kAttribute], buffer));
            reserveForLines(texts, file);
            reserveForLines(first, file);
            reserveForLines(second, file);
            texts.Add(wideTrimmed(codePage, fields[kText]));
            first.Add(parseDouble(numberText(codePage, fields[kFirst], buffer)));
            second.Add(parseDouble(numberText(codePage, fields[kSecond], buffer)));
        }
        return file.HasReadFailed() ? 0 : 1;
    });
    // Where memory ran out the lists may differ by the last point.
    points.SetSize(second.GetSize());
    texts.SetSize(second.GetSize());
    first.SetSize(second.GetSize());
    return result;
}
