// Fields, words and whole numbers of a line, independent of the locale (std::from_chars).
#include "formats/fields.h"

#include <fieldscan/string_utilities.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>

namespace {

constexpr char kBlanks[] = " \t\v\f\r\n";

bool isSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

// Neither NUL nor beyond ASCII.
bool isPlainText(std::string_view text) {
    bool isPlain = true;
    for (const char c : text)  // to the end, which the compiler does for many bytes at once
        isPlain &= static_cast<signed char>(c) > 0;
    return isPlain;
}

template <class Number>
std::optional<Number> wholeNumber(std::string_view text) {
    if (text.size() > 1 && text[0] == '+' && text[1] != '-')  // as the library's readers do
        text.remove_prefix(1);
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

}  // namespace

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && isSpace(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isSpace(text.back()))
        text.remove_suffix(1);
    return text;
}

std::vector<std::string_view> fieldsOf(std::string_view line) {
    std::vector<std::string_view> fields;
    fieldsOf(line, fields);
    return fields;
}

void fieldsOf(std::string_view line, std::vector<std::string_view>& fields) {
    fields.clear();
    for (std::size_t comma = 0; comma != std::string_view::npos;) {
        comma = line.find(',');
        fields.push_back(trimmed(line.substr(0, comma)));
        line.remove_prefix(comma == std::string_view::npos ? line.size() : comma + 1);
    }
}

bool isBlank(std::string_view text) {
    text = trimmed(text);
    // The bytes of an ideographic blank are none of these in any code page.
    const auto isOther = [](char c) { return c > ' ' && c < '@'; };
    return text.empty() || (static_cast<signed char>(text[0]) < 0 &&
                            std::none_of(text.begin(), text.end(), isOther) && pointName(text).IsEmpty());
}

std::string_view withoutByteOrderMark(std::string_view text) {
    constexpr char kMark[] = "\xEF\xBB\xBF";
    constexpr std::size_t kLength = sizeof kMark - 1;
    return text.substr(0, kLength) == kMark && CString(kMark).GetLength() == 1 ? text.substr(kLength) : text;
}

CString pointName(std::string_view field) { return CString(std::string(trimmed(field)).c_str()).Trim(); }

// Reads the text in the code page and writes it again. A byte that is no character of the page is read as the
// Latin-1 character of that number, and written as other bytes.
bool isInCodePage(std::string_view text) {
    if (isPlainText(text))
        return true;
    const CString wide(std::string(text).c_str());
    std::string back(2 * text.size() + 1, '\0');
    const int length = CStringToChar(wide, back.data(), static_cast<int>(back.size()));
    return length == static_cast<int>(text.size()) && CString(back.c_str()) == wide;
}

std::vector<std::string_view> wordsOf(std::string_view line) {
    std::vector<std::string_view> words;
    for (line = trimmed(line); !line.empty(); line = trimmed(line)) {
        const std::size_t end = std::min(line.find_first_of(kBlanks), line.size());
        words.push_back(line.substr(0, end));
        line.remove_prefix(end);
    }
    return words;
}

std::optional<double> numberOf(std::string_view text) {
    const auto value = wholeNumber<double>(text);
    return value && std::isfinite(*value) ? value : std::nullopt;
}

std::optional<int> integerOf(std::string_view text) { return wholeNumber<int>(text); }
