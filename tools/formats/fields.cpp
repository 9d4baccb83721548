// Fields, words and whole numbers of a line, independent of the locale (std::from_chars).
#include "formats/fields.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace {

constexpr char kBlanks[] = " \t\v\f\r\n";

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
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::vector<std::string_view> fieldsOf(std::string_view line) {
    std::vector<std::string_view> fields;
    for (std::size_t comma = 0; comma != std::string_view::npos;) {
        comma = line.find(',');
        fields.push_back(trimmed(line.substr(0, comma)));
        line.remove_prefix(comma == std::string_view::npos ? line.size() : comma + 1);
    }
    return fields;
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
