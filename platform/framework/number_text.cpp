// Numbers by std::to_chars and std::from_chars, which know no locale, with what printf, strtod, strtol and
// scanf add to them: padding, signs, white space, saturation, "0x", "inf" and "nan".
#include "platform/framework/number_text.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cmath>
#include <limits>
#include <system_error>

#include "platform/framework/decimal_text.h"

namespace fieldscan {
namespace {

// ---- Numbers as text ----

// Fills the text from `start` on up to `width`, on the left.
void pad(std::string& out, std::size_t start, int width, bool zeroFill) {
    const std::size_t length = out.size() - start;
    if (width <= 0 || length >= static_cast<std::size_t>(width))
        return;
    if (zeroFill && out[start] == '-')
        ++start;
    out.insert(start, static_cast<std::size_t>(width) - length, zeroFill ? '0' : ' ');
}

// `places`: the most characters besides the point and the decimals, that is sign, digits and exponent.
void appendDouble(std::string& out, double value, std::chars_format format, int decimals,
                  std::size_t places) {
    const std::size_t start = out.size();
    decimals = std::max(decimals, 0);
    out.resize(start + places + 1 + static_cast<std::size_t>(decimals));
    char* const first = out.data() + start;
    const auto written = std::to_chars(first, out.data() + out.size(), value, format, decimals);
    out.resize(start + static_cast<std::size_t>(written.ptr - first));
}

// ---- Text as numbers ----

// NUL for the end of the text: it belongs to no number and is no white space.
char charAt(std::string_view text, std::size_t at) { return at < text.size() ? text[at] : '\0'; }

bool isSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
bool isDigit(char c) { return c >= '0' && c <= '9'; }
char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }
bool isHexDigit(char c) { return isDigit(c) || (lower(c) >= 'a' && lower(c) <= 'f'); }
bool isSign(char c) { return c == '-' || c == '+'; }

std::size_t countSpace(std::string_view text) {
    std::size_t count = 0;
    while (isSpace(charAt(text, count)))
        ++count;
    return count;
}

bool startsWith(std::string_view text, std::string_view lowerCaseWord) {
    for (std::size_t i = 0; i < lowerCaseWord.size(); ++i)
        if (lower(charAt(text, i)) != lowerCaseWord[i])
            return false;
    return true;
}

bool hasHexPrefix(std::string_view text) { return startsWith(text, "0x"); }

// True if `number` (digits, point, exponent), which is out of the range of double, is too large; false if it
// is too small. from_chars gives the same error for both.
bool isAboveRange(std::string_view number, bool hex) {
    const std::string_view mantissa = number.substr(0, number.find_first_of(hex ? "pP" : "eE"));
    std::string_view exponentText = number.substr(std::min(mantissa.size() + 1, number.size()));
    if (charAt(exponentText, 0) == '+')
        exponentText.remove_prefix(1);
    long long exponent = 0;
    const auto read =
        std::from_chars(exponentText.data(), exponentText.data() + exponentText.size(), exponent);
    if (read.ec == std::errc::result_out_of_range)
        return exponentText[0] != '-';  // more than any number of digits can make up for
    // The place of the leading digit, counted from the point, give or take one: the range ends much farther
    // off.
    const auto point = static_cast<long long>(std::min(mantissa.find('.'), mantissa.size()));
    const auto leading = static_cast<long long>(mantissa.find_first_not_of("0."));
    return (point - leading) * (hex ? 4 : 1) + exponent > 0;  // a hexadecimal exponent counts bits
}

// Reads a number without sign at the start of `text`; returns its length, 0 when there is none.
std::size_t readMagnitude(std::string_view text, double& value) {
    if (charAt(text, 0) == '-')
        return 0;  // a second sign, which from_chars would take
    // Without a digit after it, "0x" is the number 0 and an x.
    const bool hex = hasHexPrefix(text) && isHexDigit(charAt(text, charAt(text, 2) == '.' ? 3 : 2));
    // No number contains "+-", but the from_chars of g++ 12 accepts it in a hexadecimal exponent.
    const std::string_view digits = hex ? text.substr(2, text.find("+-", 2) - 2) : text;
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), value,
                                      hex ? std::chars_format::hex : std::chars_format::general);
    const auto length = static_cast<std::size_t>(read.ptr - digits.data());
    if (read.ec == std::errc::invalid_argument)
        return 0;
    if (read.ec == std::errc::result_out_of_range)
        value = isAboveRange(digits.substr(0, length), hex) ? std::numeric_limits<double>::infinity() : 0.0;
    return length + (hex ? 2 : 0);
}

