// CRange, the box of points, and the range file: version, axes, unit, count, two corners.
#include <fieldscan/range.h>
#include <fieldscan/scan_result_files.h>
#include <fieldscan/survey.h>

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <limits>
#include <string>
#include <utility>

#include "files/value_lines.h"
#include "platform/framework/rewritten_file.h"

using namespace fieldscan;

namespace {

const char kVersion[] = "FIELD_SCAN_RNG_FILEVER1.0";

bool isKnown(int axes, int unit) {
    return (axes == RANGE_SURVEY || axes == RANGE_MATH) && unit >= RANGE_METRE && unit <= RANGE_USFEET;
}

double toUnit(double m, int unit) {
    return unit == RANGE_INTFEET  ? CCalcXYZHV::MtoIntFT(m)
           : unit == RANGE_USFEET ? CCalcXYZHV::MtoUSFT(m)
                                  : m;
}

double toMetres(double length, int unit) {
    return unit == RANGE_INTFEET  ? CCalcXYZHV::IntFTtoM(length)
           : unit == RANGE_USFEET ? CCalcXYZHV::USFTtoM(length)
                                  : length;
}

void appendCorner(LineWriter& lines, CXYZ corner, int axes, int unit, const char* comment) {
    if (axes == RANGE_MATH)
        std::swap(corner.x, corner.y);
    const char* separator = "";
    for (const double coordinate : {corner.x, corner.y, corner.z}) {
        lines.text() += separator;
        appendFixed(lines.text(), toUnit(coordinate, unit), 10);
        separator = " ";
    }
    lines.text() += comment;
    lines.endLine();
}

bool readCorner(CFile& file, int axes, int unit, CXYZ& corner) {
    std::string line;
    if (!readLine(file, line))
        return false;
    Scanner scanner(line);
    for (double* coordinate : {&corner.x, &corner.y, &corner.z}) {
        if (scanner.scanDouble(*coordinate) != Scanner::Result::matched)
            return false;
        *coordinate = toMetres(*coordinate, unit);
    }
    if (axes == RANGE_MATH)
        std::swap(corner.x, corner.y);
    return true;
}

int readRange(const CString& path, CRange& range) {
    CFile file;
    if (!file.Open(path, CFile::modeRead) || ReadHeader(&file, kVersion) != 1)
        return 0;
    int axes = -1, unit = -1, count = -1;  // refused unless a number replaces it
    if (!readInteger(file, axes) || !readInteger(file, unit) || !readInteger(file, count) ||
        !isKnown(axes, unit) || count < 0)
        return 0;
    CXYZ lower, upper;
    if (!readCorner(file, axes, unit, lower) || !readCorner(file, axes, unit, upper))
        return 0;
    if (!(lower.x <= upper.x && lower.y <= upper.y && lower.z <= upper.z))  // false for NaN too
        return 0;
    range.lower = lower;
    range.upper = upper;
    range.count = count;
    return 1;
}

}  // namespace

CRange::CRange() : count(0) {}

CRange::CRange(const CRange&) = default;

CRange& CRange::operator=(const CRange&) = default;

void CRange::Init() {
    lower.Init();
    upper.Init();
    count = 0;
}

void CRange::Trace() {}

int CRange::AddPoint(const CXYZ& point) {
    if (std::isnan(point.x) || std::isnan(point.y) || std::isnan(point.z))
        return 0;
    if (count < 1) {
        count = 0;
        lower.SetXYZ(point.x, point.y, point.z);
        upper.SetXYZ(point.x, point.y, point.z);
    }
    lower.SetXYZ(std::min(lower.x, point.x), std::min(lower.y, point.y), std::min(lower.z, point.z));
    upper.SetXYZ(std::max(upper.x, point.x), std::max(upper.y, point.y), std::max(upper.z, point.z));
    if (count < std::numeric_limits<int>::max())  // a file may hold any count
        ++count;
    return 1;
}

int CRange::IsInside(const CXYZ& point) const {
    return count > 0 && lower.x <= point.x && point.x <= upper.x && lower.y <= point.y &&
                   point.y <= upper.y && lower.z <= point.z && point.z <= upper.z
               ? 1
               : 0;
}

int CRange::Write(CString path, RANGE_AXES axes, RANGE_UNIT unit) const {
    if (!isKnown(axes, unit))
        return 0;
    return writeNewFile(path, [&](LineWriter& lines) {
        lines.text() += kVersion;
        lines.endLine();
        appendInteger(lines, axes, "\t\t\t// axes: 0 x north, 1 x east");
        appendInteger(lines, unit, "\t\t\t// unit: 0 m, 1 international ft, 2 US survey ft");
        appendInteger(lines, std::max(count, 0), "\t\t\t// number of points");
        appendCorner(lines, lower, axes, unit, "\t\t\t// lower corner x y z");
        appendCorner(lines, upper, axes, unit, "\t\t\t// upper corner x y z");
    });
}

int CRange::Read(CString path) {
    Init();
    return zeroIfOutOfMemory([&] { return readRange(path, *this); });
}
