// A folder for what goes through a standard stream, since the library reads and writes by path only.
#ifndef TOOLS_COMMON_TEMPORARY_FOLDER_H
#define TOOLS_COMMON_TEMPORARY_FOLDER_H

#include <filesystem>

// Only the user may look into it; it goes with the object. The constructor throws DataError.
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

#endif
