// The scan-area file in both versions, and the log file.
#include <fieldscan/message.h>
#include <fieldscan/scan_area.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <string_view>

#include "geometry/angle_constants.h"
#include "platform/framework/appended_file.h"
#include "platform/framework/line_text.h"
#include "platform/framework/number_text.h"
#include "platform/framework/rewritten_file.h"
#include "platform/system.h"

using namespace fieldscan;

namespace {

const char16_t kLogFile[] = u"\\Internal Disk\\FIELD_SCAN\\log.txt";

// The message to the operator where a file is refused.
void tellRefusal(CFile::Cause cause, const CString& path) {
    if (cause == CFile::causeAccessDenied || cause == CFile::causeSharingViolation)
        CKTImgMsg::DispMessage(CString(u"ﾌｧｲﾙ名：") + path + u"\n\n\n" +
                               u"ﾌｧｲﾙｱｸｾｽが拒否されました。他のｱﾌﾟﾘｹｰｼｮﾝで使用している可能性があります。");
}

bool openOrTell(CFile& file, const CString& path) {
    const bool opened = openText(file, path);
    if (!opened)
        tellRefusal(file.GetOpenFailure(), path);
    return opened;
}

bool rewriteOrTell(RewrittenFile& file, const CString& path) {
    CFile::Cause cause;
    const bool opened = file.open(path, cause);
    if (!opened)
        tellRefusal(cause, path);
    return opened;
}

// "horizontal zenith" in degrees.
void appendDirection(std::string& text, const CWPK& direction, int decimals) {
    appendFixed(text, direction.kappa * kDegreesPerRadian, decimals);
    text += ' ';
    appendFixed(text, direction.omega * kDegreesPerRadian, decimals);
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

// ---- Second version ----

const char kSecondVersion[] = "WQ_FSCAN_AREA_FORMAT_V2";

// Entries of the second version: "name,number,a,b,c,dddd", of which the first digit d tells the kind. Those
// of kShot have a direction where the second digit is 1, a name where the third is.
enum Kind { kColumns = 1, kRows, kShots, kOutline, kShot };

struct Entry {
    CString name;
    int number = 0;
    double reals[3] = {0.0, 0.0, 0.0};  // of a shot: horizontal angle, zenith angle, phi in degrees
    int digits[4] = {0, 0, 0, 0};
};

// An angle of the second version in degrees. Just below the full circle the decimals would round up to 360,
// which comes back as 0, and a full circle as no width at all.
double degreesBelowTurn(double radians, int decimals) {
    constexpr double kLast[] = {359.0, 359.9, 359.99, 359.999, 359.9999, 359.99999};
    const double degrees = radians * kDegreesPerRadian;
    return radians < kFullTurn ? std::fmin(degrees, kLast[decimals]) : degrees;
}

void appendDirectionBelowTurn(std::string& text, const CWPK& direction, int decimals) {
    appendFixed(text, degreesBelowTurn(direction.kappa, decimals), decimals);
    text += ' ';
    appendFixed(text, degreesBelowTurn(direction.omega, decimals), decimals);
}

void appendEntry(LineWriter& lines, const Entry& entry) {
    lines.append(entry.name);
    std::string& text = lines.text();
    text += ',';
    appendInt(text, entry.number);
    text += ',';
    for (const double real : entry.reals) {
        appendFixed(text, real, 5);
        text += ',';
    }
    for (const int digit : entry.digits)
        appendInt(text, digit);
    lines.endLine();
}

void appendCount(LineWriter& lines, const char16_t* name, int number, Kind kind) {
    Entry entry;
    entry.name = name;
    entry.number = number;
    entry.digits[0] = kind;
    appendEntry(lines, entry);
}

// The next line without its end; false when there is none, or when it has no line feed: it is cut off then.
bool readWholeLine(CFile& file, std::string& line) {
    if (!readLine(file, line) || line.back() != '\n')
        return false;
    line.pop_back();
    if (!line.empty() && line.back() == '\r')
        line.pop_back();
    return true;
}

bool isInteger(std::string_view text, int& value) {
    std::size_t used = 0;
    value = parseInt(text, 10, &used);
    return used > 0 && used == text.size();
}

bool isReal(std::string_view text, double& value) {
    std::size_t used = 0;
    value = parseDouble(text, &used);
    return used > 0 && used == text.size() && std::isfinite(value);
}

// From the end, since the name may hold commas.
bool readEntry(CFile& file, unsigned int codePage, Kind kind, Entry& entry) {
    std::string line;
    if (!readWholeLine(file, line))
        return false;
    std::string_view rest = line;
    std::string_view fields[5];
    for (int i = 4; i >= 0; --i) {
        const std::size_t comma = rest.rfind(',');
        if (comma == std::string_view::npos)
            return false;
        fields[i] = rest.substr(comma + 1);
        rest = rest.substr(0, comma);
    }
    if (!isInteger(fields[0], entry.number) || fields[4].size() != 4)
        return false;
    for (int i = 0; i < 3; ++i)
        if (!isReal(fields[1 + i], entry.reals[i]))
            return false;
    for (int i = 0; i < 4; ++i) {
        entry.digits[i] = fields[4][static_cast<std::size_t>(i)] - '0';
        if (entry.digits[i] < 0 || entry.digits[i] > (i == 0 ? 9 : 1))
            return false;
    }
    entry.name.Empty();
    system::appendWide(codePage, rest.data(), rest.size(), entry.name);
    return entry.digits[0] == kind;
}

bool readCount(CFile& file, unsigned int codePage, const char16_t* name, Kind kind, int& number) {
    Entry entry;
    if (!readEntry(file, codePage, kind, entry) || entry.name != name)
        return false;
    number = entry.number;
    return true;
}

// "horizontal zenith" in degrees, brought into [0, 2 pi).
bool readDirection(CFile& file, const CScanArea& area, CWPK& direction) {
    std::string line;
    if (!readWholeLine(file, line))
        return false;
    const std::string_view text = line;
    const std::size_t blank = text.find(' ');
    double horizontal, zenith;
    if (blank == std::string_view::npos || !isReal(text.substr(0, blank), horizontal) ||
        !isReal(text.substr(blank + 1), zenith))
        return false;
    direction.SetWPK(zenith * kRadiansPerDegree, 0.0, horizontal * kRadiansPerDegree);
    area.NormalizeAngle(direction.omega);
    area.NormalizeAngle(direction.kappa);
    return true;
}

bool isFinite(const CWPK& direction) {
    return std::isfinite(direction.omega) && std::isfinite(direction.phi) && std::isfinite(direction.kappa);
}

bool hasLineEnd(const CString& name) { return name.FindOneOf(u"\r\n") >= 0; }

}  // namespace

int CScanArea::Write(CString path) const {
    return zeroIfOutOfMemory([&] {
        for (int i = 0; i < imageNames.GetSize(); ++i)
            if (!fitsLine(imageNames[i]))
                return 0;
        RewrittenFile rewritten;
        if (!rewriteOrTell(rewritten, path))
            return 0;
        LineWriter& lines = rewritten.lines();
        appendInt(lines.text(), columnCount);
        lines.text() += ' ';
        appendInt(lines.text(), rowCount);
        lines.endLine();
        for (const CWPK* corner : {&areaAngle1, &areaAngle2}) {
            appendDirection(lines.text(), *corner, 6);
            lines.endLine();
        }
        for (int i = 0; i < imageNames.GetSize(); ++i) {
            appendDirection(lines.text(), i < shootAngles.GetSize() ? shootAngles[i] : CWPK(), 6);
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
        if (!openOrTell(file, path))
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

int CScanArea::Write2(CString path) const {
    return zeroIfOutOfMemory([&] {
        for (int i = 0; i < imageNames.GetSize(); ++i)
            if (hasLineEnd(imageNames[i]))
                return 0;
        for (const auto* directions : {&shootAngles, &outlineAngles})
            for (int i = 0; i < directions->GetSize(); ++i)
                if (!isFinite((*directions)[i]))
                    return 0;
        if (!isFinite(areaAngle1) || !isFinite(areaAngle2))
            return 0;
        RewrittenFile rewritten;
        if (!rewriteOrTell(rewritten, path))
            return 0;
        LineWriter& lines = rewritten.lines();
        lines.text() += kSecondVersion;
        lines.endLine();
        const int shots = std::max(shootAngles.GetSize(), imageNames.GetSize());
        appendCount(lines, u"columns", columnCount, kColumns);
        appendCount(lines, u"rows", rowCount, kRows);
        appendCount(lines, u"shots", shots, kShots);
        appendCount(lines, u"outline", outlineAngles.GetSize(), kOutline);
        for (const CWPK* corner : {&areaAngle1, &areaAngle2}) {
            appendDirectionBelowTurn(lines.text(), *corner, 3);
            lines.endLine();
        }
        for (int i = 0; i < shots; ++i) {
            Entry entry;
            entry.number = i;
            entry.digits[0] = kShot;
            if (i < shootAngles.GetSize()) {
                const CWPK& shot = shootAngles[i];
                entry.digits[1] = 1;
                entry.reals[0] = degreesBelowTurn(shot.kappa, 5);
                entry.reals[1] = degreesBelowTurn(shot.omega, 5);
                entry.reals[2] = shot.phi * kDegreesPerRadian;
            }
            if (i < imageNames.GetSize()) {
                entry.digits[2] = 1;
                entry.name = imageNames[i];
            }
            appendEntry(lines, entry);
        }
        for (int i = 0; i < outlineAngles.GetSize(); ++i) {
            appendDirectionBelowTurn(lines.text(), outlineAngles[i], 4);
            lines.endLine();
        }
        return rewritten.finish() ? 1 : 0;
    });
}

int CScanArea::Read2(CString path) {
    Init();
    return zeroIfOutOfMemory([&] {
        CFile file;
        if (!openOrTell(file, path))
            return 0;
        const unsigned int codePage = system::ansiCodePage();
        std::string line;
        readLine(file, line);
        headerLine = wideTrimmed(codePage, line);
        int shots = 0, vertices = 0;
        if (headerLine != kSecondVersion || !readCount(file, codePage, u"columns", kColumns, columnCount) ||
            !readCount(file, codePage, u"rows", kRows, rowCount) ||
            !readCount(file, codePage, u"shots", kShots, shots) ||
            !readCount(file, codePage, u"outline", kOutline, vertices) || shots < 0 || vertices < 0 ||
            !readDirection(file, *this, areaAngle1) || !readDirection(file, *this, areaAngle2))
            return 0;
        Entry entry;
        for (int i = 0; i < shots; ++i) {
            if (!readEntry(file, codePage, kShot, entry) || entry.number != i || hasLineEnd(entry.name) ||
                (entry.digits[1] == 1 && shootAngles.GetSize() < i) ||
                (entry.digits[2] == 1 && imageNames.GetSize() < i))
                return 0;
            if (entry.digits[1] == 1) {
                CWPK shot(entry.reals[1] * kRadiansPerDegree, entry.reals[2] * kRadiansPerDegree,
                          entry.reals[0] * kRadiansPerDegree);
                NormalizeAngle(shot.kappa);
                reserveDouble(shootAngles);
                shootAngles.Add(shot);
            }
            if (entry.digits[2] == 1) {
                reserveDouble(imageNames);
                imageNames.Add(entry.name);
            }
        }
        CWPK vertex;
        for (int i = 0; i < vertices; ++i) {
            if (!readDirection(file, *this, vertex))
                return 0;
            reserveDouble(outlineAngles);
            outlineAngles.Add(vertex);
        }
        return 1;
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
    appendToFile(CString(kLogFile), Existing::kept, {"", 0}, [&](LineWriter& lines) { lines.append(text); });
}
