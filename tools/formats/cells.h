// Rows as spreadsheets write them: cells between commas, semicolons or tabs, in quotation marks or without,
// numbers with a decimal point or comma.
#ifndef TOOLS_FORMATS_CELLS_H
#define TOOLS_FORMATS_CELLS_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

// The cells of a row, without white space at their ends. A cell in quotation marks may hold the separator,
// and two of them for one; where the second mark is missing, the first one is text. Returns true if any cell
// was in quotation marks.
bool splitCells(std::string_view row, char separator, std::vector<std::string>& cells);

// The number of a cell, as text with a decimal point. A decimal comma counts unless it is the separator.
std::optional<std::string> numberText(const std::string& cell, char separator);

// The separator of comma, semicolon and tab that makes "name,x,y,z" of the row; nothing when none does.
std::optional<char> separatorOf(std::string_view row);

// What is in a file of no known format, of which these are the first lines: UTF-16, semicolons, tabs, blanks
// or quotation marks. ", found ..." and what to do; empty when it is none of these.
std::string foundInstead(const std::vector<std::string>& lines);
bool isUtf16(const std::vector<std::string>& lines);

#endif
