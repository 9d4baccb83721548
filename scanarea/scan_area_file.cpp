// The scan-area file, first version (docs/file_formats.md): counts, corners, and a line for each shot.
#include <fieldscan/scan_area.h>

#include <string>

#include "geometry/angle_constants.h"
#include "platform/framework/array_growth.h"
#include "platform/framework/line_text.h"
#include "platform/framework/number_text.h"
#include "platform/framework/out_of_memory.h"
#include "platform/framework/rewritten_file.h"
#include "platform/system.h"
#include "scanarea/file_access.h"

using namespace fieldscan;

namespace {

// "horizontal zenith" in degrees.
void appendDirection(std::string& text, const CWPK& direction) {
    constexpr int kDecimals = 6;
    appendFixed(text, direction.kappa * kDegreesPerRadian, kDecimals);
    text += ' ';
    appendFixed(text, direction.omega * kDegreesPerRadian, kDecimals);
}

bool scanDirection(Scanner& scanner, CWPK& direction) {
    double horizontal, zenith;
    if (scanner.scanDouble(horizontal) != Scanner::Result::matched ||
        scanner.scanDouble(zenith) != Scanner::Result::matched)
        return false;
    direction.SetWPK(zenith * kRadiansPerDegree, 0.0, horizontal * kRadiansPerDegree);
    return true;
}

bool readCorner(CFile& file, CWPK& corner) {
    std::string line;
    if (!readLine(file, line))
        return false;
    Scanner scanner(line);
    return scanDirection(scanner, corner);
}

bool readCounts(CFile& file, int& columns, int& rows) {
    std::string line;
    if (!readLine(file, line))
        return false;
    Scanner scanner(line);
    return scanner.scanInt(columns) == Scanner::Result::matched &&
           scanner.scanInt(rows) == Scanner::Result::matched;
}

}  // namespace

int CScanArea::Write(CString path) const {
    return zeroIfOutOfMemory([&] {
        for (int i = 0; i < imageNames.GetSize(); ++i)
            if (!fitsLine(imageNames[i]))
                return 0;
        RewrittenFile rewritten;
        if (!openForRewriting(rewritten, path))
            return 0;
        LineWriter& lines = rewritten.lines();
        appendInt(lines.text(), columnCount);
        lines.text() += ' ';
        appendInt(lines.text(), rowCount);
        lines.endLine();
        for (const CWPK* corner : {&areaAngle1, &areaAngle2}) {
            appendDirection(lines.text(), *corner);
            lines.endLine();
        }
        for (int i = 0; i < imageNames.GetSize(); ++i) {
            appendDirection(lines.text(), i < shootAngles.GetSize() ? shootAngles[i] : CWPK());
            lines.text() += ' ';
            lines.append(imageNames[i]);
            lines.endLine();
        }
        return rewritten.finish() ? 1 : 0;
    });
}

int CScanArea::Read(CString path) {
    Init();
    return zeroIfOutOfMemory([&] {
        CFile file;
        if (!openForReading(file, path))
            return 0;
        if (!readCounts(file, columnCount, rowCount) || !readCorner(file, areaAngle1) ||
            !readCorner(file, areaAngle2))
            return 0;
        const unsigned int codePage = system::ansiCodePage();
        std::string word;
        for (std::string line; readLine(file, line);) {
            Scanner scanner(line);
            CWPK direction;
            if (!scanDirection(scanner, direction))
                continue;
            if (scanner.scanWord(word) != Scanner::Result::matched)
                word.clear();
            reserveDouble(shootAngles);
            reserveDouble(imageNames);
            imageNames.Add(wideTrimmed(codePage, word));
            shootAngles.Add(direction);
        }
        return file.HasReadFailed() ? 0 : 1;
    });
}

int CScanArea::GetImgCsvLine(CFile* file, char* buffer) {
    return zeroIfOutOfMemory([&] {
        std::string line;
        if (!readLine(*file, line))
            return 0;
        const std::size_t stored = line.copy(buffer, kLineSize - 1);
        buffer[stored] = 0;
        return static_cast<int>(stored);
    });
}
