// Standard input is copied into a temporary file, which the library then reads.
#include "formats/text_file.h"

#include <fstream>

#include "common/files.h"
#include "formats/line_reader.h"

TextFile::TextFile(const std::string& argument) : m_path(pathOf(argument)) {
    LineReader reader(argument);
    m_name = reader.name();
    std::ofstream copy;
    if (argument == "-") {
        m_path = m_folder.emplace().file();
        copy.open(m_path, std::ios::binary);
    }
    for (std::string_view line; reader.next(line);) {
        if (copy.is_open())
            copy << line;
        m_lines.emplace_back(withoutEnd(line));
    }
    if (argument == "-" && !copy.flush())
        fail(0, "its temporary copy cannot be written");
    if (!m_lines.empty())
        m_lines[0].erase(0, m_lines[0].size() - withoutByteOrderMark(m_lines[0]).size());
}

const std::string& TextFile::line(std::size_t i) const {
    static const std::string none;
    return i < m_lines.size() ? m_lines[i] : none;
}

CString TextFile::path() const { return libraryPath(m_path); }

std::string TextFile::message(int line, const std::string& what) const {
    return messageFor(m_name, line, what);
}

void TextFile::fail(int line, const std::string& what) const { throw DataError(message(line, what)); }
