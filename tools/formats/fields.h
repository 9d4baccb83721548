// Parts of a line, and the numbers in them.
#ifndef TOOLS_FORMATS_FIELDS_H
#define TOOLS_FORMATS_FIELDS_H

#include <optional>
#include <string_view>
#include <vector>

// What is between commas, and what is between white space; both without white space at their ends.
std::vector<std::string_view> fieldsOf(std::string_view line);
std::vector<std::string_view> wordsOf(std::string_view line);
std::string_view trimmed(std::string_view text);

// The whole text as a number; nothing when it is something else or not finite.
std::optional<double> numberOf(std::string_view text);
std::optional<int> integerOf(std::string_view text);

#endif
