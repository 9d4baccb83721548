// Long lists of real cases that lie beside the source tree on some machines: CSV with a row of column names.
// Tests that have them go beyond what tests/published proves everywhere.
#ifndef FIELDSCAN_TESTS_SHARED_DATA_H
#define FIELDSCAN_TESTS_SHARED_DATA_H

#include <fieldscan/polyline.h>

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

inline std::string sharedBytes(const std::string& name) {
    std::ifstream in(std::string(FIELDSCAN_SHARED_DATA) + "/" + name, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

// An outline, and points with what another library says of them.
struct SharedOutline {
    struct Point {
        double x, y;
        int inside;
    };
    explicit SharedOutline(const std::string& name) {
        for (const auto& cells : sharedTable("polygon/" + name + "_outline.csv"))
            outline.AddVertex(CVertex(std::stod(cells[0]), std::stod(cells[1]), 0, 0));
        for (const auto& cells : sharedTable("polygon/" + name + "_points.csv"))
            points.push_back({std::stod(cells[0]), std::stod(cells[1]), std::stoi(cells[2])});
    }
    CPolyline outline;
    std::vector<Point> points;
};

// For the tests that skip without them.
inline const char kNoSharedData[] = "no shared data at " FIELDSCAN_SHARED_DATA;

#endif
