// Files on POSIX systems, with flock as the lock of a writer.
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>

#include "platform/posix/descriptors.h"

namespace fieldscan {
namespace system {

namespace {

int descriptor(FileHandle file) { return static_cast<int>(file); }

int openFlags(unsigned int mode) {
    int flags = O_RDONLY;
    if (mode & CFile::modeWrite)
        flags = O_WRONLY;
    else if (mode & CFile::modeReadWrite)
        flags = O_RDWR;
    if (mode & CFile::modeCreate) {
        flags |= O_CREAT;
        if (!(mode & CFile::modeNoTruncate))
            flags |= O_TRUNC;
    }
    return mode & kAppending ? flags | O_APPEND : flags;
}

int openDescriptor(const std::string& path, int flags) {
    // Opening a pipe must not wait for its other end.
    return uninterrupted([&] { return ::open(path.c_str(), flags | O_CLOEXEC | O_NONBLOCK, 0666); });
}

// Why an open file is refused: a folder, which POSIX opens for reading; a pipe; a device that is to be read,
// which may have no end. causeNone for a file that is not.
CFile::Cause causeOfRefusal(const struct stat& status, bool forReading) {
    if (S_ISDIR(status.st_mode))
        return CFile::causeAccessDenied;
    return S_ISFIFO(status.st_mode) || (forReading && S_ISCHR(status.st_mode)) ? CFile::causeOther
                                                                               : CFile::causeNone;
}

// Opens a file that is not refused and gets its status; -1 with `cause` set when that fails.
int openUnlocked(const std::string& path, int flags, struct stat& status, CFile::Cause& cause) {
    const int file = openDescriptor(path, flags);
    if (file < 0) {
        cause = causeOf(errno);
        return -1;
    }
    cause = ::fstat(file, &status) == 0 ? causeOfRefusal(status, (flags & O_ACCMODE) == O_RDONLY)
                                        : CFile::causeOther;
    if (cause == CFile::causeNone)
        return file;
    ::close(file);
    return -1;
}

}  // namespace

std::string hostPath(const CString& path) {
    std::string host;
    if (path.GetAt(0) == '\\')
        if (const char* root = std::getenv("FIELDSCAN_ROOT"))
            host = root;
    appendAnsi(kUtf8, path.GetString(), path.GetLength(), host);
    std::replace(host.begin(), host.end(), '\\', '/');
    return host;
}

std::string folderOf(const std::string& path) {
    const std::size_t end = path.rfind('/');
    return end == std::string::npos ? "./" : path.substr(0, end + 1);
}

CFile::Cause causeOf(int error) {
    switch (error) {
        case ENOENT:
        case ENOTDIR:
            return CFile::causeNotFound;
        case EACCES:
        case EPERM:
        case EROFS:
        case EISDIR:
            return CFile::causeAccessDenied;
        case EBUSY:
        case ETXTBSY:
            return CFile::causeSharingViolation;
        default:
            return CFile::causeOther;
    }
}

std::string withoutLinks(const std::string& path) {
    std::string place = path;
    for (int links = 0; links < 40; ++links) {  // as many as Linux follows
        char target[4096];
        const ssize_t length = ::readlink(place.c_str(), target, sizeof target);
        if (length < 0 || length == sizeof target)
            return place;
        const std::string name(target, static_cast<std::size_t>(length));
        place = name[0] == '/' ? name : folderOf(place) + name;
    }
    return path;
}

Lock takeLock(int file) {
    if (uninterrupted([&] { return ::flock(file, LOCK_EX | LOCK_NB); }) == 0)
        return Lock::taken;
    return errno == EWOULDBLOCK ? Lock::held : Lock::unknown;
}

bool isNamed(const struct stat& status, const std::string& path) {
    struct stat named;
    return ::stat(path.c_str(), &named) == 0 && status.st_dev == named.st_dev &&
           status.st_ino == named.st_ino;
}

int openLocked(const std::string& path, int flags, CFile::Cause& cause, bool* locked) {
    for (int tries = 0;; ++tries) {
        struct stat status;
        const int file = openUnlocked(path, flags & ~O_TRUNC, status, cause);
        if (file < 0 || !S_ISREG(status.st_mode))
            return file;
        // While another writer had the lock, the name may have passed to a new file.
        const Lock lock = takeLock(file);
        if (lock != Lock::held && isNamed(status, path)) {
            if (locked)
                *locked = lock == Lock::taken;
            if (!(flags & O_TRUNC) || ::ftruncate(file, 0) == 0)
                return file;
            cause = causeOf(errno);
            ::close(file);
            return -1;
        }
        ::close(file);
        if (!waitForFile(tries)) {
            cause = CFile::causeSharingViolation;
            return -1;
        }
    }
}

FileHandle openFile(const CString& path, unsigned int mode, CFile::Cause& cause, bool* locked) {
    const std::string host = hostPath(path);
    const int flags = openFlags(mode);
    struct stat status;
    return (flags & O_ACCMODE) == O_RDONLY ? openUnlocked(host, flags, status, cause)
                                           : openLocked(host, flags, cause, locked);
}

bool waitForFile(int tries) {
    if (tries >= 100)
        return false;
    const timespec pause = {0, std::min(tries + 1, 10) * 1000000};
    ::nanosleep(&pause, nullptr);
    return true;
}

long long readFile(FileHandle file, void* buffer, std::size_t count) {
    return uninterrupted([&] { return ::read(descriptor(file), buffer, count); });
}

long long readFileAt(FileHandle file, void* buffer, std::size_t count, long long offset) {
    return uninterrupted(
        [&] { return ::pread(descriptor(file), buffer, count, static_cast<off_t>(offset)); });
}

long long writeFile(FileHandle file, const void* buffer, std::size_t count) {
    return uninterrupted([&] { return ::write(descriptor(file), buffer, count); });
}

long long seekFile(FileHandle file, long long offset, bool fromEnd) {
    return ::lseek(descriptor(file), static_cast<off_t>(offset), fromEnd ? SEEK_END : SEEK_CUR);
}

bool rewindFile(FileHandle file) { return ::lseek(descriptor(file), 0, SEEK_SET) == 0; }

long long fileLength(FileHandle file) {
    struct stat status;
    return fstat(descriptor(file), &status) == 0 ? static_cast<long long>(status.st_size) : -1;
}

bool cutFile(FileHandle file, long long length) {
    return uninterrupted([&] { return ::ftruncate(descriptor(file), static_cast<off_t>(length)); }) == 0;
}

// A failed flush is not repeated: the system has dropped what it could not write, and the next flush would
// succeed without it.
bool flushDescriptor(int file) {
    return uninterrupted([&] { return ::fsync(file); }) == 0 || errno == EINVAL;  // not on a medium
}

bool flushFile(FileHandle file) { return flushDescriptor(descriptor(file)); }

// Not repeated when interrupted: the descriptor is closed then, and may belong to another file already.
bool closeFile(FileHandle file) { return ::close(descriptor(file)) == 0 || errno == EINTR; }

bool isFile(const CString& path) {
    struct stat status;
    return !path.IsEmpty() && ::stat(hostPath(path).c_str(), &status) == 0 && !S_ISDIR(status.st_mode);
}

void removeFile(const CString& path) { ::unlink(withoutLinks(hostPath(path)).c_str()); }

// A folder that cannot be opened for reading is left to the system.
void flushFolder(const std::string& folder) {
    const int entries = openDescriptor(folder, O_RDONLY | O_DIRECTORY);
    if (entries >= 0) {
        flushDescriptor(entries);
        ::close(entries);
    }
}

void flushFolderOf(const CString& path) { flushFolder(folderOf(withoutLinks(hostPath(path)))); }

}  // namespace system
}  // namespace fieldscan
