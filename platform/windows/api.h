// The system's header with as few definitions as it allows, and wide text for its calls.
#ifndef FIELDSCAN_PLATFORM_WINDOWS_API_H
#define FIELDSCAN_PLATFORM_WINDOWS_API_H

#if !defined(NOMINMAX)
#define NOMINMAX
#endif
#if !defined(WIN32_LEAN_AND_MEAN)
#define WIN32_LEAN_AND_MEAN
#endif
#include <fieldscan/framework/string.h>
#include <windows.h>

namespace fieldscan {

inline const wchar_t* wideUnits(const CString& text) {
    return reinterpret_cast<const wchar_t*>(text.GetString());
}

}  // namespace fieldscan

#endif
