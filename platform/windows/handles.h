// File handles, for opening files and for replacing them.
#ifndef FIELDSCAN_PLATFORM_WINDOWS_HANDLES_H
#define FIELDSCAN_PLATFORM_WINDOWS_HANDLES_H

#include "platform/system.h"
#include "platform/windows/api.h"

namespace fieldscan {
namespace system {

HANDLE handleOf(FileHandle file);
FileHandle fileOf(HANDLE handle);
CFile::Cause causeOf(DWORD error);

// The absolute path; a device is "\\\\.\\" and its name. Empty when the path is none.
CString fullPath(const CString& path);
// The path of the new file that is to replace `path`.
CString temporaryFor(const CString& path);
// A path of the old file while the new one takes its place. A deleted file keeps its path as long as a reader
// has it open (not on newer systems), so there are kOldPaths of them, numbered from 0.
constexpr int kOldPaths = 4;
CString oldPathFor(const CString& path, int number);
// Where a program was killed after it had moved the old file away, moves it back. Returns true if it did.
bool restoreOld(const CString& path);
// `start` and the hash of `name` (nameHash).
CString hashedName(const char16_t* start, const CString& name);

// True if a call for `path` failed because another program has the file open or is replacing it, and may
// succeed in a moment. While a file is being replaced, access to it is denied, or its name is missing; for a
// folder or a protected file access stays denied.
bool isHeld(DWORD error, const CString& path);

// CreateFileW, repeated for about a second while another program has the file (isHeld).
HANDLE openWhenFree(const CString& path, DWORD access, DWORD share, DWORD disposition);

}  // namespace system
}  // namespace fieldscan

#endif
