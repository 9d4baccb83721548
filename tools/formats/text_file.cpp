// Standard input is copied into a temporary file, which the library then reads.
#include "formats/text_file.h"

#include <CLI/CLI.hpp>
#include <fstream>
#include <iostream>
#include <iterator>
#include <utility>

#include "common/data_error.h"
#include "common/files.h"

namespace fs = std::filesystem;

namespace {

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        const bool returned = end > begin && text[end - 1] == '\r';
        lines.push_back(text.substr(begin, end - begin - (returned ? 1 : 0)));
        begin = end + 1;
    }
    return lines;
}

}  // namespace

TextFile::TextFile(const std::string& argument) : m_name(argument), m_path(pathOf(argument)) {
    std::string text;
    if (argument == "-") {
        static bool isTaken = false;
        if (std::exchange(isTaken, true))
            throw CLI::ValidationError("-", "standard input gives one file only");
        m_name = "(standard input)";
        text.assign(std::istreambuf_iterator<char>(std::cin), {});
        m_path = m_folder.emplace().file();
        std::ofstream copy(m_path, std::ios::binary);
        copy << text;
        if (!copy.flush())
            fail(0, "its temporary copy cannot be written");
    } else {
        std::error_code ignored;
        std::ifstream file(m_path, std::ios::binary);
        if (!file || fs::is_directory(m_path, ignored))
            fail(0, "cannot be opened");
        text.assign(std::istreambuf_iterator<char>(file), {});
    }
    m_lines = linesOf(text);
    // The library's readers pass over a byte order mark where it is one character: where the code page is
    // UTF-8.
    constexpr char kMark[] = "\xEF\xBB\xBF";
    if (text.rfind(kMark, 0) == 0 && CString(kMark).GetLength() == 1)
        m_lines[0].erase(0, sizeof kMark - 1);
}

const std::string& TextFile::line(std::size_t i) const {
    static const std::string none;
    return i < m_lines.size() ? m_lines[i] : none;
}

CString TextFile::path() const { return libraryPath(m_path); }

std::string TextFile::message(int line, const std::string& what) const {
    return (line > 0 ? m_name + ":" + std::to_string(line) : m_name) + ": " + what;
}

void TextFile::fail(int line, const std::string& what) const { throw DataError(message(line, what)); }
