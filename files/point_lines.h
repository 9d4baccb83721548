// Lines of points, "name,x,y,z" and "name x y": read and written by all files that hold points.
#ifndef FIELDSCAN_FILES_POINT_LINES_H
#define FIELDSCAN_FILES_POINT_LINES_H

#include <fieldscan/framework/array.h>
#include <fieldscan/framework/file.h>
#include <fieldscan/points.h>

#include <string>
#include <string_view>

#include "platform/framework/appended_file.h"
#include "platform/framework/line_text.h"
#include "platform/framework/line_writer.h"

namespace fieldscan {

// Appends "name,x,y,z" with six decimals, without an end of line.
void appendPoint(LineWriter& lines, const CXYZ& point);

// Appends "name,x,y,z,code,attr[2],text", without an end of line.
void appendScanPoint(LineWriter& lines, const CXYZ& point, const CString& text);

// The text of a number field, trimmed; `buffer` holds it where the ideographic blank had to go.
std::string_view numberText(unsigned int codePage, std::string_view field, std::string& buffer);

// Adds the point at the start of a line of `file`, "name,x,y,z"; a missing field is empty. `line` becomes the
// rest after the fourth field and its comma.
CXYZ& addPoint(CArray<CXYZ, CXYZ&>& points, const CFile& file, unsigned int codePage, std::string_view& line);

// Reads the point of the next line, "name x y" with blanks between. z is 0, and so is a coordinate that is no
// number. False when the line is missing or blank.
bool readNamedPoint(CFile& file, unsigned int codePage, CXYZ& point);

// Opens a file for reading. A missing one is a failure when mustExist is 1; otherwise it is made, empty.
bool openForReading(CFile& file, const CString* path, int mustExist);

// Plain files, where a code and more may follow the point, and versioned ones.
constexpr LineFormat kPointLines = {"", 4};
constexpr LineFormat kVersionedLines = {"FIELD_SCAN_MPT_FILEVER1.0\r\n", 9};

}  // namespace fieldscan

#endif
