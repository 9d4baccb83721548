// Lines of one value and a comment that names it: "0.007400\t\t\t// x resolution [mm/pixel]".
#ifndef FIELDSCAN_FILES_VALUE_LINES_H
#define FIELDSCAN_FILES_VALUE_LINES_H

#include <fieldscan/framework/file.h>

#include <string>
#include <string_view>

#include "files/point_lines.h"
#include "platform/framework/line_text.h"
#include "platform/framework/line_writer.h"
#include "platform/framework/number_text.h"
#include "platform/system.h"

namespace fieldscan {

// `comment` is all that follows the value up to the line feed, its tabs included. Reals have six decimals.
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

// Reads the value at the start of the next line; text that is no number leaves it as it was. False when the
// line is missing, blank or begins with a NUL.
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
