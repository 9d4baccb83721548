// Point files and occupied-point files: lines "name,x,y,z".
#include <fieldscan/card.h>
#include <fieldscan/point_files.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

#include "files/point_lines.h"
#include "platform/framework/array_growth.h"
#include "platform/framework/decimal_text.h"
#include "platform/framework/number_text.h"
#include "platform/framework/rewritten_file.h"
#include "platform/system.h"

using namespace fieldscan;

namespace {

constexpr int kShortName = 32;

// Writes a name of ASCII, up to kShortName units, and returns its end; writes no other name and returns `to`.
char* putShortAscii(char* to, const CString& name) {
    const int length = name.GetLength();
    if (length > kShortName)
        return to;
    const unsigned short* const units = name.GetString();
    unsigned int all = 0;
    for (int i = 0; i < length; ++i) {
        all |= units[i];
        to[i] = static_cast<char>(units[i]);
    }
    return all < 0x80 ? to + length : to;
}

// Takes a name of ASCII, 1 to kShortName units and no blank at its ends, with its comma off `line`, and
// returns its length; 0 for any other name, and nothing is taken. Most names are like that: a long file is
// read in 0.94 of the time.
int takeShortAscii(std::string_view& line, unsigned short* units) {
    const int most = static_cast<int>(std::min<std::size_t>(line.size(), kShortName + 1));
    unsigned int all = 0;
    int length = 0;
    for (; length < most && line[static_cast<std::size_t>(length)] != ','; ++length) {
        const auto byte = static_cast<unsigned char>(line[static_cast<std::size_t>(length)]);
        all |= byte;
        units[length] = byte;
    }
    if (length == 0 || length == most || all >= 0x80 || units[0] <= ' ' || units[length - 1] <= ' ')
        return 0;
    line.remove_prefix(static_cast<std::size_t>(length) + 1);
    return length;
}

// The first field of `line`, which is taken off with its comma.
std::string_view takeField(std::string_view& line) {
    const std::size_t comma = line.find(',');
    const std::string_view field = line.substr(0, comma);
    line.remove_prefix(comma == std::string_view::npos ? line.size() : comma + 1);
    return field;
}

// The number in the first field of `line`, which is taken off. A plain decimal ends at the comma itself; only
// other texts need a search for it.
double takeNumber(unsigned int codePage, std::string_view& line) {
    const std::size_t sign = !line.empty() && line[0] == '-' ? 1 : 0;
    double value = 0.0;
    const std::size_t end = sign + readPlainDecimal(line.substr(sign), value);
    if (end > sign && (end == line.size() || line[end] == ',')) {
        line.remove_prefix(std::min(end + 1, line.size()));
        return sign ? -value : value;
    }
    std::string buffer;
    return parseDouble(numberText(codePage, takeField(line), buffer));
}

// Empties the list, opens the file as openForReading does and gives each line to `addLine`, until that
// returns false: 1, or 0 when the file cannot be opened or read to its end.
template <class AddLine>
int readPoints(const CString* path, CArray<CXYZ, CXYZ&>& points, int mustExist, AddLine addLine) {
    points.SetSize(0);
    return zeroIfOutOfMemory([&] {
        CFile file;
        if (!openForReading(file, path, mustExist))
            return 0;
        const unsigned int codePage = system::ansiCodePage();
        std::string_view line;
        while (readLine(file, line) && addLine(file, codePage, line)) {}
        return file.HasReadFailed() ? 0 : 1;
    });
}

// True if every name is read back as it is written (fitsField).
bool allNamesFit(const CArray<CXYZ, CXYZ&>& points) {
    for (int i = 0; i < points.GetSize(); ++i)
        if (!fitsField(points[i].name))
            return false;
    return true;
}

}  // namespace

