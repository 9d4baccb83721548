// A file of lines that grows at its end, and loses nothing to a writer that was killed, to a second writer or
// to a full medium.
#ifndef FIELDSCAN_PLATFORM_FRAMEWORK_APPENDED_FILE_H
#define FIELDSCAN_PLATFORM_FRAMEWORK_APPENDED_FILE_H

#include <fieldscan/framework/file.h>

#include <string_view>

#include "platform/framework/line_text.h"

namespace fieldscan {

// What the lines of a file are.
struct LineKind {
    std::string_view header;  // the line that every such file begins with; may be empty
    int fields;               // that a line has at least (hasFields); 0: text without lines
};

enum class Existing {
    needed,  // a missing file fails
    kept,    // a missing file is made
    emptied  // the same, and what the file holds goes
};

// Lines go to the end of the file, which belongs to this writer meanwhile. A last line without line feed is
// ended when it has its fields; with fewer it is what a writer left that never finished, and is cut off. A
// header that was cut off, or is missing in an empty file, is written before the lines.
class AppendedFile {
public:
    AppendedFile() : m_lines(m_file) {}
    ~AppendedFile() { finish(false); }

    // False when the file cannot be opened, read at its end, or cut.
    bool open(const CString& path, Existing existing, const LineKind& kind);
    LineWriter& lines() { return m_lines; }

    // Brings the lines to the medium. False when that fails or `complete` is: of the lines those stay that
    // were written whole before a write failed, and nothing after another failure. A file that was made for
    // them goes again.
    bool finish(bool complete = true);

private:
    bool openAlone(const CString& path, unsigned int mode, CFile::Cause& cause);
    bool look(const LineKind& kind, bool readable);
    void takeBack(bool wholeLinesStay);

    CFile m_file;
    LineWriter m_lines;
    CString m_path;
    long long m_length = 0;  // of what stays in any case
    long long m_start = 0;   // of the first line that is added
    bool m_made = false;
    bool m_wasEmpty = false;  // its name may not be on the medium yet, whoever made it
    bool m_alone = true;      // else the end may be what another writer has not finished: it is left as it is
};

// Appends the lines that `write` fills: 1, or 0 when a step fails.
template <class Write>
int appendToFile(const CString& path, Existing existing, const LineKind& kind, Write write) {
    return zeroIfOutOfMemory([&] {
        AppendedFile appended;
        if (!appended.open(path, existing, kind))
            return 0;
        write(appended.lines());
        return appended.finish() ? 1 : 0;
    });
}

}  // namespace fieldscan

#endif
