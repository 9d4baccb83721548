#include "platform/framework/rewritten_file.h"

#include "platform/framework/out_of_memory.h"
#include "platform/system.h"

namespace fieldscan {

bool RewrittenFile::open(const CString& path) {
    m_path = path;
    m_new = path + u".new~";
    m_made = !system::isFile(path);
    // Whoever may not write to the old file may not replace it either.
    if (!m_file.Open(path, CFile::modeCreate | CFile::modeNoTruncate | CFile::modeWrite))
        return false;
    if (system::isReplaceable(path)) {
        m_beside = m_file.Open(m_new, CFile::modeCreate | CFile::modeWrite) == 1;
        // A medium without room for a new file has none for the old one's new contents either.
        if (m_beside || (!m_made && m_file.GetOpenFailure() != CFile::causeAccessDenied))
            return m_beside;
    }
    return m_file.Open(path, CFile::modeCreate | CFile::modeWrite) == 1;
}

bool RewrittenFile::finish(bool written) {
    if (!m_file.IsOpen())
        return false;
    const bool flushed = written && m_file.Flush() == 1;
    const bool complete = m_file.Close() == 1 && flushed;
    const auto inPlace = [&] {
        return complete && (!m_beside || system::replaceFile(m_new, m_path)) ? 1 : 0;
    };
    if (zeroIfOutOfMemory(inPlace))
        return true;
    zeroIfOutOfMemory([&] {
        if (m_beside)
            system::removeFile(m_new);
        if (m_made && system::isReplaceable(m_path))
            system::removeFile(m_path);
        return 1;
    });
    return false;
}

}  // namespace fieldscan