// The line is made in a local buffer and appended at once.
void fieldscan::appendPoint(LineWriter& lines, const CXYZ& point) {
    char line[kShortName + 3 * (1 + kFixedRoom)];
    char* to = putShortAscii(line, point.name);
    if (to == line)
        lines.append(point.name);
    for (const double coordinate : {point.x, point.y, point.z}) {
        *to++ = ',';
        to = putFixed(to, coordinate, 6);
    }
    lines.text().append(line, static_cast<std::size_t>(to - line));
}

std::string_view fieldscan::numberText(unsigned int codePage, std::string_view field, std::string& buffer) {
    field = trimmed(field);
    if (field.empty() || static_cast<unsigned char>(field[0]) < 0x80)
        return field;
    const CString wide = wideTrimmed(codePage, field);  // it may be an ideographic blank
    buffer.clear();
    system::appendAnsi(codePage, wide.GetString(), wide.GetLength(), buffer);
    return buffer;
}

CXYZ& fieldscan::addPoint(CArray<CXYZ, CXYZ&>& points, const CFile& file, unsigned int codePage,
                          std::string_view& line) {
    unsigned short shortName[kShortName + 1];
    const int length = takeShortAscii(line, shortName);
    const std::string_view name = length > 0 ? std::string_view() : takeField(line);
    reserveForLines(points, file);
    const int size = points.GetSize();
    points.SetSize(size + 1);
    CXYZ& point = points[size];
    try {
        point.x = takeNumber(codePage, line);
        point.y = takeNumber(codePage, line);
        point.z = takeNumber(codePage, line);
        if (length > 0)
            point.name.Append(shortName, length);
        else
            setTrimmed(point.name, codePage, name);
    } catch (...) {
        points.SetSize(size);  // no point without all of it
        throw;
    }
    return point;
}

bool fieldscan::openForReading(CFile& file, const CString* path, int mustExist) {
    if (!path)
        return false;
    if (openText(file, *path))
        return true;
    if (mustExist == 1 || file.GetOpenFailure() != CFile::causeNotFound)
        return false;
    // Not truncated: another program may have made the file since.
    return file.Open(*path, CFile::modeCreate | CFile::modeNoTruncate | CFile::modeReadWrite) &&
           file.Close() && openText(file, *path);
}

int ReadCSVFile(CString* path, CArray<CXYZ, CXYZ&>& points, int mustExist) {
    const auto addLine = [&](const CFile& file, unsigned int codePage, std::string_view line) {
        if (isCutOff(line, kPointLines.fields) || isBlank(codePage, line = trimmed(line)))
            return false;
        addPoint(points, file, codePage, line);
        return true;
    };
    return readPoints(path, points, mustExist, addLine);
}

int WriteCSVFile(CString* path, CArray<CXYZ, CXYZ&>& points, int append) {
    const auto write = [&](LineWriter& lines) {
        for (int i = 0; i < points.GetSize(); ++i) {
            appendPoint(lines, points[i]);
            lines.endLine();
        }
    };
    if (!path || !allNamesFit(points))
        return 0;
    return append == 1 ? appendToFile(*path, Existing::needed, kPointLines, write)
                       : writeNewFile(*path, write);
}

int ReadOccInfoFile(CString* path, CArray<CXYZ, CXYZ&>& points, int mustExist) {
    const auto addParts = [&](const CFile& file, unsigned int codePage, std::string_view line) {
        while (!line.empty()) {
            const std::size_t end = line.find('\r');
            std::string_view part = line.substr(0, end);
            if (end == std::string_view::npos && isCutOff(part, kPointLines.fields))
                return false;
            part = trimmed(part);
            if (!isBlank(codePage, part))
                addPoint(points, file, codePage, part);
            line.remove_prefix(end == std::string_view::npos ? line.size() : end + 1);
        }
        return true;
    };
    return readPoints(path, points, mustExist, addParts);
}

int EditFileName(CString path, CString& title) { return CRTCard().GetFileTitle(std::move(path), title); }

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
