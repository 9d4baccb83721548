#include <fieldscan/card.h>
#include <fieldscan/point_files.h>

#include <string>
#include <string_view>
#include <utility>

#include "files/point_lines.h"
#include "platform/framework/number_text.h"
#include "platform/system.h"

using namespace fieldscan;

namespace {

constexpr int kPointFields = 4;

void addPoint(CArray<CXYZ, CXYZ&>& points, unsigned int codePage, std::string_view line) {
    std::string_view fields[kPointFields];
    const int count = splitAtCommas(line, fields, kPointFields);
    CXYZ point = pointOf(codePage, fields, count);
    reserveDouble(points);
    points.Add(point);
}

}  // namespace

void fieldscan::appendPoint(LineWriter& lines, const CXYZ& point) {
    lines.append(point.name);
    for (const double coordinate : {point.x, point.y, point.z}) {
        lines.text() += ',';
        appendFixed(lines.text(), coordinate, 6);
    }
}

CXYZ fieldscan::pointOf(unsigned int codePage, const std::string_view* fields, int count) {
    const auto number = [&](int i) { return i < count ? parseDouble(fields[i]) : 0.0; };
    CXYZ point(number(1), number(2), number(3));
    point.name = wideTrimmed(codePage, fields[0]);
    return point;
}

bool fieldscan::openForReading(CFile& file, const CString* path, int mustExist) {
    if (!path || path->IsEmpty())
        return false;
    if (!CRTCard().IsFile(*path)) {
        if (mustExist == 1)
            return false;
        if (!file.Open(*path, CFile::modeCreate | CFile::modeReadWrite))
            return false;
        file.Close();
    }
    return file.Open(*path, CFile::modeRead) == 1;
}

bool fieldscan::openForWriting(CFile& file, const CString& path, int append) {
    if (append == 1)
        return file.Open(path, CFile::modeWrite) && file.SeekToEnd();
    return file.Open(path, CFile::modeCreate | CFile::modeWrite) == 1;
}

int ReadCSVFile(CString* path, CArray<CXYZ, CXYZ&>& points, int mustExist) {
    points.SetSize(0);
    return zeroIfOutOfMemory([&] {
        CFile file;
        if (!openForReading(file, path, mustExist))
            return 0;
        const unsigned int codePage = system::ansiCodePage();
        for (std::string line; readLine(file, line) && !trimmed(line).empty();)
            addPoint(points, codePage, line);
        return 1;
    });
}

int WriteCSVFile(CString* path, CArray<CXYZ, CXYZ&>& points, int append) {
    return zeroIfOutOfMemory([&] {
        CFile file;
        if (!path || !openForWriting(file, *path, append))
            return 0;
        LineWriter lines(file);
        for (int i = 0; i < points.GetSize(); ++i) {
            appendPoint(lines, points[i]);
            lines.endLine();
        }
        const bool written = lines.finish();
        return file.Close() && written ? 1 : 0;
    });
}

int ReadOccInfoFile(CString* path, CArray<CXYZ, CXYZ&>& points, int mustExist) {
    points.SetSize(0);
    return zeroIfOutOfMemory([&] {
        CFile file;
        if (!openForReading(file, path, mustExist))
            return 0;
        const unsigned int codePage = system::ansiCodePage();
        for (std::string line; readLine(file, line);) {
            for (std::string_view rest = line; !rest.empty();) {
                const std::size_t end = rest.find('\r');
                const std::string_view part = rest.substr(0, end);
                if (!trimmed(part).empty())
                    addPoint(points, codePage, part);
                rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
            }
        }
        return 1;
    });
}

int EditFileName(CString path, CString& title) {
    return CRTCard().GetFileTitle(std::move(path), title);
}

double CStringToDBL(CString text) {
    double value = 0.0;
    zeroIfOutOfMemory([&] {
        std::string narrow;
        system::appendAnsi(system::ansiCodePage(), text.GetString(), text.GetLength(), narrow);
        value = parseDouble(narrow);
        return 1;
    });
    return value;
}
