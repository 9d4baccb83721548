// CTSUnit, the display units of the operator, and their file: version, then one code a line.
#include <fieldscan/unit_settings.h>

#include "files/value_lines.h"
#include "platform/framework/rewritten_file.h"

using namespace fieldscan;

namespace {

const char16_t kVersion10[] = u"FIELD_SCAN_UNI_FILEVER1.0";
const char16_t kVersion11[] = u"FIELD_SCAN_UNI_FILEVER1.1";

}  // namespace

CTSUnit::CTSUnit() { Init(); }

CTSUnit::CTSUnit(const CTSUnit& other) : meterFeet(other.meterFeet), feet(other.feet), angle(other.angle) {}

CTSUnit& CTSUnit::operator=(const CTSUnit& other) {
    meterFeet = other.meterFeet;
    feet = other.feet;
    angle = other.angle;
    return *this;
}

CTSUnit::~CTSUnit() {}

void CTSUnit::Init() {
    meterFeet = 0;
    feet = 0;
    angle = 1;
    version = kVersion10;
}

void CTSUnit::Trace() {}

int CTSUnit::Read(CString path) {
    return zeroIfOutOfMemory([&] {
        CFile file;
        if (!openText(file, path))
            return 0;
        Init();
        std::string line, word;
        if (!readLine(file, line) || Scanner(line).scanWord(word) != Scanner::Result::matched)
            return 0;
        version = word.c_str();
        if (!readInteger(file, meterFeet) || !readInteger(file, feet))
            return 0;
        return version != kVersion11 || readInteger(file, angle) ? 1 : 0;
    });
}

int CTSUnit::Write(CString path) const {
    return writeNewFile(path, [&](LineWriter& lines) {
        lines.append(kVersion11);
        lines.endLine();
        appendInteger(lines, meterFeet, "\t\t\t// meter-feet");
        appendInteger(lines, feet, "\t\t\t// feet");
        appendInteger(lines, angle, "\t\t\t// angle");
    });
}
