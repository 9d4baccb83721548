// A file that is replaced as a whole: an interrupted writer loses nothing of the old one.
#ifndef FIELDSCAN_PLATFORM_FRAMEWORK_REWRITTEN_FILE_H
#define FIELDSCAN_PLATFORM_FRAMEWORK_REWRITTEN_FILE_H

#include <fieldscan/framework/file.h>

#include <memory>

#include "platform/framework/line_writer.h"
#include "platform/framework/out_of_memory.h"
#include "platform/system.h"

namespace fieldscan {

// The lines go to a new file next to the old one, which it replaces once all of it is on the medium. Where
// that is impossible, the old file itself is written (system::Replacement).
class RewrittenFile {
public:
    // False when the old file may not be written, another writer has it, the folder is missing, or there is
    // no room; `cause` says which.
    bool open(const CString& path, CFile::Cause& cause);
    LineWriter& lines() { return m_lines; }

    // True when the new file has replaced the old one, which is as it was otherwise.
    bool finish();

private:
    std::unique_ptr<system::Replacement> m_replacement;  // taken back unless finished
    LineWriter m_lines;
};

// Makes or replaces the file by the lines that `write` fills in: 1, or 0 when a step fails (RewrittenFile).
// `path` is what a CString can be made from.
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
