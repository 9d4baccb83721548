// A folder of its own for each test, removed afterwards, with plain access to its files.
#ifndef FIELDSCAN_TESTS_TEMP_FOLDER_H
#define FIELDSCAN_TESTS_TEMP_FOLDER_H

#include <fieldscan/framework/string.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

#include "tests/environment.h"

// `text` with other ends of its lines.
inline std::string withLineEnds(const std::string& text, const std::string& end) {
    std::string result;
    for (const char c : text)
        result += c == '\n' ? end : std::string(1, c);
    return result;
}

class TempFolder : public ::testing::Test {
protected:
    void SetUp() override {
        std::random_device random;
        do
            folder = std::filesystem::temp_directory_path() / ("fieldscan" + std::to_string(random()));
        while (!std::filesystem::create_directory(folder));
        clearEnvironment();
    }
    void TearDown() override {
        std::filesystem::remove_all(folder);
        clearEnvironment();
    }
    CString path(const std::string& name) const { return CString((folder / name).c_str()); }
    void put(const std::string& name, const std::string& bytes) const {
        std::ofstream(folder / name, std::ios::binary) << bytes;
    }
    std::string get(const std::string& name) const {
        std::ifstream in(folder / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    bool exists(const std::string& name) const { return std::filesystem::exists(folder / name); }
    std::filesystem::path folder;
};

#endif
