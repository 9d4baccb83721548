// A new folder of a random name; one that is there already is not taken.
#include "common/temporary_folder.h"

#include <random>

#include "common/data_error.h"
#include "common/text.h"

namespace fs = std::filesystem;

TemporaryFolder::TemporaryFolder() {
    std::random_device random;
    std::error_code error;
    const fs::path place = fs::temp_directory_path(error);
    for (int attempt = 0; attempt < 100 && m_path.empty(); ++attempt) {
        const fs::path path = place / format("fieldscan-%08x%08x", random(), random());
        if (fs::create_directory(path, error))  // false where it exists
            m_path = path;
    }
    if (m_path.empty())
        throw DataError(place.u8string() + ": no temporary folder can be made");
    fs::permissions(m_path, fs::perms::owner_all, error);
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    fs::remove_all(m_path, ignored);
}
