// CString and the standard library: UTF-8, std::u16string_view, streams, hash tables. Not included by
// fieldscan.h.
#ifndef FIELDSCAN_FRAMEWORK_STANDARD_H
#define FIELDSCAN_FRAMEWORK_STANDARD_H

#include <fieldscan/export.h>
#include <fieldscan/framework/string.h>

#include <cstddef>
#include <functional>
#include <ostream>
#include <string>
#include <string_view>

namespace fieldscan {

// The text in UTF-8, 3 bytes a unit at most, without a zero byte after it; half a surrogate pair becomes
// U+FFFD. Writes to `out`, which has room for them, and returns how many.
FIELDSCAN_API std::size_t WriteUtf8(const CString& text, char* out);
// The text of the bytes from `first` to before `last` in UTF-8. No byte is lost: one that is not UTF-8
// becomes the character of the same number.
FIELDSCAN_API CString ReadUtf8(const char* first, const char* last);

// UTF-8 as std::string, zero characters included.
inline std::string toUtf8(const CString& text) {
    std::string bytes(3 * static_cast<std::size_t>(text.GetLength()), '\0');
    bytes.resize(WriteUtf8(text, &bytes[0]));
    return bytes;
}
inline CString fromUtf8(std::string_view bytes) {
    return ReadUtf8(bytes.data(), bytes.data() + bytes.size());
}

// The units; valid until the text changes.
inline std::u16string_view toUtf16(const CString& text) {
    return {reinterpret_cast<const char16_t*>(text.GetString()), static_cast<std::size_t>(text.GetLength())};
}
inline CString fromUtf16(std::u16string_view units) {
    return CString(units.data(), static_cast<int>(units.size()));
}

}  // namespace fieldscan

// Prints the text as UTF-8. The width of the stream has no effect.
template <class Traits>
std::basic_ostream<char, Traits>& operator<<(std::basic_ostream<char, Traits>& stream, const CString& text) {
    const std::string bytes = fieldscan::toUtf8(text);
    return stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

// Equal texts have equal hashes.
template <>
struct std::hash<CString> {
    std::size_t operator()(const CString& text) const noexcept {
        return std::hash<std::u16string_view>()(fieldscan::toUtf16(text));
    }
};

#endif
