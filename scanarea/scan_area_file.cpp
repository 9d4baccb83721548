// The scan-area file, first version, and the log file.
#include <fieldscan/message.h>
#include <fieldscan/scan_area.h>

#include <string>

#include "geometry/angle_constants.h"
#include "platform/framework/line_text.h"
#include "platform/framework/number_text.h"
#include "platform/system.h"

using namespace fieldscan;

namespace {

const char16_t kLogFile[] = u"\\Internal Disk\\FIELD_SCAN\\log.txt";

// Opens the file, with the message to the operator where it is refused.
int openOrTell(CFile& file, const CString& path, unsigned int mode) {
    if (file.Open(path, mode))
        return 1;
    const CFile::Cause cause = file.GetOpenFailure();
    if (cause == CFile::causeAccessDenied || cause == CFile::causeSharingViolation)
        CKTImgMsg::DispMessage(CString(u"ﾌｧｲﾙ名：") + path + u"\n\n\n" +
                               u"ﾌｧｲﾙｱｸｾｽが拒否されました。他のｱﾌﾟﾘｹｰｼｮﾝで使用している可能性があります。");
    return 0;
}

// "horizontal zenith" in degrees.
void appendDirection(std::string& text, const CWPK& direction) {
    appendFixed(text, direction.kappa * kDegreesPerRadian, 6);
    text += ' ';
    appendFixed(text, direction.omega * kDegreesPerRadian, 6);
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
        CFile file;
        if (!openOrTell(file, path, CFile::modeCreate | CFile::modeWrite))
            return 0;
        LineWriter lines(file);
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
        const bool written = lines.finish();
        return file.Close() && written ? 1 : 0;
    });
}

int CScanArea::Read(CString path) {
    Init();
    return zeroIfOutOfMemory([&] {
        CFile file;
        if (!openOrTell(file, path, CFile::modeRead))
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

void CScanArea::WriteLogFile(CString text) {
    zeroIfOutOfMemory([&] {
        CFile file;
        if (!openForAppending(file, kLogFile))
            return 0;
        LineWriter lines(file);
        lines.append(text);
        return lines.finish() ? 1 : 0;
    });
}
