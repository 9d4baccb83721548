// Quotation marks as RFC 4180 has them, but for line ends within them.
#include "formats/cells.h"

#include <algorithm>

#include "formats/fields.h"

namespace {

constexpr char kMark = '"';

// White space, where it is not the separator.
std::string_view stripped(std::string_view text, char separator) {
    const auto isSpace = [separator](char c) {
        return (c == ' ' || (c >= '\t' && c <= '\r')) && c != separator;
    };
    while (!text.empty() && isSpace(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isSpace(text.back()))
        text.remove_suffix(1);
    return text;
}

// Takes a cell in quotation marks, and the separator after it, off the row. False where there is none.
bool takeMarked(std::string_view& row, char separator, std::string& cell) {
    std::string_view rest = stripped(row, separator);
    if (rest.empty() || rest[0] != kMark)
        return false;
    cell.clear();
    for (std::size_t i = 1; i < rest.size(); ++i) {
        if (rest[i] != kMark) {
            cell += rest[i];
        } else if (i + 1 < rest.size() && rest[i + 1] == kMark) {
            cell += rest[i++];
        } else {
            rest = stripped(rest.substr(i + 1), separator);
            if (!rest.empty() && rest[0] != separator)
                return false;
            row = rest;
            return true;
        }
    }
    return false;
}

bool isPointRow(std::string_view row, char separator) {
    std::vector<std::string> cells;
    splitCells(row, separator, cells);
    return cells.size() >= 4 && numberText(cells[1], separator) && numberText(cells[2], separator) &&
           numberText(cells[3], separator);
}

bool isWordsOfPoint(std::string_view row) {
    const auto words = wordsOf(row);
    return words.size() >= 4 && numberOf(words[1]) && numberOf(words[2]) && numberOf(words[3]);
}

}  // namespace

bool splitCells(std::string_view row, char separator, std::vector<std::string>& cells) {
    bool isMarked = false;
    cells.clear();
    for (;;) {
        std::string cell;
        if (takeMarked(row, separator, cell)) {
            isMarked = true;
        } else {
            const std::size_t end = std::min(row.find(separator), row.size());
            cell = trimmed(row.substr(0, end));
            row.remove_prefix(end);
        }
        cells.push_back(std::move(cell));
        if (row.empty())
            return isMarked;
        row.remove_prefix(1);  // the separator
    }
}

std::optional<std::string> numberText(const std::string& cell, char separator) {
    std::string text(trimmed(cell));
    if (separator != ',' && text.find('.') == std::string::npos)
        std::replace(text.begin(), text.end(), ',', '.');  // a second one makes it no number
    return numberOf(text) ? std::optional(text) : std::nullopt;
}

std::optional<char> separatorOf(std::string_view row) {
    for (const char separator : {',', ';', '\t'})
        if (isPointRow(row, separator))
            return separator;
    return std::nullopt;
}

bool isUtf16(const std::vector<std::string>& lines) {
    const std::string first = lines.empty() ? "" : lines[0].substr(0, 2);
    // Without a byte order mark every other byte of Latin text is 0.
    return first == "\xFF\xFE" || first == "\xFE\xFF" ||
           (!lines.empty() && lines[0].size() >= 8 &&
            2 * std::count(lines[0].begin(), lines[0].end(), '\0') >=
                static_cast<std::ptrdiff_t>(lines[0].size()) - 1);
}

std::string foundInstead(const std::vector<std::string>& lines) {
    if (isUtf16(lines))
        return ", found text in UTF-16; save it in UTF-8 or a code page of 8 bits";
    const char kConvert[] = " (fieldscan convert makes a point file of them)";
    for (std::size_t i = 0; i < std::min<std::size_t>(lines.size(), 5); ++i) {
        const auto separator = separatorOf(lines[i]);
        const bool hasDecimalComma = lines[i].find(',') != std::string::npos;
        if (separator == ';')
            return std::string(", found semicolons between the fields") +
                   (hasDecimalComma ? " and decimal commas" : "") + kConvert;
        if (separator == '\t')
            return std::string(", found tabs between the fields") +
                   (hasDecimalComma ? " and decimal commas" : "") + kConvert;
        if (separator == ',')
            return std::string(", found fields in quotation marks") + kConvert;
        if (isWordsOfPoint(lines[i]))
            return ", found blanks between the fields";
    }
    return "";
}
