// Text of the library and of printf as 8-bit text in UTF-8.
#ifndef TOOLS_COMMON_TEXT_H
#define TOOLS_COMMON_TEXT_H

#include <fieldscan/framework/standard.h>

#include <string>

using fieldscan::toUtf8;

#if defined(__GNUC__)
__attribute__((format(printf, 1, 2)))
#endif
std::string
format(const char* pattern, ...);

// The number with so many decimals; 0 for -0, which rounding errors give.
std::string fixedText(double value, int decimals);
// Appends the number as "%.Nf" has it. Several times as fast, which files of millions of points need.
void addFixed(std::string& text, double value, int decimals);

// The text with small letters for A to Z.
std::string lowered(std::string text);

int lettersIn(const std::string& text);
// The text, filled with blanks up to so many letters; %-*s would count bytes.
std::string padded(std::string text, int letters);

// Prints at once; false where standard output takes no more, as after head has ended.
bool print(const std::string& text);

// Prints an entry of a report: a title and what it says.
void printEntry(const char* title, const std::string& text);

#endif
