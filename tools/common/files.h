// Paths and folders, and the failures that concern them.
#ifndef TOOLS_COMMON_FILES_H
#define TOOLS_COMMON_FILES_H

#include <fieldscan/framework/string.h>

#include <filesystem>
#include <string>

// A path of the command line, which is UTF-8. (The constructor of std::filesystem::path takes 8-bit text in
// another encoding on Windows.)
std::filesystem::path pathOf(const std::string& word);

// A path as the library takes it, and as it gives it.
CString libraryPath(const std::filesystem::path& path);
std::filesystem::path systemPath(const CString& path);

// Throws DataError with "PATH: what" for the operator.
[[noreturn]] void fail(const std::filesystem::path& path, const std::string& what);

// Makes the folder and those above it; one that is there stays as it is. Throws DataError.
void makeFolder(const std::filesystem::path& path);

// The file that the command line names, or that of the sample data where it names none. The sample data are
// at the same place relative to the program in the build tree and where it is installed; a file below the
// working folder is named relative to that. Throws DataError when they are missing.
std::filesystem::path fileOrSample(const std::string& named, const char* sample);

#endif
