// Rows of points as convert takes them: what spreadsheets write, and versioned scan files.
#ifndef TOOLS_FORMATS_POINT_ROWS_H
#define TOOLS_FORMATS_POINT_ROWS_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Makes a line "name,x,y,z" of each row. Without a separator the first row shows it. Lines between commas
// without quotation marks stay as they are, those of a file with a version line lose what follows z.
class PointRows {
public:
    // hasHeader: the first line of the file holds titles.
    PointRows(std::optional<char> separator, bool hasHeader);

    // Nothing for a line to be left out: the version line, the titles, a row of empty cells. The number of
    // the first line is 1, with which a reading begins. Throws Fault.
    std::optional<std::string_view> operator()(std::string_view line, int number);

    int shortened() const { return m_shortened; }  // lines with more than name,x,y,z

private:
    std::string_view versioned(std::string_view line, int number);
    std::optional<std::string_view> cells(std::string_view line, int number);
    std::string number(std::size_t cell, int number);

    std::optional<char> m_givenSeparator, m_separator;
    bool m_hasHeader;
    bool m_isVersioned = false;
    char m_decimalSign = 0;  // that the numbers so far have
    int m_shortened = 0;
    std::vector<std::string> m_cells;
    std::string m_row;
};

#endif
