// Lines of the text files: 8-bit in the ANSI code page, ended by a line feed. Reading them, their fields, and
// which texts come back from them.
#ifndef FIELDSCAN_PLATFORM_FRAMEWORK_LINE_TEXT_H
#define FIELDSCAN_PLATFORM_FRAMEWORK_LINE_TEXT_H

#include <fieldscan/framework/file.h>

#include <string>
#include <string_view>

namespace fieldscan {

// ---- Lines of a file ----

// Opens a text file for reading and skips a byte order mark at its start.
bool openText(CFile& file, const CString& path);
// Skips a byte order mark when the position is the start of the file.
void skipByteOrderMark(CFile& file);
// The text after a UTF-8 byte order mark, as spreadsheets write one; in other code pages those bytes are
// text.
std::string_view withoutByteOrderMark(std::string_view text);

// CFile::ReadLine, with its line feed; `line` is empty when that fails. The view is valid until the next
// operation that reads, writes or moves the position.
bool readLine(CFile& file, std::string_view& line);
bool readLine(CFile& file, std::string& line);

// ---- Parts of a line ----

// True if the line has that many fields between commas, and a number in the last of them.
bool hasFields(std::string_view line, int fields);
// True for a last line that its writer did not finish: without line feed, and without all its fields.
inline bool isCutOff(std::string_view line, int fields) {
    return line.back() != '\n' && !hasFields(line, fields);
}

// `text` without white space of ASCII at both ends.
std::string_view trimmed(std::string_view text);

// True if there is only white space: that of ASCII and the ideographic blank.
bool isBlank(unsigned int codePage, std::string_view text);

// 8-bit text as UTF-16, without that white space at both ends.
CString wideTrimmed(unsigned int codePage, std::string_view text);
void setTrimmed(CString& wide, unsigned int codePage, std::string_view text);

// Splits at commas into at most `most` fields, not trimmed, and drops what follows the last of them. Returns
// their number, at least 1.
int splitAtCommas(std::string_view line, std::string_view* fields, int most);

// ---- Texts that come back ----

// True if the text, written as a line, is read as the same text: it has no line end and no NUL, and no byte
// order mark at its start.
bool fitsLine(const CString& text);
// The same for a field between commas: no comma either.
bool fitsField(const CString& text);
// The same for a word between blanks: not empty, and no white space of ASCII either.
bool fitsWord(const CString& text);

}  // namespace fieldscan

#endif
