// A file that is replaced as a whole, so that a rewriting which does not come to its end loses nothing.
#ifndef FIELDSCAN_PLATFORM_FRAMEWORK_REWRITTEN_FILE_H
#define FIELDSCAN_PLATFORM_FRAMEWORK_REWRITTEN_FILE_H

#include <fieldscan/framework/file.h>

#include "platform/framework/line_text.h"

namespace fieldscan {

// What is written goes to a new file beside the old one, "NAME.new~", which takes its place when all of it is
// on the medium. Where that cannot be - a link, a device, a folder in which no file can be made - the old
// file is emptied and written itself.
class RewrittenFile {
public:
    RewrittenFile() : m_made(false), m_beside(false) {}
    ~RewrittenFile() { finish(false); }

    // As CFile::Open with modeCreate | modeWrite, but that the old file keeps its contents; the cause of a
    // failure is that of file().
    bool open(const CString& path);
    CFile& file() { return m_file; }

    // `written`: nothing was lost on the way. True when the new file has its place; else the old one is there
    // as it was, or none if there was none.
    bool finish(bool written);

private:
    CFile m_file;
    CString m_path;
    CString m_new;
    bool m_made;    // there was no file
    bool m_beside;  // m_new is being written, not the file itself
};

// Makes or replaces the file by the lines that `write` fills: 1, or 0 when a step fails, and the file is then
// as it was (RewrittenFile). `path` is what a CString converts from.
template <class Path, class Write>
int writeNewFile(const Path& path, Write write) {
    return zeroIfOutOfMemory([&] {
        RewrittenFile rewritten;
        if (!rewritten.open(path))
            return 0;
        LineWriter lines(rewritten.file());
        write(lines);
        return rewritten.finish(lines.finish()) ? 1 : 0;
    });
}

}  // namespace fieldscan

#endif
