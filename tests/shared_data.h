// Tables of real cases that lie beside the source tree on some machines, for tests that go beyond what those
// of tests/published prove everywhere: CSV with a row of column names, no cell in quotes.
#ifndef FIELDSCAN_TESTS_SHARED_DATA_H
#define FIELDSCAN_TESTS_SHARED_DATA_H

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

// The rows of a table, its names left out; empty when the file is not there.
inline std::vector<std::vector<std::string>> sharedTable(const std::string& name) {
    std::ifstream in(std::string(FIELDSCAN_SHARED_DATA) + "/" + name, std::ios::binary);
    std::vector<std::vector<std::string>> rows;
    std::string line, cell;
    std::getline(in, line);
    while (std::getline(in, line)) {
        rows.emplace_back();
        for (std::istringstream cells(line); std::getline(cells, cell, ',');)
            rows.back().push_back(cell);
    }
    return rows;
}

// For the tests that skip without them.
inline const char kNoSharedData[] = "no shared data at " FIELDSCAN_SHARED_DATA;

#endif
