// Text of the library and of printf as 8-bit text in UTF-8.
#ifndef EXAMPLES_COMMON_TEXT_H
#define EXAMPLES_COMMON_TEXT_H

#include <fieldscan/framework/string.h>

#include <string>

std::string utf8(const CString& text);

#if defined(__GNUC__)
__attribute__((format(printf, 1, 2)))
#endif
std::string
format(const char* pattern, ...);

int lettersIn(const std::string& text);
// Blanks behind the text up to so many letters, which %-*s would count in bytes.
std::string padded(std::string text, int letters);

// A line of the report.
void print(const char* title, const std::string& text);

#endif
