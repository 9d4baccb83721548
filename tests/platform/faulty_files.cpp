// The file functions of the seam, of which one call can be made to fail. A program that links this takes it
// for the system's own, since the linker looks into the library only for what is missing.
#include "tests/platform/faulty_files.h"

#include <cstdlib>
#include <new>

#define openFile systemOpenFile
#define readFile systemReadFile
#define writeFile systemWriteFile
#define flushFile systemFlushFile
#define closeFile systemCloseFile
#define replaceFile systemReplaceFile
#include "platform/posix/files.cpp"  // NOLINT(bugprone-suspicious-include)
#undef openFile
#undef readFile
#undef writeFile
#undef flushFile
#undef closeFile
#undef replaceFile

namespace fieldscan {
namespace faults {

namespace {

Fault armed = none;
int callsLeft = 0;
bool happened = false;
int openFiles = 0;

bool happens(Fault fault) {
    if (fault != armed || --callsLeft != 0)
        return false;
    return happened = true;
}

}  // namespace

void arm(Fault fault, int call) {
    armed = fault;
    callsLeft = call;
    happened = false;
}

bool hasHappened() { return happened; }
int openCount() { return openFiles; }

bool memoryEnds() { return happens(memory); }

}  // namespace faults

namespace system {

using namespace faults;

FileHandle openFile(const CString& path, unsigned int mode, CFile::Cause& cause) {
    const bool denied = happens(open);
    if (denied || happens(openFull)) {
        cause = denied ? CFile::causeAccessDenied : CFile::causeOther;
        return kNoFile;
    }
    const FileHandle file = systemOpenFile(path, mode, cause);
    openFiles += file != kNoFile;
    return file;
}

long long readFile(FileHandle file, void* buffer, std::size_t count) {
    return happens(read) ? -1 : systemReadFile(file, buffer, count);
}

// A full medium may take a part of what it is given.
long long writeFile(FileHandle file, const void* buffer, std::size_t count) {
    if (happens(write))
        return -1;
    if (happens(writeHalf)) {
        arm(write, 1);
        return systemWriteFile(file, buffer, (count + 1) / 2);
    }
    return systemWriteFile(file, buffer, happens(writeShort) ? (count + 1) / 2 : count);
}

bool flushFile(FileHandle file) { return !happens(flush) && systemFlushFile(file); }

bool closeFile(FileHandle file) {
    --openFiles;
    const bool closed = systemCloseFile(file);
    return !happens(close) && closed;
}

bool replaceFile(const CString& from, const CString& to) {
    return !happens(replace) && systemReplaceFile(from, to);
}

}  // namespace system
}  // namespace fieldscan

void* operator new(std::size_t size) {
    void* const storage = fieldscan::faults::memoryEnds() ? nullptr : std::malloc(size);
    if (!storage)
        throw std::bad_alloc();
    return storage;
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return fieldscan::faults::memoryEnds() ? nullptr : std::malloc(size);
}
void* operator new[](std::size_t size) { return operator new(size); }
void* operator new[](std::size_t size, const std::nothrow_t& none) noexcept {
    return operator new(size, none);
}
void operator delete(void* storage) noexcept { std::free(storage); }
void operator delete(void* storage, std::size_t) noexcept { std::free(storage); }
void operator delete[](void* storage) noexcept { std::free(storage); }
void operator delete[](void* storage, std::size_t) noexcept { std::free(storage); }
