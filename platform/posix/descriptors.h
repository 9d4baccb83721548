// File descriptors, paths and locks, for opening files and for replacing them.
#ifndef FIELDSCAN_PLATFORM_POSIX_DESCRIPTORS_H
#define FIELDSCAN_PLATFORM_POSIX_DESCRIPTORS_H

#include <sys/stat.h>

#include <cerrno>
#include <string>

#include "platform/system.h"

namespace fieldscan {
namespace system {

// The path for the system, in UTF-8. `\` separates too; a path that begins with `\` is one of the device,
// below the folder that FIELDSCAN_ROOT names (default `/`).
std::string hostPath(const CString& path);

// The path after following the symbolic links of its last part, whose target need not exist; the path itself
// when they form a circle.
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

// The lock of a writer (flock). It belongs to the descriptor, so threads are kept apart too; closing and the
// end of the process release it.
enum class Lock { taken, held, unknown };  // unknown: the file system has no locks
Lock takeLock(int file);

// True if the path names the file with this status.
bool isNamed(const struct stat& status, const std::string& path);

// Opens the file that `path` names for writing and locks it. Flags as for open; O_TRUNC is applied under the
// lock. Returns -1 and sets `cause` when that fails.
int openLocked(const std::string& path, int flags, CFile::Cause& cause, bool* locked = nullptr);

bool flushDescriptor(int file);
void flushFolder(const std::string& folder);

}  // namespace system
}  // namespace fieldscan

#endif
