// Image-coordinate files: pixel coordinates of named points in one image.
#include <fieldscan/point_files.h>

#include <initializer_list>
#include <string>

#include "files/point_lines.h"
#include "platform/framework/array_growth.h"
#include "platform/framework/number_text.h"
#include "platform/framework/rewritten_file.h"
#include "platform/system.h"

using namespace fieldscan;

namespace {

// The most lines that the rest of the file can hold: a character and a line feed each, where the last line
// feed may be missing.
long long linesThatFit(const CFile& file) { return (file.GetLength() - file.GetPosition() + 1) / 2; }

// Reads the next line as "%d" or "%d %d"; false only when it is missing or blank. A value that is no number
// stays, as do those after it.
bool readInts(CFile& file, unsigned int codePage, std::initializer_list<int*> values) {
    std::string line, buffer;
    if (!readLine(file, line))
        return false;
    Scanner scanner(numberText(codePage, line, buffer));
    bool first = true;
    for (int* value : values) {
        const Scanner::Result result = scanner.scanInt(*value);
        if (first && result == Scanner::Result::endOfInput)
            return false;
        first = false;
    }
    return true;
}

}  // namespace

bool fieldscan::readNamedPoint(CFile& file, unsigned int codePage, CXYZ& point) {
    std::string line, name;
    if (!readLine(file, line) || isBlank(codePage, line))
        return false;
    Scanner scanner(line);
    if (scanner.scanWord(name) != Scanner::Result::matched)
        return false;
    point.name = wideTrimmed(codePage, name);
    scanner.scanDouble(point.x);
    scanner.scanDouble(point.y);
    return true;
}

int ReadImcFile(CString* path, CString* imageName, CSize& size, CArray<CXYZ, CXYZ&>& points, int mustExist) {
    points.SetSize(0);
    return zeroIfOutOfMemory([&] {
        CFile file;
        if (!imageName || !openForReading(file, path, mustExist))
            return 0;
        const unsigned int codePage = system::ansiCodePage();
        std::string line;
        readLine(file, line);
        *imageName = wideTrimmed(codePage, line);
        int count = 0;
        if (!readInts(file, codePage, {&size.cx, &size.cy}) || !readInts(file, codePage, {&count}))
            return 0;
        if (count < 1)
            return 1;
        const long long fitting = linesThatFit(file);
        while (points.GetSize() < count) {
            CXYZ point;
            if (!readNamedPoint(file, codePage, point)) {
                if (count <= fitting)
                    points.SetSize(count);
                return 0;
            }
            reserveDouble(points);
            points.Add(point);
        }
        return 1;
    });
}

int WriteImcFile(CString* path, CString* imageName, CSize& size, CArray<CXYZ, CXYZ&>& points) {
    if (!path || !imageName || !fitsLine(*imageName))
        return 0;
    for (int i = 0; i < points.GetSize(); ++i)
        if (!fitsWord(points[i].name))
            return 0;
    return writeNewFile(*path, [&](LineWriter& lines) {
        lines.append(*imageName);
        lines.endLine();
        appendInt(lines.text(), size.cx);
        lines.text() += ' ';
        appendInt(lines.text(), size.cy);
        lines.endLine();
        appendInt(lines.text(), points.GetSize());
        lines.endLine();
        for (int i = 0; i < points.GetSize(); ++i) {
            lines.append(points[i].name);
            for (const double coordinate : {points[i].x, points[i].y}) {
                lines.text() += ' ';
                appendFixed(lines.text(), coordinate, 10, 20);
            }
            lines.endLine();
        }
    });
}
