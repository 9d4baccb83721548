// Memory, clock, running program and messages.
#include <sys/mman.h>
#include <unistd.h>

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <string>

#include "platform/system.h"

namespace fieldscan {
namespace system {

namespace {

constexpr unsigned long long kUnixEpoch = 116444736000000000ULL;  // 1970-01-01 as a file time

}  // namespace

// Blocks above 32 MiB have a mapping of their own from the allocator. A smaller one may share its mapping,
// and the advice would then hold for other blocks too.
void expectFilled(void* memory, std::size_t bytes) {
#if defined(MADV_HUGEPAGE)
    constexpr std::size_t kOwnMapping = std::size_t{33} << 20;
    if (bytes < kOwnMapping)
        return;
    const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    const std::uintptr_t before = (page - reinterpret_cast<std::uintptr_t>(memory) % page) % page;
    madvise(static_cast<char*>(memory) + before, bytes - before, MADV_HUGEPAGE);
#else
    static_cast<void>(memory), static_cast<void>(bytes);
#endif
}

unsigned long long fileTimeNow() {
    using Ticks = std::chrono::duration<long long, std::ratio<1, 10000000>>;
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    return kUnixEpoch +
           static_cast<unsigned long long>(std::chrono::duration_cast<Ticks>(sinceEpoch).count());
}

unsigned long long fileTimeOfLastTick() {
#if defined(CLOCK_REALTIME_COARSE)
    timespec tick = {};
    clock_gettime(CLOCK_REALTIME_COARSE, &tick);
    return kUnixEpoch + static_cast<unsigned long long>(tick.tv_sec) * 10000000 +
           static_cast<unsigned long long>(tick.tv_nsec) / 100;
#else
    return fileTimeNow();
#endif
}

long long localOffsetSeconds() {
    const std::time_t now = std::time(nullptr);
    std::tm local = {};
    return localtime_r(&now, &local) ? local.tm_gmtoff : 0;
}

bool modulePath(CString& path) {
    char text[4096];
    const ssize_t length = ::readlink("/proc/self/exe", text, sizeof text);
    if (length <= 0 || length == static_cast<ssize_t>(sizeof text))
        return false;
    path.Empty();
    appendWide(kUtf8, text, static_cast<std::size_t>(length), path);
    return true;
}

void showMessage(const CString& text, const CRect&) {
    std::string bytes;
    appendAnsi(kUtf8, text.GetString(), text.GetLength(), bytes);
    bytes += '\n';
    std::fwrite(bytes.data(), 1, bytes.size(), stderr);
}

}  // namespace system
}  // namespace fieldscan
