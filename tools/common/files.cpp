// Paths are converted by std::filesystem, UTF-16 to what the system has.
#include "common/files.h"

#include <fieldscan/storage_paths.h>

#include "common/data_error.h"

namespace fs = std::filesystem;

fs::path pathOf(const std::string& word) { return fs::u8path(word); }

CString libraryPath(const fs::path& path) { return CString(path.u16string().c_str()); }

fs::path systemPath(const CString& path) {
    const unsigned short* units = path.GetString();
    return std::u16string(units, units + path.GetLength());
}

void fail(const fs::path& path, const std::string& what) { throw DataError(path.u8string() + ": " + what); }

void makeFolder(const fs::path& path) {
    std::error_code error;
    fs::create_directories(path, error);
    if (!fs::is_directory(path, error))
        fail(path, "the folder for the results cannot be made");
}

fs::path fileOrSample(const std::string& named, const char* sample) {
    if (!named.empty())
        return pathOf(named);
    const fs::path folder = systemPath(CGetAppPath().GetExePath()).parent_path() / FIELDSCAN_WAY_TO_SAMPLES;
    std::error_code error;
    const fs::path file = fs::canonical(folder / sample, error);
    if (error)
        fail(folder / sample, "the sample data are missing; name the files to read");
    const fs::path below = file.lexically_relative(fs::current_path());
    return below.empty() || *below.begin() == ".." ? file : below;
}
