// Lines that hold one value and a comment that names it: "0.007400\t\t\t// x resolution [mm/pixel]".
#ifndef FIELDSCAN_FILES_VALUE_LINES_H
#define FIELDSCAN_FILES_VALUE_LINES_H

#include <fieldscan/framework/file.h>

#include <string>
#include <string_view>

#include "files/point_lines.h"
#include "platform/framework/number_text.h"
#include "platform/system.h"

namespace fieldscan {

// `comment` is all that stands between the value and the line feed, from its first tab on.
// Six decimals.
inline void appendReal(LineWriter& lines, double value, std::string_view comment) {
    appendFixed(lines.text(), value, 6);
    lines.text() += comment;
    lines.endLine();
}

inline void appendInteger(LineWriter& lines, int value, std::string_view comment) {
    appendInt(lines.text(), value);
    lines.text() += comment;
    lines.endLine();
}

// The value at the start of the next line; text that is none leaves it as it was. False when the line is
// missing or blank, or a NUL comes first.
inline bool readReal(CFile& file, double& value) {
    std::string line, buffer;
    return readLine(file, line) &&
           Scanner(numberText(system::ansiCodePage(), line, buffer)).scanDouble(value) !=
               Scanner::Result::endOfInput;
}

inline bool readInteger(CFile& file, int& value) {
    std::string line, buffer;
    return readLine(file, line) && Scanner(numberText(system::ansiCodePage(), line, buffer)).scanInt(value) !=
                                       Scanner::Result::endOfInput;
}

}  // namespace fieldscan

#endif
