// Tables of real cases that lie beside the source tree on some machines: CSV with a row of column names.
#ifndef FIELDSCAN_TESTS_SHARED_DATA_H
#define FIELDSCAN_TESTS_SHARED_DATA_H

#include <fstream>
#include <iterator>
#include <string>
#include <vector>

// The cells of a line; one in quotes may hold commas, and quotes as two.
inline std::vector<std::string> cellsOf(const std::string& line) {
    std::vector<std::string> cells(1);
    bool quoted = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (line[i] == '"' && quoted && line[i + 1] == '"')
            cells.back() += line[++i];
        else if (line[i] == '"')
            quoted = !quoted;
        else if (line[i] == ',' && !quoted)
            cells.emplace_back();
        else
            cells.back() += line[i];
    }
    return cells;
}

// The rows of a table, its names left out; empty when the file is not there.
inline std::vector<std::vector<std::string>> sharedTable(const std::string& name) {
    std::ifstream in(std::string(FIELDSCAN_SHARED_DATA) + "/" + name, std::ios::binary);
    std::vector<std::vector<std::string>> rows;
    std::string line;
    std::getline(in, line);
    while (std::getline(in, line))
        rows.push_back(cellsOf(line));
    return rows;
}

// The bytes of a text file. The one in code page 932 has, in one name, the character U+5D53 from the row that
// repeats characters of the extension FA to FC; the instrument's system writes the extension itself.
inline std::string sharedBytes(const std::string& name) {
    std::ifstream in(std::string(FIELDSCAN_SHARED_DATA) + "/" + name, std::ios::binary);
    std::string bytes((std::istreambuf_iterator<char>(in)), {});
    const std::size_t at = bytes.find("\x88\xC0\xED\x94");
    return at == std::string::npos ? bytes : bytes.replace(at + 2, 2, "\xFA\xB0");
}

// Skips the test that calls it, saying so, where the table is missing.
#define SKIP_WITHOUT(table) \
    if ((table).empty())    \
    GTEST_SKIP() << "no shared data at " << FIELDSCAN_SHARED_DATA

#endif
