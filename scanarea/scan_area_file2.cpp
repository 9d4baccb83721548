// The scan-area file, second version (docs/file_formats.md): also with the outline, phi of the shots, and
// image names that contain blanks and commas. Every line is checked when it is read.
#include <fieldscan/scan_area.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <string_view>

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

const char kSecondVersion[] = "WQ_FSCAN_AREA_FORMAT_V2";

// A line "name,number,a,b,c,dddd": the number of columns, rows, shots or outline vertices, or a shot.
enum EntryKind { kColumns = 1, kRows, kShots, kOutline, kShot };

// The digits dddd: the kind, 1 if the shot has a direction, 1 if it has a name, and one that is not used.
enum { kKindDigit, kDirectionDigit, kNameDigit };

struct Entry {
    CString name;
    int number = 0;
    double reals[3] = {0.0, 0.0, 0.0};  // of a shot: horizontal angle, zenith angle, phi in degrees
    int digits[4] = {0, 0, 0, 0};
};

// An angle in degrees that does not round up to 360 if it is below the full circle: 360 would come back as 0,
// and a full circle would have no width.
double degreesBelow360(double radians, int decimals) {
    constexpr double kLargest[] = {359.0, 359.9, 359.99, 359.999, 359.9999, 359.99999};
    const double degrees = radians * kDegreesPerRadian;
    return radians < kFullTurn ? std::fmin(degrees, kLargest[decimals]) : degrees;
}

// "horizontal zenith" in degrees.
void appendDirection(std::string& text, const CWPK& direction, int decimals) {
    appendFixed(text, degreesBelow360(direction.kappa, decimals), decimals);
    text += ' ';
    appendFixed(text, degreesBelow360(direction.omega, decimals), decimals);
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

void appendCount(LineWriter& lines, const char16_t* name, int number, EntryKind kind) {
    Entry entry;
    entry.name = name;
    entry.number = number;
    entry.digits[kKindDigit] = kind;
    appendEntry(lines, entry);
}

// The next line without its end; false if there is none, or if it is cut off: it has no line feed.
bool readWholeLine(CFile& file, std::string& line) {
    if (!readLine(file, line) || line.back() != '\n')
        return false;
    line.pop_back();
    if (!line.empty() && line.back() == '\r')
        line.pop_back();
    return true;
}

// False unless the whole text is one number, a finite one.
bool readInteger(std::string_view text, int& value) {
    std::size_t used = 0;
    value = parseInt(text, 10, &used);
    return used > 0 && used == text.size();
}

bool readReal(std::string_view text, double& value) {
    std::size_t used = 0;
    value = parseDouble(text, &used);
    return used > 0 && used == text.size() && std::isfinite(value);
}

// Reads the fields from the last one on, since the name may contain commas.
bool readEntry(CFile& file, unsigned int codePage, EntryKind kind, Entry& entry) {
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
    if (!readInteger(fields[0], entry.number) || fields[4].size() != 4)
        return false;
    for (int i = 0; i < 3; ++i)
        if (!readReal(fields[1 + i], entry.reals[i]))
            return false;
    for (int i = 0; i < 4; ++i) {
        entry.digits[i] = fields[4][static_cast<std::size_t>(i)] - '0';
        if (entry.digits[i] < 0 || entry.digits[i] > (i == kKindDigit ? 9 : 1))
            return false;
    }
    entry.name.Empty();
    system::appendWide(codePage, rest.data(), rest.size(), entry.name);
    return entry.digits[kKindDigit] == kind;
}

bool readCount(CFile& file, unsigned int codePage, const char16_t* name, EntryKind kind, int& number) {
    Entry entry;
    if (!readEntry(file, codePage, kind, entry) || entry.name != name)
        return false;
    number = entry.number;
    return true;
}

// The direction is brought into [0, 2 pi).
bool readDirection(CFile& file, const CScanArea& area, CWPK& direction) {
    std::string line;
    if (!readWholeLine(file, line))
        return false;
    const std::string_view text = line;
    const std::size_t blank = text.find(' ');
    double horizontal, zenith;
    if (blank == std::string_view::npos || !readReal(text.substr(0, blank), horizontal) ||
        !readReal(text.substr(blank + 1), zenith))
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
        if (!openForRewriting(rewritten, path))
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
            appendDirection(lines.text(), *corner, 3);
            lines.endLine();
        }
        for (int i = 0; i < shots; ++i) {
            Entry entry;
            entry.number = i;
            entry.digits[kKindDigit] = kShot;
            if (i < shootAngles.GetSize()) {
                const CWPK& shot = shootAngles[i];
                entry.digits[kDirectionDigit] = 1;
                entry.reals[0] = degreesBelow360(shot.kappa, 5);
                entry.reals[1] = degreesBelow360(shot.omega, 5);
                entry.reals[2] = shot.phi * kDegreesPerRadian;
            }
            if (i < imageNames.GetSize()) {
                entry.digits[kNameDigit] = 1;
                entry.name = imageNames[i];
            }
            appendEntry(lines, entry);
        }
        for (int i = 0; i < outlineAngles.GetSize(); ++i) {
            appendDirection(lines.text(), outlineAngles[i], 4);
            lines.endLine();
        }
        return rewritten.finish() ? 1 : 0;
    });
}

int CScanArea::Read2(CString path) {
    Init();
    return zeroIfOutOfMemory([&] {
        CFile file;
        if (!openForReading(file, path))
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
                (entry.digits[kDirectionDigit] == 1 && shootAngles.GetSize() < i) ||
                (entry.digits[kNameDigit] == 1 && imageNames.GetSize() < i))
                return 0;
            if (entry.digits[kDirectionDigit] == 1) {
                CWPK shot(entry.reals[1] * kRadiansPerDegree, entry.reals[2] * kRadiansPerDegree,
                          entry.reals[0] * kRadiansPerDegree);
                NormalizeAngle(shot.kappa);
                reserveDouble(shootAngles);
                shootAngles.Add(shot);
            }
            if (entry.digits[kNameDigit] == 1) {
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
