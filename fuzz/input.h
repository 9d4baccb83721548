// Shared by the fuzz targets: the input as values, and as a file in memory.
//
// A target checks what must hold for any input: no report of the sanitizers, results that agree with a plain
// version or with each other. Where any result will do, `(void)` drops it. `require` aborts, so that the
// fuzzer keeps the input that broke it.
#ifndef FIELDSCAN_FUZZ_INPUT_H
#define FIELDSCAN_FUZZ_INPUT_H

#include <fieldscan/framework/string.h>
#include <fuzzer/FuzzedDataProvider.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>

#define require(condition)                                                       \
    do {                                                                         \
        if (!(condition)) {                                                      \
            std::fprintf(stderr, "%s:%d: %s\n", __FILE__, __LINE__, #condition); \
            std::abort();                                                        \
        }                                                                        \
    } while (false)

// A file without a place on any disk; the library opens it by its name below /proc.
class MemoryFile {
public:
    MemoryFile() : m_file(memfd_create("fuzz", 0)), m_path("/proc/self/fd/" + std::to_string(m_file)) {}
    ~MemoryFile() { close(m_file); }
    const std::string& hostPath() const { return m_path; }
    CString path() const { return CString(m_path.c_str()); }
    void put(const std::string& bytes) const {
        require(ftruncate(m_file, 0) == 0);
        require(pwrite(m_file, bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(bytes.size()));
    }
    std::string get() const {
        std::string bytes(static_cast<std::size_t>(lseek(m_file, 0, SEEK_END)), '\0');
        require(pread(m_file, &bytes[0], bytes.size(), 0) == static_cast<ssize_t>(bytes.size()));
        return bytes;
    }

private:
    int m_file;
    std::string m_path;
};

// The only file of a target.
inline const MemoryFile& file() {
    static const MemoryFile memory;
    return memory;
}

// The next value of the input chooses the code page of files.
inline void chooseCodePage(FuzzedDataProvider& input) {
    const char* const pages[] = {"UTF-8", "CP932", "CP1252", "ISO-8859-1"};
    setenv("FIELDSCAN_ANSI_CODEPAGE", pages[input.ConsumeIntegralInRange(0, 3)], 1);
}

// Up to `most` characters, half of them ASCII.
inline CString wideText(FuzzedDataProvider& input, std::size_t most) {
    CString text;
    for (std::size_t left = input.ConsumeIntegralInRange<std::size_t>(0, most); left > 0; --left)
        text += input.ConsumeBool() ? input.ConsumeIntegralInRange<unsigned short>(1, 0x7F)
                                    : input.ConsumeIntegral<unsigned short>();
    return text;
}

// A small integer, a coordinate, an angle in radians, or any double.
inline double number(FuzzedDataProvider& input) {
    switch (input.ConsumeIntegralInRange(0, 3)) {
        case 0:
            return input.ConsumeIntegralInRange(-8, 8);
        case 1:
            return input.ConsumeIntegral<int>() * 1e-3;
        case 2:
            return input.ConsumeFloatingPointInRange(-10.0, 10.0);
        default:
            return input.ConsumeFloatingPoint<double>();
    }
}

// Equal, or both NaN.
inline bool same(double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); }

// The only file as `write` writes it stays the same when it is read and written again.
template <class Read, class Write>
void comesBack(Read read, Write write) {
    require(write());
    const std::string once = file().get();
    require(read());
    require(write());
    require(file().get() == once);
}

// True if `fits(i)` is, for each i below `count`.
template <class Fits>
bool allFit(int count, Fits fits) {
    for (int i = 0; i < count; ++i)
        if (!fits(i))
            return false;
    return true;
}

#endif
