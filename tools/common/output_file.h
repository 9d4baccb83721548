// A file that is written piece by piece and has its place only when all of it is written.
#ifndef TOOLS_COMMON_OUTPUT_FILE_H
#define TOOLS_COMMON_OUTPUT_FILE_H

#include <fieldscan/framework/file.h>

#include <filesystem>
#include <optional>
#include <string>

#include "common/temporary_folder.h"

// Until commit the old file stays as it is, and without commit for good. The new one is made beside it with
// its rights and renamed. A device, and a file with several names, is overwritten by commit instead; a
// symbolic link stays and its target is replaced. All throw DataError, "PATH: cannot be written: why".
class OutputFile {
public:
    explicit OutputFile(const std::string& path);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    void write(const std::string& text);
    void commit();

private:
    [[noreturn]] void fail(int error) const;
    void copyOver() const;

    std::string m_name;
    std::filesystem::path m_target, m_new;
    std::optional<TemporaryFolder> m_folder;  // where m_new is when it is to be copied
    CFile m_file;
};

#endif
