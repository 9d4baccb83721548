// Files through the system calls of POSIX. Paths: `\` separates too; a path that begins with `\` is a path of
// the device below the folder that FIELDSCAN_ROOT names (default `/`); names are UTF-8.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <string>

#include "platform/system.h"

namespace fieldscan {
namespace system {

namespace {

int descriptor(FileHandle file) { return static_cast<int>(file); }

std::string hostPath(const CString& path) {
    std::string host;
    if (path.GetAt(0) == '\\')
        if (const char* root = std::getenv("FIELDSCAN_ROOT"))
            host = root;
    appendAnsi(kUtf8, path.GetString(), path.GetLength(), host);
    std::replace(host.begin(), host.end(), '\\', '/');
    return host;
}

// Repeats a call that a signal interrupted.
template <class Call>
auto uninterrupted(Call call) {
    decltype(call()) result;
    do {
        result = call();
    } while (result < 0 && errno == EINTR);
    return result;
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
    return flags | O_CLOEXEC | O_NONBLOCK;  // opening a pipe must not wait for its other end
}

// Why an open file is no file of bytes: a folder, which POSIX opens for reading, or a pipe.
CFile::Cause unfit(int file) {
    struct stat status;
    if (fstat(file, &status) != 0 || S_ISFIFO(status.st_mode))
        return CFile::causeOther;
    return S_ISDIR(status.st_mode) ? CFile::causeAccessDenied : CFile::causeNone;
}

}  // namespace

FileHandle openFile(const CString& path, unsigned int mode, CFile::Cause& cause) {
    const std::string host = hostPath(path);
    const int file = uninterrupted([&] { return ::open(host.c_str(), openFlags(mode), 0666); });
    if (file < 0) {
        cause = causeOf(errno);
        return kNoFile;
    }
    cause = unfit(file);
    if (cause != CFile::causeNone) {
        ::close(file);
        return kNoFile;
    }
    return file;
}

long long readFile(FileHandle file, void* buffer, std::size_t count) {
    return uninterrupted([&] { return ::read(descriptor(file), buffer, count); });
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

bool flushFile(FileHandle file) {
    return uninterrupted([&] { return ::fsync(descriptor(file)); }) == 0 || errno == EINVAL;  // has no medium
}

// Not repeated when interrupted: the descriptor is gone then, and may already be another file's.
bool closeFile(FileHandle file) { return ::close(descriptor(file)) == 0 || errno == EINTR; }

bool isFile(const CString& path) {
    struct stat status;
    return !path.IsEmpty() && ::stat(hostPath(path).c_str(), &status) == 0 && !S_ISDIR(status.st_mode);
}

bool isReplaceable(const CString& path) {
    struct stat status;
    return ::lstat(hostPath(path).c_str(), &status) == 0 && S_ISREG(status.st_mode) && status.st_nlink == 1;
}

bool replaceFile(const CString& from, const CString& to) {
    const std::string source = hostPath(from), target = hostPath(to);
    const std::size_t end = target.rfind('/');
    const std::string folder = end == std::string::npos ? "." : target.substr(0, end + 1);
    struct stat status;
    if (::stat(target.c_str(), &status) == 0)
        ::chmod(source.c_str(), status.st_mode & 07777);  // file systems of cards may know no rights
    if (::rename(source.c_str(), target.c_str()) != 0)
        return false;
    // The new name is on the medium when the folder is; a folder that cannot be read stays to the system.
    const int entries = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (entries >= 0) {
        uninterrupted([&] { return ::fsync(entries); });
        ::close(entries);
    }
    return true;
}

void removeFile(const CString& path) { ::unlink(hostPath(path).c_str()); }

}  // namespace system
}  // namespace fieldscan
