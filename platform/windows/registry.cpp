// Text values of the system's registry.
#include "platform/system.h"
#include "platform/windows/api.h"

namespace fieldscan {
namespace system {

namespace {

// A key below HKEY_LOCAL_MACHINE, open while this lives.
class OpenKey {
public:
    // With full access as on the device; for reading where only administrators have that.
    explicit OpenKey(const CString& key) : m_key(nullptr) {
        for (const REGSAM access : {REGSAM{KEY_ALL_ACCESS}, REGSAM{KEY_READ}})
            if (!m_key &&
                RegOpenKeyExW(HKEY_LOCAL_MACHINE, wideUnits(key), 0, access, &m_key) != ERROR_SUCCESS)
                m_key = nullptr;
    }
    ~OpenKey() {
        if (m_key)
            RegCloseKey(m_key);
    }
    OpenKey(const OpenKey&) = delete;
    OpenKey& operator=(const OpenKey&) = delete;

    // The text value up to its first zero unit; false when there is none.
    bool text(const CString& name, CString& text) const {
        CString value;
        for (DWORD room = 64;;) {  // bytes; most folder names fit
            DWORD type = REG_NONE, size = room;
            const int units = static_cast<int>(room / sizeof(wchar_t));
            BYTE* const bytes = reinterpret_cast<BYTE*>(value.GetBuffer(units + 1));
            const LSTATUS status =
                m_key ? RegQueryValueExW(m_key, wideUnits(name), nullptr, &type, bytes, &size)
                      : ERROR_FILE_NOT_FOUND;
            const bool good = status == ERROR_SUCCESS && (type == REG_SZ || type == REG_EXPAND_SZ);
            value.ReleaseBuffer(good ? static_cast<int>(size / sizeof(wchar_t)) : 0);
            if (status == ERROR_MORE_DATA && size > room && size < 0x10000000) {
                room = size;
                continue;
            }
            const int end = value.Find(static_cast<unsigned short>(0));
            if (good)
                text = end < 0 ? value : value.Left(end);
            return good;
        }
    }

private:
    HKEY m_key;
};

}  // namespace

bool registryText(const CString& key, const CString& name, CString& text) {
    return OpenKey(key).text(name, text);
}

}  // namespace system
}  // namespace fieldscan
