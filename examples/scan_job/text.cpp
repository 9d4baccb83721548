#include "text.h"

#include <cstdarg>
#include <cstdio>
#include <filesystem>

std::string utf8(const CString& text) {
    const unsigned short* units = text.GetString();
    // A path converts between the encodings; nothing here is opened.
    return std::filesystem::path(std::u16string(units, units + text.GetLength())).u8string();
}

std::string format(const char* pattern, ...) {
    std::va_list values, again;
    va_start(values, pattern);
    va_copy(again, values);
    const int length = std::vsnprintf(nullptr, 0, pattern, values);
    std::string text(length > 0 ? static_cast<std::size_t>(length) : 0, '\0');
    std::vsnprintf(text.data(), text.size() + 1, pattern, again);
    va_end(again);
    va_end(values);
    return text;
}