// Number of characters that "%lf" takes off the text; 0 when it fails on them. sscanf looks only one
// character ahead: it takes the "e" of an exponent without digits, and fails on "0x" and "infi", where strtod
// reads the "0" and the "inf".
std::size_t scanLength(std::string_view text) {
    std::size_t at = isSign(charAt(text, 0)) ? 1 : 0;
    const std::string_view magnitude = text.substr(at);
    if (startsWith(magnitude, "nan"))
        return at + 3;
    if (startsWith(magnitude, "infinity"))
        return at + 8;
    if (startsWith(magnitude, "inf"))
        return lower(charAt(magnitude, 3)) == 'i' ? 0 : at + 3;

    const bool hex = hasHexPrefix(magnitude);
    const char mark = hex ? 'p' : 'e';
    if (hex)
        at += 2;
    const std::size_t first = at;
    bool digits = false;
    bool point = false;
    bool exponent = false;
    for (;; ++at) {
        const char c = lower(charAt(text, at));
        if (isDigit(c) || (hex && !exponent && isHexDigit(c)))
            digits = true;
        else if (c == mark && digits && !exponent)
            exponent = true;
        else if (c == '.' && !point && !exponent)
            point = true;
        else if (!(isSign(c) && exponent && lower(text[at - 1]) == mark))
            break;
    }
    return at == first ? 0 : at;
}

}  // namespace

void appendInt(std::string& out, long long value, int width, bool zeroFill) {
    char digits[24];
    const std::size_t start = out.size();
    out.append(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
    pad(out, start, width, zeroFill);
}

char* putFixed(char* to, double value, int decimals) {
    if (char* const end = putPlainFixed(to, value, decimals))
        return end;
    return std::to_chars(to, to + kFixedRoom, value, std::chars_format::fixed, std::max(decimals, 0)).ptr;
}

void appendFixed(std::string& out, double value, int decimals, int width, bool zeroFill) {
    const std::size_t start = out.size();
    char text[kFixedRoom];
    if (decimals <= kMostDecimals) {
        out.append(text, static_cast<std::size_t>(putFixed(text, value, decimals) - text));
    } else {
        appendDouble(out, value, std::chars_format::fixed, decimals, 1 + 309);
    }
    pad(out, start, width, zeroFill && std::isfinite(value));
}

void appendExponent(std::string& out, double value, int decimals) {
    appendDouble(out, value, std::chars_format::scientific, decimals, 1 + 1 + 5);
}

double parseDouble(std::string_view text, std::size_t* used) {
    std::size_t at = countSpace(text);
    const char sign = charAt(text, at);
    if (isSign(sign))
        ++at;
    double value = 0.0;
    std::size_t length = readPlainDecimal(text.substr(at), value);
    if (length == 0)
        length = readMagnitude(text.substr(at), value);
    if (used)
        *used = length == 0 ? 0 : at + length;
    // copysign gives a nan its sign too.
    return length == 0 ? 0.0 : std::copysign(value, sign == '-' ? -1.0 : 1.0);
}

int parseInt(std::string_view text, int base, std::size_t* used) {
    if (used)
        *used = 0;
    if (base != 0 && (base < 2 || base > 36))
        return 0;
    std::size_t at = countSpace(text);
    const bool negative = charAt(text, at) == '-';
    if (isSign(charAt(text, at)))
        ++at;
    const std::string_view magnitude = text.substr(at);
    if ((base == 0 || base == 16) && hasHexPrefix(magnitude) && isHexDigit(charAt(magnitude, 2))) {
        base = 16;
        at += 2;
    } else if (base == 0) {
        base = charAt(magnitude, 0) == '0' ? 8 : 10;
    }
    // Unsigned: from_chars must not take a second sign.
    unsigned long long value = 0;
    const auto read = std::from_chars(text.data() + at, text.data() + text.size(), value, base);
    if (read.ec == std::errc::invalid_argument)
        return 0;
    if (used)
        *used = static_cast<std::size_t>(read.ptr - text.data());
    if (read.ec == std::errc::result_out_of_range)
        value = ULLONG_MAX;
    const unsigned long long limit = negative ? 1ull << 31 : (1ull << 31) - 1;
    const auto inRange = static_cast<long long>(std::min(value, limit));
    return static_cast<int>(negative ? -inRange : inRange);
}

// Skips white space before a conversion; false, with the reason in m_failed, when none can match.
bool Scanner::skipSpace() {
    if (m_failed != Result::matched)
        return false;
    m_rest.remove_prefix(countSpace(m_rest));
    if (m_rest.empty() || m_rest[0] == '\0')
        m_failed = Result::endOfInput;
    return m_failed == Result::matched;
}

Scanner::Result Scanner::scanDouble(double& value) {
    if (!skipSpace())
        return m_failed;
    const std::size_t length = scanLength(m_rest);
    std::size_t used = 0;
    const double number = parseDouble(m_rest.substr(0, length), &used);
    if (used == 0)
        return m_failed = Result::mismatch;
    value = number;
    m_rest.remove_prefix(length);
    return Result::matched;
}

Scanner::Result Scanner::scanInt(int& value) {
    if (!skipSpace())
        return m_failed;
    std::size_t used = 0;
    const int number = parseInt(m_rest, 10, &used);
    if (used == 0)
        return m_failed = Result::mismatch;
    value = number;
    m_rest.remove_prefix(used);
    return Result::matched;
}

Scanner::Result Scanner::scanWord(std::string& word) {
    if (!skipSpace())
        return m_failed;
    std::size_t length = 0;
    while (length < m_rest.size() && !isSpace(m_rest[length]))
        ++length;
    word.assign(m_rest.data(), length);
    m_rest.remove_prefix(length);
    return Result::matched;
}

}  // namespace fieldscan
