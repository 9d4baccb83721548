// What the fuzz targets share: the input as values, and as a file that lives in memory alone.
//
// A target checks what must hold for any input: no report of the sanitizers, results that agree with a plain
// version or with each other. `require` ends the run and so keeps the input that broke it.
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

// The one file of a target.
inline const MemoryFile& file() {
    static const MemoryFile memory;
    return memory;
}

// The first byte of an input chooses a code page for files, so that all are met.
inline void chooseCodePage(FuzzedDataProvider& input) {
    const char* const pages[] = {"UTF-8", "CP932", "CP1252", "ISO-8859-1"};
    setenv("FIELDSCAN_ANSI_CODEPAGE", pages[input.ConsumeIntegralInRange(0, 3)], 1);
}

inline CString wideText(FuzzedDataProvider& input, std::size_t most) {
    CString text;
    for (std::size_t left = input.ConsumeIntegralInRange<std::size_t>(0, most); left > 0; --left)
        text += input.ConsumeBool() ? input.ConsumeIntegralInRange<unsigned short>(1, 0x7F)
                                    : input.ConsumeIntegral<unsigned short>();
    return text;
}

// A coordinate, an angle, a small number, or any bits at all.
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

// NaN equals NaN here.
inline bool same(double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); }

#endif
