// Memory, clock, running program and messages.
#include "platform/system.h"
#include "platform/windows/api.h"

namespace fieldscan {
namespace system {

namespace {

constexpr long long kTicksPerSecond = 10000000;

long long ticksOf(const FILETIME& time) {
    return static_cast<long long>(time.dwHighDateTime) << 32 | time.dwLowDateTime;
}

}  // namespace

void expectFilled(void*, std::size_t) {}  // large pages need a privilege

unsigned long long fileTimeNow() {
    FILETIME now;
    GetSystemTimeAsFileTime(&now);
    return static_cast<unsigned long long>(ticksOf(now));
}

unsigned long long fileTimeOfLastTick() { return fileTimeNow(); }

// FileTimeToLocalFileTime applies the offset of today to any time.
long long localOffsetSeconds() {
    FILETIME now, local;
    GetSystemTimeAsFileTime(&now);
    return FileTimeToLocalFileTime(&now, &local) ? (ticksOf(local) - ticksOf(now)) / kTicksPerSecond : 0;
}

bool modulePath(CString& path) {
    constexpr int kLongest = 0x8000;  // units of the longest path
    for (int room = 512; room <= kLongest; room *= 2) {
        CString name;
        const DWORD length = GetModuleFileNameW(nullptr, reinterpret_cast<wchar_t*>(name.GetBuffer(room)),
                                                static_cast<DWORD>(room));
        name.ReleaseBuffer(static_cast<int>(length));
        if (length == 0)
            return false;
        if (length < static_cast<DWORD>(room)) {  // longer paths are cut
            path = name;
            return true;
        }
    }
    return false;
}

void showMessage(const CString& text, const CRect&) {
    MessageBoxW(nullptr, wideUnits(text), L"", MB_OK | MB_ICONWARNING | MB_TASKMODAL | MB_SETFOREGROUND);
}

}  // namespace system
}  // namespace fieldscan
