// How a failed expectation shows a CString: in quotes, as UTF-8. Every test file that compares CStrings
// includes this. If one does not, the whole program may show their bytes.
#ifndef FIELDSCAN_TESTS_PRINT_TEXT_H
#define FIELDSCAN_TESTS_PRINT_TEXT_H

#include <fieldscan/framework/standard.h>

#include <ostream>
#include <string>

inline void PrintTo(const CString& text, std::ostream* out) {
    *out << '"';
    for (const char c : fieldscan::toUtf8(text)) {
        if (static_cast<unsigned char>(c) < ' ')  // no glyph
            *out << "\\x" << std::hex << static_cast<int>(c) << std::dec;
        else
            *out << c;
    }
    *out << '"';
}

#endif
