// Written by CFile, so that the new file is on the medium before it takes the place of the old one.
#include "common/output_file.h"

#include <cerrno>
#include <fstream>
#include <random>

#include "common/data_error.h"
#include "common/files.h"
#include "common/text.h"

namespace fs = std::filesystem;

OutputFile::OutputFile(const std::string& path) : m_name(path), m_target(pathOf(path)) {
    std::error_code error;
    if (fs::is_directory(m_target, error))
        fail(EISDIR);
    const fs::file_status old = fs::status(m_target, error);
    const bool isThere = fs::exists(old);
    if (isThere && (!fs::is_regular_file(old) || fs::hard_link_count(m_target, error) > 1)) {
        m_new = m_folder.emplace().file();
    } else {
        if (isThere)
            m_target = fs::canonical(m_target, error);
        std::random_device random;
        m_new = m_target.parent_path() / format(".fieldscan-%08x%08x", random(), random());
    }
    errno = 0;
    if (!std::ofstream(m_new, std::ios::binary))
        fail(errno);
    if (isThere && !m_folder)
        fs::permissions(m_new, old.permissions(), error);
    errno = 0;
    if (m_file.Open(libraryPath(m_new), CFile::modeWrite) != 1) {
        fs::remove(m_new, error);
        fail(errno);
    }
}

OutputFile::~OutputFile() {
    m_file.Close();
    std::error_code ignored;
    if (!m_new.empty())
        fs::remove(m_new, ignored);
}

void OutputFile::write(const std::string& text) {
    errno = 0;
    if (m_file.Write(text.data(), static_cast<unsigned int>(text.size())) != 1)
        fail(errno);
}

void OutputFile::copyOver() const {
    std::ifstream from(m_new, std::ios::binary);
    errno = 0;
    std::ofstream to(m_target, std::ios::binary);
    if (from.peek() != std::ifstream::traits_type::eof())  // << fails when it copies nothing
        to << from.rdbuf();
    if (!to.flush())
        fail(errno);
}

void OutputFile::commit() {
    errno = 0;
    if (m_file.Flush() != 1 || m_file.Close() != 1)
        fail(errno);
    if (m_folder)
        return copyOver();
    std::error_code error;
    fs::rename(m_new, m_target, error);
    if (error)
        fail(error.value());
    m_new.clear();
}

void OutputFile::fail(int error) const {
    throw DataError(messageFor(m_name, 0, "cannot be written" + reasonFor(error)));
}
