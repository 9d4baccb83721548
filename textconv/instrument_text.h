// What the instrument strings share: text of both widths, and the layouts.
//
// Layouts are made and read as 8-bit text in Latin-1, once for both widths. No layout that is made from an
// integer is longer than 13 characters, so all of them fit the 32 of a caller's buffer.
#ifndef FIELDSCAN_TEXTCONV_INSTRUMENT_TEXT_H
#define FIELDSCAN_TEXTCONV_INSTRUMENT_TEXT_H

#include <cstddef>
#include <string>
#include <string_view>

namespace fieldscan {

constexpr int kBufferCharacters = 32;  // what a caller's buffer holds, the closing zero included
constexpr unsigned char kDegreeSign = 0xB0;
constexpr char kMinuteMark = '\'';
constexpr char kSecondMark = '"';

// The lower 32 bits of a long, which may have 64.
inline int lower32(long value) { return static_cast<int>(static_cast<unsigned>(value)); }

template <class Char>
bool isDigit(Char c) {
    return c >= '0' && c <= '9';
}

inline std::string_view latin1(const char* text) { return text ? text : std::string_view(); }

inline std::string latin1(const unsigned short* text) {
    std::string narrow;
    for (; text && *text; ++text)
        narrow += *text > 0xFF ? '?' : static_cast<char>(*text);
    return narrow;
}

// `out` may be null.
template <class Char>
void writeText(std::string_view text, Char* out) {
    if (!out)
        return;
    for (const char c : text)
        *out++ = static_cast<Char>(static_cast<unsigned char>(c));
    *out = 0;
}

// The digits that `text` begins with, no more than `most`.
inline std::string_view leadingDigits(std::string_view text, std::size_t most) {
    std::size_t count = 0;
    while (count < text.size() && count < most && isDigit(text[count]))
        ++count;
    return text.substr(0, count);
}

// The characters of an instrument layout with a point behind the first `whole`, and no more than `decimals`
// behind that.
inline std::string withPoint(std::string_view text, std::size_t whole, std::size_t decimals) {
    std::string decimal(text.substr(0, whole));
    decimal += '.';
    return decimal.append(text.substr(decimal.size() - 1, decimals));
}

// The angle of a decimal text, CnvAngl; its display text, and the decimal distance of lDistToStr.
int angleOf(std::string_view decimal, int dropTenths);
std::string displayAngle(int a, int mode);
std::string fixedDistance(int d, int mode);

}  // namespace fieldscan

#endif
