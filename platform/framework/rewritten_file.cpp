// Lines that replace a file, through system::Replacement.
#include "platform/framework/rewritten_file.h"

#include "platform/framework/file_access.h"

namespace fieldscan {

bool RewrittenFile::open(const CString& path, CFile::Cause& cause) {
    cause = CFile::causeOther;
    if (!isPath(path))
        return false;
    m_replacement = system::beginReplacement(path, cause);
    if (m_replacement)
        m_lines.setFile(m_replacement->file());
    return m_replacement != nullptr;
}

bool RewrittenFile::finish() {
    const bool done = m_replacement && m_lines.finish() && m_replacement->commit();
    m_replacement.reset();
    return done;
}

}  // namespace fieldscan
