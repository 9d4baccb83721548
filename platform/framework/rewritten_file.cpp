#include "platform/framework/rewritten_file.h"

namespace fieldscan {

bool RewrittenFile::open(const CString& path, CFile::Cause& cause) {
    cause = CFile::causeOther;
    if (!isPath(path))
        return false;
    m_replacement = system::beginReplacement(path, cause);
    if (m_replacement)
        handleOf(m_file) = m_replacement->file();
    return m_replacement != nullptr;
}

bool RewrittenFile::finish(bool complete) {
    if (!m_replacement)
        return false;
    const bool written = complete && m_lines.finish();
    handleOf(m_file) = system::kNoFile;  // closed by its owner
    const bool done = written && m_replacement->commit();
    m_replacement.reset();
    return done;
}

}  // namespace fieldscan
