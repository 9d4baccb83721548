// File handles: what opening files and replacing them share.
#ifndef FIELDSCAN_PLATFORM_WINDOWS_HANDLES_H
#define FIELDSCAN_PLATFORM_WINDOWS_HANDLES_H

#include "platform/system.h"
#include "platform/windows/api.h"

namespace fieldscan {
namespace system {

HANDLE handleOf(FileHandle file);
FileHandle fileOf(HANDLE handle);
CFile::Cause causeOf(DWORD error);

// The new file that is to replace `path`, in its folder; as short for a long name as for a short one.
CString temporaryFor(const CString& path);
// `start` and the hash of `name`.
CString hashedName(const char16_t* start, const CString& name);

// Whether the call for `path` failed since another program has the file, or replaces it, which may be over in
// a moment. Access is denied too while a file is being replaced; for a folder or a protected file it stays
// denied. Between its old contents and its new ones a file has no name.
bool isHeld(DWORD error, const CString& path);

// CreateFileW, again and again for about a second where another program has the file.
HANDLE openWhenFree(const CString& path, DWORD access, DWORD share, DWORD disposition);

}  // namespace system
}  // namespace fieldscan

#endif
