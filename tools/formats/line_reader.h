// Lines of a file of the command line, read in pieces: a long file takes no more memory than a short one.
#ifndef TOOLS_FORMATS_LINE_READER_H
#define TOOLS_FORMATS_LINE_READER_H

#include <fstream>
#include <string>
#include <string_view>

class LineReader {
public:
    // "-" is standard input. Throws DataError, and WrongUse for a second "-".
    explicit LineReader(const std::string& argument);

    // The next line with its line feed, which the last one may lack; valid until the next call. False at the
    // end. Throws DataError when reading fails, and for a line of more than 16 MiB, which the library
    // refuses.
    bool next(std::string_view& line);
    // True if a whole line is there already, so that next does not wait for a pipe.
    bool hasLine() const { return m_buffer.find('\n', m_next) != std::string::npos; }
    int number() const { return m_number; }  // of the last line, from 1

    bool canRewind() const { return m_length >= 0; }  // false for pipes and standard input
    void rewind();

    long long length() const { return m_length; }  // in bytes; -1 where it is not known
    long long position() const { return m_position; }

    const std::string& name() const { return m_name; }
    [[noreturn]] void fail(int line, const std::string& what) const;  // throws DataError

private:
    bool fill();

    std::string m_name;
    bool m_isInput;
    std::string m_piece;  // the buffer of m_file
    std::ifstream m_file;
    long long m_length = -1;
    long long m_position = 0;  // bytes that were read
    std::string m_buffer;
    std::size_t m_next = 0;  // start of the unread part of m_buffer
    bool m_isAtEnd = false;
    int m_number = 0;
};

// The line without its line feed and the carriage return before it.
std::string_view withoutEnd(std::string_view line);

#endif
