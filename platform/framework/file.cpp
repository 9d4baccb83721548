// CFile: reads through a buffer, writes directly.
#include <fieldscan/framework/file.h>

#include <algorithm>
#include <cstring>
#include <new>

#include "platform/framework/file_access.h"
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
      m_room(0),
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

// Reads more bytes after the unread ones; the buffer grows when they fill it. False at the end of the file
// and when that fails. A medium that failed once is not read again: the next bytes would take the place of
// the missing ones.
bool CFile::fill() {
    if (!IsOpen() || m_readFailed)
        return false;
    const unsigned int unread = m_end - m_next;
    if (unread == m_room) {
        const unsigned int room = std::min(std::max(kBufferSize, 2 * m_room), kLongestLine + 1);
        char* const buffer = room > m_room ? new (std::nothrow) char[room] : nullptr;
        m_readFailed = !buffer;
        if (m_readFailed)
            return false;
        std::copy(m_buffer + m_next, m_buffer + m_end, buffer);
        delete[] m_buffer;
        m_buffer = buffer;
        m_room = room;
    } else {
        std::memmove(m_buffer, m_buffer + m_next, unread);
    }
    m_next = 0;
    m_end = unread;
    const long long got = system::readFile(m_handle, m_buffer + unread, m_room - unread);
    m_readFailed = got < 0;
    m_end += got > 0 ? static_cast<unsigned int>(got) : 0;
    return got > 0;
}

// Moves the system's position back to that of the caller.
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

int CFile::ReadLine(const char*& line, unsigned int& length) {
    const char* feed = nullptr;
    unsigned int searched = 0;
    do {
        const unsigned int unread = m_end - m_next;
        if (unread > searched)
            feed =
                static_cast<const char*>(std::memchr(m_buffer + m_next + searched, '\n', unread - searched));
        searched = unread;
    } while (!feed && fill());
    line = m_buffer + m_next;
    length = feed ? static_cast<unsigned int>(feed - line) + 1 : m_end - m_next;
    m_readFailed = m_readFailed || length > kLongestLine;
    if (m_readFailed) {  // a part of a line must not be taken for the line
        m_next = m_end;
        length = 0;
    }
    m_next += length;
    return length > 0;
}

int CFile::Write(const void* buffer, unsigned int count) {
    return IsOpen() && dropBuffer() && writeAll(m_handle, buffer, count);
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
