// How a failed expectation shows a CString: in quotes, as UTF-8. Every test file that compares CStrings
// includes this. If one does not, the whole program may show them as addresses.
#ifndef FIELDSCAN_TESTS_PRINT_TEXT_H
#define FIELDSCAN_TESTS_PRINT_TEXT_H

#include <fieldscan/framework/string.h>

#include <filesystem>
#include <ostream>
#include <string>

inline void PrintTo(const CString& text, std::ostream* out) {
    *out << '"';
    for (int i = 0; i < text.GetLength(); ++i) {
        const char32_t unit = text[i], next = text[i + 1];
        const bool pair = (unit & 0xFC00) == 0xD800 && (next & 0xFC00) == 0xDC00;
        const char32_t character = pair ? 0x10000 + ((unit & 0x3FF) << 10 | (next & 0x3FF)) : unit;
        i += pair;
        if (character < ' ' || (character & 0xFFFFF800) == 0xD800)  // no glyph, half of a pair
            *out << "\\x" << std::hex << static_cast<unsigned int>(character) << std::dec;
        else
            *out << std::filesystem::path(std::u32string(1, character)).u8string();
    }
    *out << '"';
}

#endif
