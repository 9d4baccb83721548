// What CFile and the library's writers of files share: the check of a path, and complete writes.
#ifndef FIELDSCAN_PLATFORM_FRAMEWORK_FILE_ACCESS_H
#define FIELDSCAN_PLATFORM_FRAMEWORK_FILE_ACCESS_H

#include <fieldscan/framework/string.h>

#include <cstddef>

#include "platform/system.h"

namespace fieldscan {

// A device without end, or a damaged file, must not take all memory.
constexpr unsigned int kLongestLine = 16 * 1024 * 1024;  // bytes, its line feed included

// True if `path` can name a file: it is not empty and has no zero unit inside.
inline bool isPath(const CString& path) {
    return !path.IsEmpty() && path.Find(static_cast<unsigned short>(0)) < 0;
}

// Writes all bytes, in as many calls as the system needs; false when one fails.
inline bool writeAll(system::FileHandle file, const void* bytes, std::size_t count) {
    const char* from = static_cast<const char*>(bytes);
    while (count > 0) {
        const long long written = system::writeFile(file, from, count);
        if (written <= 0)
            return false;
        from += written;
        count -= static_cast<std::size_t>(written);
    }
    return true;
}

}  // namespace fieldscan

#endif
