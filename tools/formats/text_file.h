// A text file of the command line: its lines for messages and rules, its path for the library.
#ifndef TOOLS_FORMATS_TEXT_FILE_H
#define TOOLS_FORMATS_TEXT_FILE_H

#include <fieldscan/framework/string.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "common/data_error.h"
#include "common/temporary_folder.h"
#include "formats/fields.h"

class TextFile {
public:
    // "-" is standard input. Throws DataError, and WrongUse for a second "-".
    explicit TextFile(const std::string& argument);

    const std::string& name() const { return m_name; }
    const std::vector<std::string>& lines() const { return m_lines; }  // without their ends
    const std::string& line(std::size_t i) const;                      // empty past the last one
    CString path() const;

    // "NAME:LINE: what"; line 0 is the file as a whole, "NAME: what".
    std::string message(int line, const std::string& what) const;
    [[noreturn]] void fail(int line, const std::string& what) const;  // throws it as a DataError

private:
    std::string m_name;
    std::filesystem::path m_path;
    std::optional<TemporaryFolder> m_folder;
    std::vector<std::string> m_lines;
};

#endif
