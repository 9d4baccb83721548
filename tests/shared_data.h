// Tables of real cases that lie beside the source tree on some machines: CSV with a row of column names.
#ifndef FIELDSCAN_TESTS_SHARED_DATA_H
#define FIELDSCAN_TESTS_SHARED_DATA_H

#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

// The rows of a table, its names left out; empty when the file is not there.
inline std::vector<std::vector<std::string>> sharedTable(const std::string& name) {
    std::ifstream in(std::string(FIELDSCAN_SHARED_DATA) + "/" + name, std::ios::binary);
    std::vector<std::vector<std::string>> rows;
    std::string line;
    std::getline(in, line);
    while (std::getline(in, line)) {
        std::istringstream cells(line + ",");
        rows.emplace_back();
        for (std::string cell; std::getline(cells, cell, ',');)
            rows.back().push_back(cell);
    }
    return rows;
}

// The bytes of a text file. The one in code page 932 has, in one name, the character U+5D53 from the row that repeats
// characters of the extension FA to FC; the instrument's system writes the extension itself.
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
