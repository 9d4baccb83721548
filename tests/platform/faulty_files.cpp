// The system calls of files, of which one can be made to fail: the linker puts __wrap_NAME in the place of
// NAME wherever the library calls it, and __real_NAME is the system's (tests/CMakeLists.txt names them).
#include "tests/platform/faulty_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdlib>
#include <new>
#include <utility>

namespace fieldscan {
namespace faults {

namespace {

Fault armed = none;
int callsLeft = 0;
bool happened = false;
int openFiles = 0;
int folders = 0;
std::string made;
int opened = -1;
std::function<void()> beforeLock;

bool happens(Fault fault) {
    if (fault != armed || --callsLeft != 0)
        return false;
    return happened = true;
}

// Whether the call fails, with errno set.
bool fails(Fault fault, int error) {
    if (!happens(fault))
        return false;
    errno = error;
    return true;
}

void dieIfArmed() {
    if (happens(killed))
        raise(SIGKILL);
}

}  // namespace

void arm(Fault fault, int call) {
    armed = fault;
    callsLeft = call;
    happened = false;
    folders = 0;
}

bool hasHappened() { return happened; }
void atNextLock(std::function<void()> action) { beforeLock = std::move(action); }
int openCount() { return openFiles; }
int folderFlushes() { return folders; }
const std::string& lastMade() { return made; }
int lastOpened() { return opened; }
bool memoryEnds() { return happens(memory); }

}  // namespace faults
}  // namespace fieldscan

using namespace fieldscan::faults;
using Size = std::size_t;

// The names are those of the linker, for what it wraps.
extern "C" {

int __real_open64(const char* path, int flags, ...);
ssize_t __real_read(int file, void* buffer, Size count);
ssize_t __real_pread64(int file, void* buffer, Size count, off64_t offset);
ssize_t __real_write(int file, const void* buffer, Size count);
int __real_fsync(int file);
int __real_close(int file);
int __real_renameat2(int from, const char* path, int to, const char* target, unsigned int flags);
int __real_flock(int file, int operation);
int __real_fchown(int file, uid_t owner, gid_t group);
int __real_ftruncate64(int file, off64_t length);
void* __real_realloc(void* storage, Size size);

int __wrap_open64(const char* path, int flags, ...) {
    va_list rest;
    va_start(rest, flags);
    const int mode = va_arg(rest, int);
    va_end(rest);
    dieIfArmed();
    if (fails(fieldscan::faults::open, EACCES) || fails(openFull, ENOSPC))
        return -1;
    const int file = __real_open64(path, flags, mode);
    openFiles += file >= 0;
    opened = file;
    if (file >= 0 && (flags & O_EXCL))
        made = path;
    return file;
}

ssize_t __wrap_read(int file, void* buffer, Size count) {
    return fails(fieldscan::faults::read, EIO) ? -1 : __real_read(file, buffer, count);
}

ssize_t __wrap_pread64(int file, void* buffer, Size count, off64_t offset) {
    return fails(fieldscan::faults::read, EIO) ? -1 : __real_pread64(file, buffer, count, offset);
}

// A full medium may take a part of what it is given.
ssize_t __wrap_write(int file, const void* buffer, Size count) {
    if (fails(fieldscan::faults::write, ENOSPC))
        return -1;
    if (happens(killed)) {
        __real_write(file, buffer, count / 2);
        raise(SIGKILL);
    }
    if (happens(writeHalf)) {
        arm(fieldscan::faults::write, 1);
        return __real_write(file, buffer, (count + 1) / 2);
    }
    return __real_write(file, buffer, happens(writeShort) ? (count + 1) / 2 : count);
}

// Lists grow by it.
void* __wrap_realloc(void* storage, Size size) {
    return memoryEnds() ? nullptr : __real_realloc(storage, size);
}

int __wrap_fsync(int file) {
    dieIfArmed();
    struct stat status;
    const bool folder = fstat(file, &status) == 0 && S_ISDIR(status.st_mode);
    folders += folder;
    return !folder && fails(flush, EIO) ? -1 : __real_fsync(file);
}

int __wrap_close(int file) {
    --openFiles;
    const int result = __real_close(file);
    return fails(fieldscan::faults::close, EIO) ? -1 : result;
}

int __wrap_renameat2(int from, const char* path, int to, const char* target, unsigned int flags) {
    dieIfArmed();
    if (fails(replace, EIO) || fails(replaceDenied, EBUSY))
        return -1;
    return __real_renameat2(from, path, to, target, flags);
}

int __wrap_flock(int file, int operation) {
    if (const auto action = std::exchange(beforeLock, nullptr))
        action();
    dieIfArmed();
    return fails(lock, ENOLCK) ? -1 : __real_flock(file, operation);
}

int __wrap_fchown(int file, uid_t owner, gid_t group) {
    return fails(giveOwner, EPERM) ? -1 : __real_fchown(file, owner, group);
}

int __wrap_ftruncate64(int file, off64_t length) {
    dieIfArmed();
    return fails(cut, EIO) ? -1 : __real_ftruncate64(file, length);
}

}  // extern "C"

// The forms for arrays and without exceptions come down to these.
void* operator new(std::size_t size) {
    void* const storage = memoryEnds() ? nullptr : std::malloc(size);
    if (!storage)
        throw std::bad_alloc();
    return storage;
}
void operator delete(void* storage) noexcept { std::free(storage); }
void operator delete(void* storage, std::size_t) noexcept { std::free(storage); }
