// Files on Windows. Share modes are the lock of a writer: others may only read what is open for writing. What
// is open for reading may be replaced, and its reader goes on with the old contents.
#include <algorithm>
#include <string>

#include "platform/framework/name_hash.h"
#include "platform/system.h"
#include "platform/windows/handles.h"

namespace fieldscan {
namespace system {

namespace {

constexpr std::size_t kMostBytes = std::size_t{1} << 30;  // the most for one call

DWORD accessOf(unsigned int mode) {
    if (mode & CFile::modeWrite)
        return GENERIC_WRITE;
    return mode & CFile::modeReadWrite ? GENERIC_READ | GENERIC_WRITE : GENERIC_READ;
}

// Refuses devices, and empties the file if `mode` says so: opening with CREATE_ALWAYS fails for hidden files.
// causeNone when the file is ready.
CFile::Cause prepare(HANDLE handle, unsigned int mode) {
    // A name like "NUL.csv" or "COM1" is a device, which keeps nothing of what is written.
    if (GetFileType(handle) != FILE_TYPE_DISK)
        return CFile::causeOther;
    const bool empties = (mode & CFile::modeCreate) && !(mode & CFile::modeNoTruncate);
    return empties && !SetEndOfFile(handle) ? causeOf(GetLastError()) : CFile::causeNone;
}

// A path in the folder of `path`: `start` and the hash of its name.
CString hiddenBeside(const CString& path, const char16_t* start) {
    const int drive = path.Find(':') == 1 ? 2 : 0;
    const int folder = std::max({drive, path.ReverseFind('\\') + 1, path.ReverseFind('/') + 1});
    CString name = path.Mid(folder);
    name.MakeLower();  // names that differ in case are one file
    return path.Left(folder) + hashedName(start, name);
}

// Names of devices are files for GetFileAttributesW. "\\\\.\\C:\\name" is a file, not a device.
bool isDevice(const CString& path) {
    const CString whole = fullPath(path);
    return whole.Left(4) == CString(u"\\\\.\\") && whole.ReverseFind('\\') == 3;
}

}  // namespace

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

CString hashedName(const char16_t* start, const CString& name) {
    const std::string hash = nameHash(name.GetString(), static_cast<std::size_t>(name.GetLength()));
    CString hashed(start);
    appendWide(kUtf8, hash.data(), hash.size(), hashed);
    return hashed;
}

CString temporaryFor(const CString& path) { return hiddenBeside(path, u".fieldscan-"); }

CString oldPathFor(const CString& path, int number) {
    static const char16_t* const starts[kOldPaths] = {u".fieldscan0", u".fieldscan1", u".fieldscan2",
                                                      u".fieldscan3"};
    return hiddenBeside(path, starts[number]);
}

CString fullPath(const CString& path) {
    const DWORD length = GetFullPathNameW(wideUnits(path), 0, nullptr, nullptr);  // with the final zero
    std::wstring whole(length + 1, L'\0');
    return CString(length > 0 && GetFullPathNameW(wideUnits(path), length + 1, whole.data(), nullptr) > 0
                       ? whole.c_str()
                       : L"");
}

bool isHeld(DWORD error, const CString& path) {
    if (error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION)
        return true;
    const DWORD attributes = GetFileAttributesW(wideUnits(path));
    if (error == ERROR_FILE_NOT_FOUND)
        return attributes != INVALID_FILE_ATTRIBUTES || isFile(temporaryFor(path));
    return error == ERROR_ACCESS_DENIED && attributes != INVALID_FILE_ATTRIBUTES &&
           !(attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY));
}

HANDLE openWhenFree(const CString& path, DWORD access, DWORD share, DWORD disposition) {
    for (int tries = 0;; ++tries) {
        const HANDLE handle =
            CreateFileW(wideUnits(path), access, share, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
        if (handle != INVALID_HANDLE_VALUE)
            return handle;
        const DWORD error = GetLastError();
        const bool again = isHeld(error, path) && waitForFile(tries);
        SetLastError(error);
        if (!again)
            return handle;
    }
}

FileHandle openFile(const CString& path, unsigned int mode, CFile::Cause& cause, bool*) {
    const DWORD access = accessOf(mode);
    const DWORD share = access & GENERIC_WRITE ? FILE_SHARE_READ : FILE_SHARE_READ | FILE_SHARE_DELETE;
    HANDLE handle = openWhenFree(path, access, share, OPEN_EXISTING);
    if (handle == INVALID_HANDLE_VALUE && GetLastError() == ERROR_FILE_NOT_FOUND && restoreOld(path))
        handle = openWhenFree(path, access, share, OPEN_EXISTING);
    if (handle == INVALID_HANDLE_VALUE && GetLastError() == ERROR_FILE_NOT_FOUND &&
        (mode & CFile::modeCreate))
        handle = openWhenFree(path, access, share, OPEN_ALWAYS);
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

bool waitForFile(int tries) {
    if (tries >= 100)
        return false;
    Sleep(static_cast<DWORD>(std::min(tries + 1, 10)));
    return true;
}

long long readFile(FileHandle file, void* buffer, std::size_t count) {
    DWORD done = 0;
    return ReadFile(handleOf(file), buffer, static_cast<DWORD>(std::min(count, kMostBytes)), &done, nullptr)
               ? static_cast<long long>(done)
               : -1;
}

long long readFileAt(FileHandle file, void* buffer, std::size_t count, long long offset) {
    const LARGE_INTEGER none = {};
    LARGE_INTEGER there, back;
    there.QuadPart = offset;
    if (!SetFilePointerEx(handleOf(file), none, &back, FILE_CURRENT) ||
        !SetFilePointerEx(handleOf(file), there, nullptr, FILE_BEGIN))
        return -1;
    const long long got = readFile(file, buffer, count);
    return SetFilePointerEx(handleOf(file), back, nullptr, FILE_BEGIN) ? got : -1;
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

bool cutFile(FileHandle file, long long length) {
    LARGE_INTEGER distance;
    distance.QuadPart = length;
    return SetFilePointerEx(handleOf(file), distance, nullptr, FILE_BEGIN) && SetEndOfFile(handleOf(file));
}

bool flushFile(FileHandle file) { return FlushFileBuffers(handleOf(file)) != 0; }

bool closeFile(FileHandle file) { return CloseHandle(handleOf(file)) != 0; }

bool isFile(const CString& path) {
    const DWORD attributes = path.IsEmpty() ? INVALID_FILE_ATTRIBUTES : GetFileAttributesW(wideUnits(path));
    return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY) &&
           !isDevice(path);
}

void removeFile(const CString& path) { DeleteFileW(wideUnits(path)); }

void flushFolderOf(const CString&) {}  // the file system has a journal of its folders

}  // namespace system
}  // namespace fieldscan
