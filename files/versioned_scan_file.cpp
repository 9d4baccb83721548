// Versioned scan files: a version line, then lines of nine fields.
#include <fieldscan/scan_result_files.h>

#include <algorithm>
#include <string>
#include <string_view>

#include "files/point_lines.h"
#include "platform/framework/array_growth.h"
#include "platform/framework/number_text.h"
#include "platform/system.h"

using namespace fieldscan;

namespace {

// The fields of a line after name, x, y, z.
enum Field { kCode, kAttribute, kText, kFirst, kSecond, kFields };
static_assert(kVersionedLines.fields == 4 + kFields);

void appendVersionedLine(LineWriter& lines, const CXYZ& point, const CString& text, double first,
                         double second) {
    appendScanPoint(lines, point, text);
    for (const double value : {first, second}) {
        lines.text() += ',';
        appendFixed(lines.text(), value, 4);
    }
    lines.endLine();
}

bool comesBack(const CXYZ& point) { return fitsField(point.name) && fitsField(point.code); }

// Element i, or `missing` where the array is shorter.
template <class Array, class Element>
Element elementOr(const Array& array, int i, const Element& missing) {
    return i < array.GetSize() ? array[i] : missing;
}

}  // namespace

int WriteHeader(CFile* file, CString header) {
    zeroIfOutOfMemory([&] {
        std::string line;
        system::appendAnsi(system::ansiCodePage(), header.GetString(), header.GetLength(), line);
        line += "\r\n";
        return file->Write(line.data(), static_cast<unsigned int>(line.size()));
    });
    return 1;
}

int ReadHeader(CFile* file, CString header) {
    return zeroIfOutOfMemory([&] {
        std::string line;
        skipByteOrderMark(*file);
        if (!readLine(*file, line))
            return 0;
        const CString found = wideTrimmed(system::ansiCodePage(), line);
        return !found.IsEmpty() && found == header ? 1 : 0;
    });
}

int KVX4NP_CSVFileWrite(CString path, CArray<CXYZ, CXYZ&>& points, CArray<double, double>& first,
                        CArray<double, double>& second, CStringArray& texts, int append) {
    const int size = points.GetSize();
    for (int i = 0; i < size; ++i)
        if (!comesBack(points[i]) || (i < texts.GetSize() && !fitsField(texts[i])))
            return 0;
    return appendToFile(path, append == 1 ? Existing::needed : Existing::emptied, kVersionedLines,
                        [&](LineWriter& lines) {
                            for (int i = 0; i < size; ++i)
                                appendVersionedLine(lines, points[i], elementOr(texts, i, CString()),
                                                    elementOr(first, i, 0.0), elementOr(second, i, 0.0));
                        });
}

int KVX4NP_CSVFileAdd(CString path, CXYZ point, double first, double second, CString text) {
    if (!comesBack(point) || !fitsField(text))
        return 0;
    return appendToFile(path, Existing::kept, kVersionedLines,
                        [&](LineWriter& lines) { appendVersionedLine(lines, point, text, first, second); });
}

int KVX4NP_ReadCSVFile(CString path, CArray<CXYZ, CXYZ&>& points, CArray<double, double>& first,
                       CArray<double, double>& second, CStringArray& texts) {
    points.SetSize(0);
    first.SetSize(0);
    second.SetSize(0);
    texts.SetSize(0);
    const int result = zeroIfOutOfMemory([&] {
        CFile file;
        const CString version = CString(kVersionedLines.header.data()).Trim();
        if (!file.Open(path, CFile::modeRead) || ReadHeader(&file, version) != 1)
            return 0;
        const unsigned int codePage = system::ansiCodePage();
        std::string_view fields[kFields];
        std::string buffer;
        for (std::string_view line; readLine(file, line);) {
            if (std::count(line.begin(), line.end(), ',') < kVersionedLines.fields - 1 ||
                isCutOff(line, kVersionedLines.fields))
                continue;
            CXYZ& point = addPoint(points, file, codePage, line);
            splitAtCommas(line, fields, kFields);
            point.code = wideTrimmed(codePage, fields[kCode]);
            point.attr[2] = parseInt(numberText(codePage, fields[kAttribute], buffer));
            const double firstValue = parseDouble(numberText(codePage, fields[kFirst], buffer));
            const double secondValue = parseDouble(numberText(codePage, fields[kSecond], buffer));
            reserveForLines(texts, file);
            reserveForLines(first, file);
            reserveForLines(second, file);
            texts.Add(wideTrimmed(codePage, fields[kText]));
            first.Add(firstValue);  // room was made above: nothing fails from here on
            second.Add(secondValue);
        }
        return file.HasReadFailed() ? 0 : 1;
    });
    // When memory ran out, the last point may lack its values.
    points.SetSize(second.GetSize());
    return result;
}
