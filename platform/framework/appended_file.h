// A file of lines that grows at its end: a killed program, a second writer or a full medium damages no line
// that was complete.
#ifndef FIELDSCAN_PLATFORM_FRAMEWORK_APPENDED_FILE_H
#define FIELDSCAN_PLATFORM_FRAMEWORK_APPENDED_FILE_H

#include <fieldscan/framework/file.h>

#include <string_view>

#include "platform/framework/line_writer.h"
#include "platform/framework/out_of_memory.h"
#include "platform/system.h"

namespace fieldscan {

// What the lines of a file look like.
struct LineFormat {
    std::string_view header;  // the first line of every such file; may be empty
    int fields;               // the fewest fields of a line (hasFields); 0: text that is not checked
};

// What happens to a missing file, and to the contents of an existing one.
enum class Existing {
    needed,  // a missing file is a failure
    kept,    // a missing file is made
    emptied  // a missing file is made, an existing one emptied
};

// Lines go to the end of the file, which belongs to this writer until `finish`. A last line without line feed
// gets one if it has all its fields; with fewer it was cut off, and is removed. A header that was cut off, or
// is missing in an empty file, is written before the lines.
class AppendedFile {
public:
    AppendedFile() = default;
    ~AppendedFile() { finish(false); }
    AppendedFile(const AppendedFile&) = delete;
    AppendedFile& operator=(const AppendedFile&) = delete;

    // False when the file cannot be opened, read at its end, or cut.
    bool open(const CString& path, Existing existing, const LineFormat& format);
    LineWriter& lines() { return m_lines; }

    // Brings the lines to the medium and closes. `complete`: all lines are there. Returns false when a step
    // failed or the lines are incomplete. When a write failed, the lines that were written whole stay; in all
    // other cases none, and a file that was made for them is removed.
    bool finish(bool complete = true);

private:
    bool openLocked(const CString& path, unsigned int mode, CFile::Cause& cause);
    bool repairEnd(const LineFormat& format, bool readable);
    void takeBack(bool wholeLinesStay);

    bool isOpen() const { return m_file != system::kNoFile; }

    system::FileHandle m_file = system::kNoFile;
    LineWriter m_lines;
    CString m_path;
    long long m_length = 0;  // of what stays in any case
    long long m_start = 0;   // of the first new line
    bool m_made = false;
    bool m_wasEmpty = false;  // its name may not be on the medium yet, whoever made it
    bool m_locked = true;     // if not, the end may be another writer's unfinished line: it is not touched
};

// Appends the lines that `write` fills in: 1, or 0 when a step fails.
template <class Write>
int appendToFile(const CString& path, Existing existing, const LineFormat& format, Write write) {
    return zeroIfOutOfMemory([&] {
        AppendedFile appended;
        if (!appended.open(path, existing, format))
            return 0;
        write(appended.lines());
        return appended.finish() ? 1 : 0;
    });
}

}  // namespace fieldscan

#endif
