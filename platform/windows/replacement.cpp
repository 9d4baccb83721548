// Replacing whole files on Windows: write a temporary file, flush it, give it the place of the old one by
// ReplaceFileW. That takes two renames: for a moment the old file has another name (oldPathFor) and `path` is
// missing. A program that is killed then loses nothing: the next one that opens or replaces the file moves
// the old one back.
#include "platform/windows/handles.h"

namespace fieldscan {
namespace system {

namespace {

// True if a new file was refused for another reason than lack of room: the old file itself may be written.
bool mayWriteInPlace(DWORD error) {
    return error == ERROR_ACCESS_DENIED || error == ERROR_FILENAME_EXCED_RANGE ||
           error == ERROR_INVALID_NAME || error == ERROR_WRITE_PROTECT;
}

// The right to replace a file, which one writer at a time has: a named mutex, released at the end of the
// process at the latest.
class WriterMutex {
public:
    ~WriterMutex() {
        if (m_mutex) {
            ReleaseMutex(m_mutex);
            CloseHandle(m_mutex);
        }
    }
    // False when another writer of `path` has it for more than about a second. Where no mutex can be made,
    // nobody waits.
    bool take(const CString& path) {
        CString whole = fullPath(path);
        whole.MakeLower();  // paths that differ in case name one file
        HANDLE mutex = CreateMutexW(nullptr, FALSE, wideUnits(hashedName(u"fieldscan-", whole)));
        if (mutex && WaitForSingleObject(mutex, 1000) == WAIT_TIMEOUT) {
            CloseHandle(mutex);
            return false;
        }
        m_mutex = mutex;
        return true;
    }

private:
    HANDLE m_mutex = nullptr;
};

// ERROR_SUCCESS if the file exists. GetFileAttributesW finds deleted files too that a reader still has open.
DWORD errorAt(const CString& path) {
    const HANDLE file = CreateFileW(
        wideUnits(path), FILE_READ_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
        nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return GetLastError();
    CloseHandle(file);
    return ERROR_SUCCESS;
}

// Removes the old file that was replaced; moves it back where its path is missing. False when another program
// holds it.
bool settleOld(const CString& path) {
    for (int number = 0; number < kOldPaths; ++number) {
        const CString old = oldPathFor(path, number);
        if (errorAt(old) != ERROR_SUCCESS)
            continue;
        const bool settled = errorAt(path) == ERROR_FILE_NOT_FOUND
                                 ? MoveFileExW(wideUnits(old), wideUnits(path), MOVEFILE_WRITE_THROUGH) != 0
                                 : DeleteFileW(wideUnits(old)) != 0;
        if (!settled)
            return false;
    }
    return true;
}

CString freeOldPath(const CString& path) {
    int number = 0;
    while (number < kOldPaths - 1 && errorAt(oldPathFor(path, number)) != ERROR_FILE_NOT_FOUND)
        ++number;
    return oldPathFor(path, number);
}

// Opens the old file, to find out whether it may be replaced: only if it may be written and deleted. A file
// that is being read cannot be opened for writing but can be replaced if its reader shares deletion; one that
// is being written can not.
HANDLE openOld(const CString& path) {
    for (int tries = 0;; ++tries) {
        HANDLE old = CreateFileW(wideUnits(path), GENERIC_WRITE | DELETE, FILE_SHARE_READ, nullptr,
                                 OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
        const DWORD error = GetLastError();
        if (old == INVALID_HANDLE_VALUE && error == ERROR_SHARING_VIOLATION)
            old = CreateFileW(wideUnits(path), DELETE | FILE_READ_ATTRIBUTES,
                              FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                              FILE_ATTRIBUTE_NORMAL, nullptr);
        if (old != INVALID_HANDLE_VALUE)
            return old;
        const bool again = isHeld(error, path) && waitForFile(tries);
        SetLastError(error);
        if (!again)
            return old;
    }
}

// True if a replacement that failed so may succeed in a moment: another program has one of the files open,
// for a search or a backup.
bool mayPass(DWORD error, const CString& path) {
    return error == ERROR_UNABLE_TO_REMOVE_REPLACED || error == ERROR_UNABLE_TO_MOVE_REPLACEMENT ||
           error == ERROR_UNABLE_TO_MOVE_REPLACEMENT_2 || isHeld(error, path);
}

class WindowsReplacement : public Replacement {
public:
    ~WindowsReplacement() override;
    FileHandle file() const override { return fileOf(m_file); }
    bool commit() override;
    bool begin(const CString& path, CFile::Cause& cause);

private:
    bool beginNew();
    bool beginInPlace(CFile::Cause& cause);
    bool replace() const;
    bool replaceOnce() const;
    void close();

    CString m_target;
    CString m_temporary;
    WriterMutex m_writer;
    HANDLE m_file = INVALID_HANDLE_VALUE;
    bool m_exists = false;   // the old file
    bool m_inPlace = false;  // the old file itself is written
};

bool WindowsReplacement::beginNew() {
    m_file = openWhenFree(m_temporary, GENERIC_WRITE, 0, CREATE_NEW);
    if (m_file == INVALID_HANDLE_VALUE && GetLastError() == ERROR_FILE_EXISTS &&
        DeleteFileW(wideUnits(m_temporary)))  // a killed program left it
        m_file = openWhenFree(m_temporary, GENERIC_WRITE, 0, CREATE_NEW);
    return m_file != INVALID_HANDLE_VALUE;
}

bool WindowsReplacement::beginInPlace(CFile::Cause& cause) {
    m_inPlace = true;
    m_file = openWhenFree(m_target, GENERIC_WRITE, FILE_SHARE_READ, m_exists ? OPEN_EXISTING : CREATE_NEW);
    if (m_file != INVALID_HANDLE_VALUE)
        return true;
    cause = causeOf(GetLastError());
    return false;
}

bool WindowsReplacement::begin(const CString& path, CFile::Cause& cause) {
    m_target = path;
    bool free = m_writer.take(path);
    for (int tries = 0; free && !settleOld(path); ++tries)
        free = waitForFile(tries);
    if (!free) {
        cause = CFile::causeSharingViolation;
        return false;
    }
    const HANDLE old = openOld(path);
    m_exists = old != INVALID_HANDLE_VALUE;
    const DWORD error = GetLastError();
    if (!m_exists && error != ERROR_FILE_NOT_FOUND) {
        cause = causeOf(error);
        return false;
    }
    bool single = true;
    if (m_exists) {
        BY_HANDLE_FILE_INFORMATION status;
        const bool plain = GetFileType(old) == FILE_TYPE_DISK && GetFileInformationByHandle(old, &status);
        single = plain && status.nNumberOfLinks == 1 &&
                 !(GetFileAttributesW(wideUnits(path)) & FILE_ATTRIBUTE_REPARSE_POINT);
        CloseHandle(old);
        if (!plain) {
            cause = CFile::causeOther;
            return false;
        }
    }
    if (!single)
        return beginInPlace(cause);
    m_temporary = temporaryFor(path);
    if (beginNew())
        return true;
    const DWORD refusal = GetLastError();
    cause = causeOf(refusal);
    return mayWriteInPlace(refusal) && beginInPlace(cause);
}

bool WindowsReplacement::replace() const {
    bool done = false;
    for (int tries = 0; !(done = replaceOnce()) && mayPass(GetLastError(), m_target) && waitForFile(tries);)
        ++tries;
    settleOld(m_target);
    return done;
}

// ReplaceFileW keeps the rights and streams of the old file; file systems without it get a rename. So does a
// path that is missing, because there was no old file, or because only the second rename of ReplaceFileW
// failed: the new file has the rights and streams by then.
bool WindowsReplacement::replaceOnce() const {
    if (ReplaceFileW(wideUnits(m_target), wideUnits(m_temporary), wideUnits(freeOldPath(m_target)),
                     REPLACEFILE_IGNORE_MERGE_ERRORS, nullptr, nullptr))
        return true;
    const DWORD error = GetLastError();
    const bool missing = error == ERROR_FILE_NOT_FOUND || error == ERROR_UNABLE_TO_MOVE_REPLACEMENT_2;
    if (!missing && mayPass(error, m_target)) {
        SetLastError(error);
        return false;
    }
    return MoveFileExW(wideUnits(m_temporary), wideUnits(m_target),
                       MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
}

void WindowsReplacement::close() {
    if (m_file != INVALID_HANDLE_VALUE)
        CloseHandle(m_file);
    m_file = INVALID_HANDLE_VALUE;
}

bool WindowsReplacement::commit() {
    bool done = (!m_inPlace || SetEndOfFile(m_file)) && FlushFileBuffers(m_file);
    close();
    if (!m_inPlace) {
        done = done && replace();
        if (done)
            m_temporary.Empty();
    }
    m_exists = m_exists || done;
    return done;
}

WindowsReplacement::~WindowsReplacement() {
    if (m_inPlace && m_file != INVALID_HANDLE_VALUE && seekFile(fileOf(m_file), 0, false) > 0)
        SetEndOfFile(m_file);  // a part of the new contents, not mixed with the old ones
    close();
    if (!m_inPlace && !m_temporary.IsEmpty())
        DeleteFileW(wideUnits(m_temporary));
    if (m_inPlace && !m_exists)
        DeleteFileW(wideUnits(m_target));
}

}  // namespace

bool restoreOld(const CString& path) {
    bool found = false;
    for (int number = 0; number < kOldPaths; ++number)
        found = found || isFile(oldPathFor(path, number));
    WriterMutex writer;
    return found && writer.take(path) && settleOld(path) && isFile(path);
}

std::unique_ptr<Replacement> beginReplacement(const CString& path, CFile::Cause& cause) {
    auto replacement = std::make_unique<WindowsReplacement>();
    if (!replacement->begin(path, cause))
        return nullptr;
    return replacement;
}

}  // namespace system
}  // namespace fieldscan
