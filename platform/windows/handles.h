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

// Whether the call for `path` failed since another program has the file, which may be over in a moment.
// Access is denied too while a file is being replaced; for a folder or a protected file it stays denied.
bool isHeld(DWORD error, const CString& path);

// CreateFileW, again and again for about a second where another program has the file.
HANDLE openWhenFree(const CString& path, DWORD access, DWORD share, DWORD disposition);

}  // namespace system
}  // namespace fieldscan

#endif
