// What the readers and writers of points share.
#ifndef FIELDSCAN_FILES_POINT_LINES_H
#define FIELDSCAN_FILES_POINT_LINES_H

#include <fieldscan/framework/array.h>
#include <fieldscan/framework/file.h>
#include <fieldscan/points.h>

#include <string>
#include <string_view>

#include "platform/framework/appended_file.h"
#include "platform/framework/line_text.h"

namespace fieldscan {

// Appends "name,x,y,z" with six decimals, without an end of line.
void appendPoint(LineWriter& lines, const CXYZ& point);

// Appends "name,x,y,z,code,attr[2],text", without an end of line.
void appendScanPoint(LineWriter& lines, const CXYZ& point, const CString& text);

// The field of a number, trimmed; `buffer` may hold it.
std::string_view numberText(unsigned int codePage, std::string_view field, std::string& buffer);

// Adds the point that a line of `file` begins with, "name,x,y,z", in place; missing fields are empty. `line`
// is left with what stands behind the next comma.
CXYZ& addPoint(CArray<CXYZ, CXYZ&>& points, const CFile& file, unsigned int codePage, std::string_view& line);

// The point of the next line, "name x y" separated by blanks: z is 0, and so is what is no number. False when
// the line is missing or blank.
bool readNamedPoint(CFile& file, unsigned int codePage, CXYZ& point);

// Opens an existing file for reading; a missing one fails when mustExist is 1, else it is made first.
bool openForReading(CFile& file, const CString* path, int mustExist);

// The kinds of files of points: a plain line, of which a code or more may follow, and a versioned one.
constexpr LineKind kPointLines = {"", 4};
constexpr LineKind kVersionedLines = {"FIELD_SCAN_MPT_FILEVER1.0\r\n", 9};

// Whether all names come back from a line (fitsField).
bool haveNames(const CArray<CXYZ, CXYZ&>& points);

}  // namespace fieldscan

#endif
