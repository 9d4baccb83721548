// Parts of a line, and the numbers in them.
#ifndef TOOLS_FORMATS_FIELDS_H
#define TOOLS_FORMATS_FIELDS_H

#include <fieldscan/framework/string.h>

#include <optional>
#include <string_view>
#include <vector>

// What is between commas, and what is between white space; both without white space at their ends.
std::vector<std::string_view> fieldsOf(std::string_view line);
std::vector<std::string_view> wordsOf(std::string_view line);
std::string_view trimmed(std::string_view text);
void fieldsOf(std::string_view line, std::vector<std::string_view>& fields);

// True for nothing but white space, the ideographic blank of the code page included, as the library has it.
bool isBlank(std::string_view text);

// The text of a file after a byte order mark, which the library's readers pass over where it is one
// character: in UTF-8.
std::string_view withoutByteOrderMark(std::string_view text);

// A name as the library reads it: text in the code page without white space at its ends, here up to a NUL.
CString pointName(std::string_view field);

// False if bytes of the text form no character of the code page, and for a NUL.
bool isInCodePage(std::string_view text);

// The whole text as a number; nothing when it is something else or not finite.
std::optional<double> numberOf(std::string_view text);
std::optional<int> integerOf(std::string_view text);

#endif
