// Lines on their way into a file: 8-bit text in the ANSI code page, written in large pieces.
#ifndef FIELDSCAN_PLATFORM_FRAMEWORK_LINE_WRITER_H
#define FIELDSCAN_PLATFORM_FRAMEWORK_LINE_WRITER_H

#include <fieldscan/framework/string.h>

#include <string>

#include "platform/system.h"

namespace fieldscan {

// The constructor takes the memory for the first piece: make the writer before its file is opened, so that no
// file is touched when there is no memory.
class LineWriter {
public:
    LineWriter();
    void setFile(system::FileHandle file) { m_file = file; }  // before the first line

    std::string& text() { return m_text; }  // append to it
    void append(const CString& wide);
    void endLine();  // appends a line feed
    // Writes what is left; true if this and all writes before it succeeded.
    bool finish();

private:
    void writePiece();

    system::FileHandle m_file = system::kNoFile;
    unsigned int m_codePage;
    std::string m_text;
    bool m_good = true;
};

}  // namespace fieldscan

#endif
