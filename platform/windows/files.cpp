// Files through the Windows calls. An open file may be opened a second time for reading alone, and by a
// program that lets others write only; a second writer is refused: two would write over each other.
#include <algorithm>

#include "platform/system.h"
#include "platform/windows/api.h"

namespace fieldscan {
namespace system {

namespace {

constexpr std::size_t kMostBytes = std::size_t{1} << 30;  // what one call is asked for

HANDLE handleOf(FileHandle file) { return reinterpret_cast<HANDLE>(static_cast<INT_PTR>(file)); }

FileHandle fileOf(HANDLE handle) { return static_cast<FileHandle>(reinterpret_cast<INT_PTR>(handle)); }

CFile::Cause causeOf(DWORD error) {
    switch (error) {
        case ERROR_FILE_NOT_FOUND:
        case ERROR_PATH_NOT_FOUND:
        case ERROR_INVALID_DRIVE:
        case ERROR_BAD_NETPATH:
        case ERROR_BAD_NET_NAME:
            return CFile::causeNotFound;
        case ERROR_ACCESS_DENIED:
        case ERROR_WRITE_PROTECT:
        case ERROR_NETWORK_ACCESS_DENIED:
        case ERROR_CANNOT_MAKE:
            return CFile::causeAccessDenied;
        case ERROR_SHARING_VIOLATION:
        case ERROR_LOCK_VIOLATION:
        case ERROR_USER_MAPPED_FILE:
            return CFile::causeSharingViolation;
        default:
            return CFile::causeOther;
    }
}

DWORD accessOf(unsigned int mode) {
    if (mode & CFile::modeWrite)
        return GENERIC_WRITE;
    return mode & CFile::modeReadWrite ? GENERIC_READ | GENERIC_WRITE : GENERIC_READ;
}

// Emptied after the opening: opening in order to empty refuses hidden files. causeNone when all went well.
CFile::Cause prepare(HANDLE handle, unsigned int mode) {
    // A name like "NUL.csv" or "COM1" means a device, which takes measurements and keeps none.
    if (GetFileType(handle) != FILE_TYPE_DISK)
        return CFile::causeOther;
    const bool empties = (mode & CFile::modeCreate) && !(mode & CFile::modeNoTruncate);
    return empties && !SetEndOfFile(handle) ? causeOf(GetLastError()) : CFile::causeNone;
}

}  // namespace

FileHandle openFile(const CString& path, unsigned int mode, CFile::Cause& cause) {
    const HANDLE handle =
        CreateFileW(wideUnits(path), accessOf(mode), FILE_SHARE_READ, nullptr,
                    mode & CFile::modeCreate ? OPEN_ALWAYS : OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        cause = causeOf(GetLastError());
        return kNoFile;
    }
    cause = prepare(handle, mode);
    if (cause != CFile::causeNone) {
        CloseHandle(handle);
        return kNoFile;
    }
    return fileOf(handle);
}

long long readFile(FileHandle file, void* buffer, std::size_t count) {
    DWORD done = 0;
    return ReadFile(handleOf(file), buffer, static_cast<DWORD>(std::min(count, kMostBytes)), &done, nullptr)
               ? static_cast<long long>(done)
               : -1;
}

long long writeFile(FileHandle file, const void* buffer, std::size_t count) {
    DWORD done = 0;
    return WriteFile(handleOf(file), buffer, static_cast<DWORD>(std::min(count, kMostBytes)), &done, nullptr)
               ? static_cast<long long>(done)
               : -1;
}

long long seekFile(FileHandle file, long long offset, bool fromEnd) {
    LARGE_INTEGER distance, position;
    distance.QuadPart = offset;
    return SetFilePointerEx(handleOf(file), distance, &position, fromEnd ? FILE_END : FILE_CURRENT)
               ? position.QuadPart
               : -1;
}

bool rewindFile(FileHandle file) {
    return SetFilePointerEx(handleOf(file), LARGE_INTEGER(), nullptr, FILE_BEGIN) != 0;
}

long long fileLength(FileHandle file) {
    LARGE_INTEGER length;
    return GetFileSizeEx(handleOf(file), &length) ? length.QuadPart : -1;
}

bool flushFile(FileHandle file) { return FlushFileBuffers(handleOf(file)) != 0; }

bool closeFile(FileHandle file) { return CloseHandle(handleOf(file)) != 0; }

bool isFile(const CString& path) {
    const DWORD attributes = path.IsEmpty() ? INVALID_FILE_ATTRIBUTES : GetFileAttributesW(wideUnits(path));
    return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
}

bool isReplaceable(const CString& path) {
    const DWORD attributes = GetFileAttributesW(wideUnits(path));
    return attributes != INVALID_FILE_ATTRIBUTES &&
           !(attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_DEVICE | FILE_ATTRIBUTE_REPARSE_POINT));
}

bool replaceFile(const CString& from, const CString& to) {
    return SetFileAttributesW(wideUnits(from), GetFileAttributesW(wideUnits(to))) &&
           MoveFileExW(wideUnits(from), wideUnits(to), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH);
}

void removeFile(const CString& path) { DeleteFileW(wideUnits(path)); }

}  // namespace system
}  // namespace fieldscan
