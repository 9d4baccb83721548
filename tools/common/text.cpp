// Letters are counted as UTF-8 has them: bytes that do not continue another.
#include "common/text.h"

#include <algorithm>
#include <charconv>
#include <cstdarg>
#include <cstdio>

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

std::string fixedText(double value, int decimals) {
    std::string text;
    addFixed(text, value, decimals);
    return text[0] == '-' && text.find_first_not_of("-0.") == std::string::npos ? text.substr(1) : text;
}

void addFixed(std::string& text, double value, int decimals) {
    char digits[400];  // a double has up to 309 before its point
    text.append(digits,
                std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed, decimals).ptr);
}

std::string lowered(std::string text) {
    for (char& c : text)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return text;
}

int lettersIn(const std::string& text) {
    return static_cast<int>(std::count_if(
        text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

std::string padded(std::string text, int letters) {
    text.append(static_cast<std::size_t>(std::max(0, letters - lettersIn(text))), ' ');
    return text;
}

bool print(const std::string& text) {
    return std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0;
}

void printEntry(const char* title, const std::string& text) {
    std::printf("  %-17s  %s\n", title, text.c_str());
}
