// A file that is replaced as a whole, so that a rewriting which does not come to its end loses nothing.
#ifndef FIELDSCAN_PLATFORM_FRAMEWORK_REWRITTEN_FILE_H
#define FIELDSCAN_PLATFORM_FRAMEWORK_REWRITTEN_FILE_H

#include <fieldscan/framework/file.h>

#include <memory>

#include "platform/framework/line_text.h"
#include "platform/system.h"

namespace fieldscan {

// The lines go to a new file beside the old one, which takes its place when all of it is on the medium
// (system::Replacement says where that cannot be).
class RewrittenFile {
public:
    RewrittenFile() : m_lines(m_file) {}
    ~RewrittenFile() { finish(false); }

    // False when the old file may not be written or another writer has it, the folder is missing, or there is
    // no room; `cause` says which.
    bool open(const CString& path, CFile::Cause& cause);
    LineWriter& lines() { return m_lines; }

    // `complete`: all lines are there. True when the new file has its place; else the old one is as it was,
    // or none is there if there was none.
    bool finish(bool complete = true);

private:
    std::unique_ptr<system::Replacement> m_replacement;
    CFile m_file;
    LineWriter m_lines;
};

// Makes or replaces the file by the lines that `write` fills: 1, or 0 when a step fails (RewrittenFile).
// `path` is what a CString converts from.
template <class Path, class Write>
int writeNewFile(const Path& path, Write write) {
    return zeroIfOutOfMemory([&] {
        RewrittenFile rewritten;
        CFile::Cause cause;
        if (!rewritten.open(path, cause))
            return 0;
        write(rewritten.lines());
        return rewritten.finish() ? 1 : 0;
    });
}

}  // namespace fieldscan

#endif
