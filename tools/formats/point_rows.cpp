// Everything that might be another number than the one meant is refused: thousands separators, a comma that
// is a decimal sign in one row and a point in the next.
#include "formats/point_rows.h"

#include <algorithm>

#include "formats/cells.h"
#include "formats/line_rules.h"

namespace {

// The length of "name,x,y,z" at the start of the line.
std::size_t lengthOfPoint(std::string_view line) {
    std::size_t at = 0;
    for (int commas = 0; commas < 4 && at != std::string_view::npos; ++commas)
        at = line.find(',', commas == 0 ? 0 : at + 1);
    return std::min(at, line.size());
}

// A row of titles, or one with a fault, has the separator that makes four cells of it.
char likelySeparator(std::string_view row) {
    if (const auto separator = separatorOf(row))
        return *separator;
    std::vector<std::string> cells;
    for (const char separator : {',', ';', '\t'}) {
        splitCells(row, separator, cells);
        if (cells.size() >= 4)
            return separator;
    }
    return ',';
}

}  // namespace

PointRows::PointRows(std::optional<char> separator, bool hasHeader)
    : m_givenSeparator(separator), m_hasHeader(hasHeader) {}

std::string_view PointRows::versioned(std::string_view line, int number) {
    std::vector<Fault> faults;
    addVersionedFaults(number, line, faults);
    if (!faults.empty())
        throw faults[0];
    ++m_shortened;
    return line.substr(0, lengthOfPoint(line));
}

std::string PointRows::number(std::size_t cell, int number) {
    const std::string& text = m_cells[cell];
    const auto plain = numberText(text, *m_separator);
    if (!plain)
        throw Fault{number, "expected a number as field " + std::to_string(cell + 1) + ", found \"" + text +
                                "\"" + (number == 1 ? " (--header if these are titles)" : "")};
    const std::size_t at = text.find_first_of(".,");
    const char sign = at == std::string::npos ? m_decimalSign : text[at];
    if (m_decimalSign != 0 && sign != m_decimalSign)
        throw Fault{number, std::string("expected one decimal sign in all numbers, found \"") + text +
                                "\" after numbers with \"" + m_decimalSign + "\""};
    m_decimalSign = sign;
    return *plain;
}

std::optional<std::string_view> PointRows::cells(std::string_view line, int number) {
    const bool mayBePlain = !m_givenSeparator && *m_separator == ',';
    if (mayBePlain && (line.find('"') == std::string_view::npos || !splitCells(line, ',', m_cells))) {
        if (line.find('\r') == std::string_view::npos && lengthOfPoint(line) < line.size())
            ++m_shortened;
        return line;
    }
    splitCells(line, *m_separator, m_cells);
    if (std::all_of(m_cells.begin(), m_cells.end(), [](const std::string& cell) { return isBlank(cell); }))
        return std::nullopt;
    if (m_cells.size() < 4)
        throw Fault{number, "expected name, x, y and z, found " + std::to_string(m_cells.size()) +
                                (m_cells.size() == 1 ? " field" : " fields")};
    if (m_cells[0].find(',') != std::string::npos)
        throw Fault{number, "expected a name without comma, found \"" + m_cells[0] + "\""};
    m_row = m_cells[0];
    for (std::size_t k = 1; k < 4; ++k)
        m_row += "," + this->number(k, number);
    if (std::any_of(m_cells.begin() + 4, m_cells.end(),
                    [](const std::string& cell) { return !isBlank(cell); }))
        ++m_shortened;
    return m_row;
}

std::optional<std::string_view> PointRows::operator()(std::string_view line, int number) {
    if (number == 1) {
        m_separator = m_givenSeparator;
        m_decimalSign = 0;
        m_shortened = 0;
        FormatFinder first;
        first.take(line);
        m_isVersioned = first.format() == Format::versionedScan;
        if (m_isVersioned || m_hasHeader)
            return std::nullopt;
    }
    if (m_isVersioned)
        return versioned(line, number);
    if (!m_separator && !isBlank(line))
        m_separator = likelySeparator(line);
    const auto row = m_separator ? cells(line, number) : line;
    if (row && withoutByteOrderMark(trimmed(*row)) != trimmed(*row))  // at the start of OUT it would be lost
        throw Fault{number, "expected a name that does not begin with a byte order mark"};
    return row;
}
