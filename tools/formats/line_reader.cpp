// Files by std::ifstream, standard input by the system's read, which returns what a pipe has.
#include "formats/line_reader.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <utility>

#include "common/data_error.h"
#include "common/files.h"
#include "common/wrong_use.h"

#if defined(_WIN32)
#include <io.h>
#else
#include <unistd.h>
#endif

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kPiece = 64 * 1024;
constexpr std::size_t kLongestLine = 16 * 1024 * 1024;  // of the library's readers

long long readInput(char* to, std::size_t size) {
#if defined(_WIN32)
    return ::_read(0, to, static_cast<unsigned int>(size));
#else
    ssize_t count;
    do
        count = ::read(STDIN_FILENO, to, size);
    while (count < 0 && errno == EINTR);
    return count;
#endif
}

// What the file has without waiting for more, and a byte at least; 0 at the end, -1 for a failure.
long long readFile(std::ifstream& file, char* to, std::size_t size) {
    try {
        if (file.rdbuf()->sgetc() == std::ifstream::traits_type::eof())
            return 0;
        const auto there = static_cast<std::size_t>(std::max<std::streamsize>(file.rdbuf()->in_avail(), 1));
        return file.rdbuf()->sgetn(to, static_cast<std::streamsize>(std::min(there, size)));
    } catch (const std::ios_base::failure&) {
        return -1;
    }
}

}  // namespace

LineReader::LineReader(const std::string& argument) : m_name(argument), m_isInput(argument == "-") {
    if (m_isInput) {
        static bool isTaken = false;
        if (std::exchange(isTaken, true))
            throw WrongUse("-", "standard input gives one file only");
        m_name = "(standard input)";
        return;
    }
    const fs::path path = pathOf(argument);
    std::error_code ignored;
    if (fs::is_directory(path, ignored))
        fail(0, "cannot be opened" + reasonFor(EISDIR));
    m_piece.resize(kPiece);
    m_file.rdbuf()->pubsetbuf(m_piece.data(), static_cast<std::streamsize>(kPiece));
    errno = 0;
    m_file.open(path, std::ios::binary);
    if (!m_file)
        fail(0, "cannot be opened" + reasonFor(errno));
    if (fs::is_regular_file(path, ignored))
        m_length = static_cast<long long>(fs::file_size(path, ignored));
}

bool LineReader::fill() {
    m_buffer.erase(0, std::exchange(m_next, 0));
    const std::size_t size = m_buffer.size();
    if (size > kLongestLine)
        fail(m_number + 1, "expected a line of up to 16 MiB");
    m_buffer.resize(size + kPiece);
    errno = 0;
    const long long count = m_isInput ? readInput(m_buffer.data() + size, kPiece)
                                      : readFile(m_file, m_buffer.data() + size, kPiece);
    if (count < 0)
        fail(0, "cannot be read" + reasonFor(errno));
    m_buffer.resize(size + static_cast<std::size_t>(count));
    m_position += count;
    return count > 0;
}

bool LineReader::next(std::string_view& line) {
    std::size_t searched = m_next, end;
    while ((end = m_buffer.find('\n', searched)) == std::string::npos && !m_isAtEnd) {
        searched = m_buffer.size() - m_next;
        m_isAtEnd = !fill();
    }
    if (end == std::string::npos && m_buffer.size() == m_next)
        return false;
    const std::size_t length = std::min(end, m_buffer.size() - 1) + 1 - m_next;
    if (length > kLongestLine)
        fail(m_number + 1, "expected a line of up to 16 MiB");
    line = std::string_view(m_buffer).substr(m_next, length);
    m_next += length;
    ++m_number;
    return true;
}

void LineReader::rewind() {
    m_file.clear();
    m_file.seekg(0);
    m_buffer.clear();
    m_next = 0;
    m_position = 0;
    m_isAtEnd = false;
    m_number = 0;
}

void LineReader::fail(int line, const std::string& what) const {
    throw DataError(messageFor(m_name, line, what));
}

std::string_view withoutEnd(std::string_view line) {
    if (!line.empty() && line.back() == '\n')
        line.remove_suffix(1);
    if (!line.empty() && line.back() == '\r')
        line.remove_suffix(1);
    return line;
}
