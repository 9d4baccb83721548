// Numbers as text and text as numbers, as printf, strtod, strtol and sscanf convert them in the "C" locale,
// whatever locale the application has set. Integers have 32 bits on every target: a larger one becomes the
// nearest that fits, as strtol does where long has 32 bits.
#ifndef FIELDSCAN_PLATFORM_FRAMEWORK_NUMBER_TEXT_H
#define FIELDSCAN_PLATFORM_FRAMEWORK_NUMBER_TEXT_H

#include <cstddef>
#include <string>
#include <string_view>

namespace fieldscan {

// ---- Numbers as text; each appends to `out` ----

// "%d", "%Nd" (width > 0), "%0Nd" (zeroFill).
void appendInt(std::string& out, long long value, int width = 0, bool zeroFill = false);
// "%.Nf", "%W.Nf" (width > 0), "%0W.Nf" (zeroFill); inf and nan are never filled with zeros. decimals >= 0.
void appendFixed(std::string& out, double value, int decimals, int width = 0, bool zeroFill = false);
// "%.Nf" with up to kMostDecimals, written to `to`, which holds kFixedRoom characters; returns the end.
constexpr int kMostDecimals = 10;
constexpr std::size_t kFixedRoom = 1 + 309 + 1 + kMostDecimals;
char* putFixed(char* to, double value, int decimals);
// "%.Ne"; the exponent has at least two digits.
void appendExponent(std::string& out, double value, int decimals = 6);

// ---- Text as numbers ----
// `used`, unless null, receives the number of characters read, leading white space included; 0, and the
// result 0, when there is no number. The view need not end at a NUL; inside it a NUL is a character like any
// other. A nan keeps its sign but not the payload of "nan(...)".

double parseDouble(std::string_view text, std::size_t* used = nullptr);  // strtod, atof
int parseInt(std::string_view text, int base = 10,
             std::size_t* used = nullptr);  // strtol, atoi; base 0, 2 to 36

// sscanf, one conversion a call. endOfInput: after white space the text ends or has a NUL, which sscanf
// reports as EOF when it is the first conversion. Unless the result is `matched`, the output is unchanged and
// no later conversion of the same scanner matches.
class Scanner {
public:
    enum class Result { matched, mismatch, endOfInput };

    explicit Scanner(std::string_view text) : m_rest(text) {}
    Result scanDouble(double& value);    // "%lf"
    Result scanInt(int& value);          // "%d"
    Result scanWord(std::string& word);  // "%s"

private:
    bool skipSpace();
    std::string_view m_rest;
    Result m_failed = Result::matched;
};

}  // namespace fieldscan

#endif
