#include <fieldscan/framework/file.h>

#include <algorithm>
#include <cstring>
#include <new>

#include "platform/framework/line_text.h"
#include "platform/system.h"

using namespace fieldscan;

namespace {

constexpr unsigned int kBufferSize = 64 * 1024;

}  // namespace

CFile::CFile()
    : m_handle(system::kNoFile),
      m_cause(causeNone),
      m_readFailed(false),
      m_buffer(nullptr),
      m_next(0),
      m_end(0) {}

CFile::~CFile() {
    Close();
    delete[] m_buffer;
}

int CFile::Open(const CString& path, unsigned int mode) {
    Close();
    m_readFailed = false;
    m_cause = causeOther;
    if (!isPath(path))
        return 0;
    try {
        m_handle = system::openFile(path, mode, m_cause);
    } catch (const std::bad_alloc&) {
        return 0;
    }
    if (m_handle == system::kNoFile)
        return 0;
    m_cause = causeNone;
    return 1;
}

bool CFile::IsOpen() const { return m_handle != system::kNoFile; }

// Refills the buffer, which must have been read to its end; false at the end of the file or when that fails.
// A medium that failed once is not asked again: what it gave next would take the place of what is missing.
bool CFile::fill() {
    if (!IsOpen() || m_readFailed)
        return false;
    if (!m_buffer)
        m_buffer = new (std::nothrow) char[kBufferSize];
    const long long got = m_buffer ? system::readFile(m_handle, m_buffer, kBufferSize) : -1;
    m_readFailed = got < 0;
    m_next = 0;
    m_end = got > 0 ? static_cast<unsigned int>(got) : 0;
    return m_end > 0;
}

// Takes the system's position back to where the caller believes it is.
bool CFile::dropBuffer() {
    const long long unread = m_end - m_next;
    m_next = m_end = 0;
    return unread == 0 || system::seekFile(m_handle, -unread, false) >= 0;
}

unsigned int CFile::Read(void* buffer, unsigned int count) {
    char* to = static_cast<char*>(buffer);
    unsigned int done = 0;
    while (done < count && (m_next < m_end || fill())) {
        const unsigned int part = std::min(count - done, m_end - m_next);
        std::memcpy(to + done, m_buffer + m_next, part);
        m_next += part;
        done += part;
    }
    return done;
}

int CFile::Write(const void* buffer, unsigned int count) {
    if (!IsOpen() || !dropBuffer())
        return 0;
    const char* from = static_cast<const char*>(buffer);
    while (count > 0) {
        const long long put = system::writeFile(m_handle, from, count);
        if (put <= 0)
            return 0;
        from += put;
        count -= static_cast<unsigned int>(put);
    }
    return 1;
}

int CFile::SeekToBegin() { return IsOpen() && dropBuffer() && system::rewindFile(m_handle); }

int CFile::SeekToEnd() { return IsOpen() && dropBuffer() && system::seekFile(m_handle, 0, true) >= 0; }

long long CFile::GetPosition() const {
    const long long position = IsOpen() ? system::seekFile(m_handle, 0, false) : -1;
    return position < 0 ? -1 : position - (m_end - m_next);
}

long long CFile::GetLength() const { return IsOpen() ? system::fileLength(m_handle) : -1; }

int CFile::Flush() { return IsOpen() && system::flushFile(m_handle); }

int CFile::Close() {
    if (!IsOpen())
        return 0;
    const bool closed = system::closeFile(m_handle);
    m_handle = system::kNoFile;
    m_next = m_end = 0;
    return closed;
}

bool fieldscan::isPath(const CString& path) {
    return !path.IsEmpty() && path.Find(static_cast<unsigned short>(0)) < 0;
}

long long& fieldscan::handleOf(CFile& file) { return file.m_handle; }

bool fieldscan::readLine(CFile& file, std::string& split, std::string_view& line) {
    split.clear();
    while (file.m_next < file.m_end || file.fill()) {
        const char* from = file.m_buffer + file.m_next;
        const std::size_t unread = file.m_end - file.m_next;
        const char* feed = static_cast<const char*>(std::memchr(from, '\n', unread));
        const std::size_t part = feed ? static_cast<std::size_t>(feed - from) + 1 : unread;
        file.m_next += static_cast<unsigned int>(part);
        if (feed && split.empty()) {
            line = std::string_view(from, part);
            return true;
        }
        file.m_readFailed = split.size() + part > kLongestLine;
        if (file.m_readFailed)
            break;
        split.append(from, part);
        if (feed)
            break;
    }
    if (file.m_readFailed) {  // what is there of the line is not the line
        split.clear();
        file.m_next = file.m_end;
    }
    line = split;
    return !split.empty();
}
