// Shared by the instrument strings: text of both widths, and the layouts.
//
// Layouts are made and read as 8-bit text in Latin-1, once for both widths. A layout made from an integer has
// at most 13 characters and so fits a caller's buffer of 32.
#ifndef FIELDSCAN_TEXTCONV_INSTRUMENT_TEXT_H
#define FIELDSCAN_TEXTCONV_INSTRUMENT_TEXT_H

#include <cstddef>
#include <string>
#include <string_view>

namespace fieldscan {

constexpr int kBufferCharacters = 32;  // of a caller's buffer, the closing zero included
constexpr unsigned char kDegreeSign = 0xB0;
constexpr char kMinuteMark = '\'';
constexpr char kSecondMark = '"';

// The lower 32 bits of a long, which may have 64.
inline int lower32(long value) { return static_cast<int>(static_cast<unsigned>(value)); }

template <class Char>
bool isDigit(Char c) {
    return c >= '0' && c <= '9';
}

// Text of either width in Latin-1: a wide unit above 0xFF becomes '?', a null pointer the empty text.
inline std::string_view latin1(const char* text) { return text ? text : std::string_view(); }

inline std::string latin1(const unsigned short* text) {
    std::string narrow;
    for (; text && *text; ++text)
        narrow += *text > 0xFF ? '?' : static_cast<char>(*text);
    return narrow;
}

// Writes the text and a closing zero; nothing to a null `out`.
template <class Char>
void writeText(std::string_view text, Char* out) {
    if (!out)
        return;
    for (const char c : text)
        *out++ = static_cast<Char>(static_cast<unsigned char>(c));
    *out = 0;
}

// The digits at the start of `text`, at most `most`.
inline std::string_view leadingDigits(std::string_view text, std::size_t most) {
    std::size_t count = 0;
    while (count < text.size() && count < most && isDigit(text[count]))
        ++count;
    return text.substr(0, count);
}

// An instrument text as a decimal one: the first `whole` characters, a point, and up to `decimals` more.
inline std::string decimalFromInstrument(std::string_view text, std::size_t whole, std::size_t decimals) {
    std::string decimal(text.substr(0, whole));
    decimal += '.';
    return decimal.append(text.substr(decimal.size() - 1, decimals));
}

// ---- Layouts, with the modes of the exported functions; angles in 0.1 second, distances in 1/10000 ----

// As CnvAngl of a text, CnvAngl of an angle, and lDistToStr.
int angleFromDecimal(std::string_view decimal, int dropTenths);
std::string displayAngle(int angle, int mode);
std::string fixedDistance(int distance, int mode);

}  // namespace fieldscan

#endif
