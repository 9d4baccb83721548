// File descriptors: what opening files and replacing them share.
#ifndef FIELDSCAN_PLATFORM_POSIX_DESCRIPTORS_H
#define FIELDSCAN_PLATFORM_POSIX_DESCRIPTORS_H

#include <sys/stat.h>

#include <cerrno>
#include <string>

#include "platform/system.h"

namespace fieldscan {
namespace system {

// The path in the bytes of the system. `\` separates too; a path that begins with `\` is one of the device,
// below the folder that FIELDSCAN_ROOT names (default `/`); names are UTF-8.
std::string hostPath(const CString& path);

// Where the symbolic links of a path's last part lead, also to no file yet; the path where they lead in a
// circle.
std::string withoutLinks(const std::string& path);

// The folder of a path, with its separator; "./" for a plain name.
std::string folderOf(const std::string& path);

// Repeats a call that a signal interrupted.
template <class Call>
auto uninterrupted(Call call) {
    decltype(call()) result;
    do {
        result = call();
    } while (result < 0 && errno == EINTR);
    return result;
}

CFile::Cause causeOf(int error);

// The lock of a writer: it belongs to the descriptor, so that threads are kept apart too, and closing it or
// the end of the process gives it back.
enum class Lock { taken, held, unknown };  // unknown: the file system has no locks
Lock takeLock(int file);

// Whether the path names the file of this status.
bool isNamed(const struct stat& status, const std::string& path);

// Opens for writing, with the lock, the file that `path` names by then; flags are those of open, of which
// O_TRUNC waits for the lock. -1 with `cause` set when it fails.
int openLocked(const std::string& path, int flags, CFile::Cause& cause, bool* locked = nullptr);

bool flushDescriptor(int file);
void flushFolder(const std::string& folder);

}  // namespace system
}  // namespace fieldscan

#endif
