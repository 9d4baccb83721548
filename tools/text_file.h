// A text file of the command line: its lines for messages and rules, its path for the library.
#ifndef TOOLS_TEXT_FILE_H
#define TOOLS_TEXT_FILE_H

#include <fieldscan/framework/string.h>

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

// The data are wrong, or a file cannot be read or written; the text is for the operator.
struct DataError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// The library reads and writes by path alone: what goes through a standard stream stays in here meanwhile.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    std::filesystem::path file() const { return m_path / "data"; }

private:
    std::filesystem::path m_path;
};

class TextFile {
public:
    // "-" is standard input. Throws DataError, and CLI::ValidationError where it is asked for again.
    explicit TextFile(const std::string& argument);

    const std::string& name() const { return m_name; }
    const std::vector<std::string>& lines() const { return m_lines; }  // without their ends
    const std::string& line(std::size_t i) const;                      // the empty one beyond the last
    CString path() const;

    // "name:line: what", line 0 for the file as a whole
    [[noreturn]] void fail(int line, const std::string& what) const;
    std::string message(int line, const std::string& what) const;

private:
    std::string m_name;
    std::filesystem::path m_path;
    std::optional<TemporaryFolder> m_folder;
    std::vector<std::string> m_lines;
};

// Parts of a line, without white space at their ends: those between commas, and those between white space.
std::vector<std::string_view> fieldsOf(std::string_view line);
std::vector<std::string_view> wordsOf(std::string_view line);
std::string_view trimmed(std::string_view text);

// The whole of the text as a number; none when it is something else or not finite.
std::optional<double> numberOf(std::string_view text);
std::optional<int> integerOf(std::string_view text);

#endif
