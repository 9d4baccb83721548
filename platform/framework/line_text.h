// Lines of the text files: 8-bit in the ANSI code page, ended by a line feed.
#ifndef FIELDSCAN_PLATFORM_FRAMEWORK_LINE_TEXT_H
#define FIELDSCAN_PLATFORM_FRAMEWORK_LINE_TEXT_H

#include <fieldscan/framework/file.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

#include "platform/framework/out_of_memory.h"
#include "platform/system.h"

namespace fieldscan {

// A longer line is none: a device without end, or a damaged file, must not take all memory.
constexpr std::size_t kLongestLine = 16 * 1024 * 1024;

// Whether it can name a file: not empty, and no zero unit inside.
bool isPath(const CString& path);

// The next line with its line feed (the last line of a file may lack it); false at the end, when its end
// cannot be read, and when it is longer than 16 MiB, which counts as a failure of the medium.
bool readLine(CFile& file, std::string& line);
// The same without a copy: the line lies in the buffer of the file, or in `split` where the end of the buffer
// cuts it, until the next operation on the file.
bool readLine(CFile& file, std::string& split, std::string_view& line);

// Opens a text file for reading; in UTF-8 a byte order mark at its start, as spreadsheets write one, is
// passed over.
bool openText(CFile& file, const CString& path);
// The text after a byte order mark, where the code page has one.
std::string_view withoutByteOrderMark(std::string_view text);
// Passes over the mark when the position is at the start.
void skipByteOrderMark(CFile& file);

// Whether the line has that many fields between commas, and a number in the last of them. A last line without
// line feed that has not is what a writer left that never finished.
bool hasFields(std::string_view line, int fields);
inline bool isCutOff(std::string_view line, int fields) {
    return line.back() != '\n' && !hasFields(line, fields);
}

// Whether the text comes back from a line: without line end and NUL; from a field of one between commas:
// without a comma too; from a word of one: something, and without white space.
bool fitsLine(const CString& text);
bool fitsField(const CString& text);
bool fitsWord(const CString& text);

// `text` without white space of ASCII at both ends.
std::string_view trimmed(std::string_view text);

// True for nothing but white space: that of ASCII and the ideographic blank.
bool isBlank(unsigned int codePage, std::string_view text);

// 8-bit text as UTF-16 in the code page of files, trimmed at both ends.
CString wideTrimmed(unsigned int codePage, std::string_view text);
void setTrimmed(CString& wide, unsigned int codePage, std::string_view text);

// Splits at commas into at most `most` fields, not trimmed; the rest of the line after the last of them is
// left out. Returns how many there are: at least 1.
int splitAtCommas(std::string_view line, std::string_view* fields, int most);

// Collects text and writes it in large pieces. What is left is written by finish, which tells whether all
// writes succeeded.
//
// Made before its file is opened: where no memory is left for a first piece, no file is touched.
class LineWriter {
public:
    explicit LineWriter(CFile& file);
    std::string& text() { return m_text; }
    unsigned int codePage() const { return m_codePage; }
    void append(const CString& wide);
    void endLine();  // appends a line feed
    bool finish();

private:
    void put();

    CFile& m_file;
    unsigned int m_codePage;
    std::string m_text;
    bool m_good;
};

// Room for one more element, doubled when it runs out: readers do not know how much is to come, and the
// array's own growth step would make a long file quadratic.
template <class Array>
void reserveDouble(Array& array) {
    if (array.GetSize() == array.GetCapacity())
        array.Reserve(array.GetSize() < 32           ? 64
                      : array.GetSize() > 0x3fffffff ? 0x7fffffff
                                                     : 2 * array.GetSize());
}

// The same for one more line of `file`: if the lines to come are as long as those so far, there is room for
// all of them, and for an eighth more. At most 32 times what was read, so that a file that begins with
// short lines does not ask for much. Saves moving a long list again and again, which touches twice its
// memory. In large pages a million points take 0.7 of the time.
template <class Array>
void reserveForLines(Array& array, const CFile& file) {
    const int size = array.GetSize();
    if (size < array.GetCapacity())
        return;
    const auto done = static_cast<double>(file.GetPosition());
    const double expected = done > 0.0 ? size * (static_cast<double>(file.GetLength()) / done) * 1.125 : 0.0;
    const double room = std::min(expected, 32.0 * size);
    if (size >= 64 && size < 0x08000000 && room > 1.03 * size)
        array.Reserve(static_cast<int>(room));
    else
        reserveDouble(array);
    system::expectFilled(array.GetData(), static_cast<std::size_t>(array.GetCapacity()) * sizeof array[0]);
}

}  // namespace fieldscan

#endif
