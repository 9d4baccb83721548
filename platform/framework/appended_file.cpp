// Appending lines: the end of the file is checked under the writer's lock, the lines are flushed to the
// medium, and after a failure the file is cut to its old length or to its last whole line.
#include "platform/framework/appended_file.h"

#include <algorithm>
#include <string>

#include "platform/framework/file_access.h"
#include "platform/framework/line_text.h"

namespace fieldscan {

namespace {

constexpr std::size_t kTailSize = 512;  // what is read first: more than most lines have

// Reads what follows the last line feed of the file: the line that was cut off, or nothing. `start` is its
// position. False when the file cannot be read. Of a rest that is longer than a line may be, only the end is
// read.
bool readRest(system::FileHandle file, long long length, std::string& rest, long long& start) {
    for (std::size_t size = kTailSize;; size *= 8) {
        start = std::max(0LL, length - static_cast<long long>(size));
        rest.resize(static_cast<std::size_t>(length - start));
        for (std::size_t done = 0; done < rest.size();) {
            const long long got = system::readFileAt(file, &rest[done], rest.size() - done,
                                                     start + static_cast<long long>(done));
            if (got <= 0)
                return false;
            done += static_cast<std::size_t>(got);
        }
        const std::size_t feed = rest.rfind('\n');
        if (feed != std::string::npos) {
            rest.erase(0, feed + 1);
            start += static_cast<long long>(feed) + 1;
            return true;
        }
        if (start == 0 || rest.size() > kLongestLine)
            return true;
    }
}

// True if the first line is the header, by the rule of ReadHeader: after a byte order mark, trimmed.
bool beginsWith(system::FileHandle file, std::string_view header) {
    if (header.empty())
        return true;
    std::string bytes(kTailSize, '\0');
    const long long got = system::readFileAt(file, bytes.data(), bytes.size(), 0);
    bytes.resize(static_cast<std::size_t>(std::max(0LL, got)));
    const std::string_view line = std::string_view(bytes).substr(0, bytes.find('\n'));
    return trimmed(withoutByteOrderMark(line)) == trimmed(header);
}

// True for zeros only: after a crash the file may have the length of a line that never got to the medium.
bool isUnwritten(std::string_view rest) { return rest.find_first_not_of('\0') == std::string_view::npos; }

}  // namespace

// Decides what is written before the lines, and removes a line that was cut off.
bool AppendedFile::repairEnd(const LineFormat& format, bool readable) {
    std::string& text = m_lines.text();
    if (m_length == 0) {
        text = format.header;
    } else if (m_length > 0 && m_locked && readable && format.fields > 0) {
        std::string bytes;
        long long start = 0;
        if (!readRest(m_file, m_length, bytes, start))
            return false;
        const std::string_view rest = start == 0 ? withoutByteOrderMark(bytes) : bytes;
        if (start == 0 && rest.size() < format.header.size() &&
            format.header.substr(0, rest.size()) == rest) {
            text = format.header.substr(rest.size());
        } else if (!rest.empty()) {
            const bool isForeign = rest.size() > kLongestLine || !beginsWith(m_file, format.header);
            if (!isUnwritten(rest) && (isForeign || hasFields(rest, format.fields)))
                text = "\n";
            else if (system::cutFile(m_file, start))
                m_length = start;
            else
                return false;
            if (m_length == 0)
                text = format.header;
        }
    }
    m_start = m_length + static_cast<long long>(text.size());
    return m_length >= 0;
}

bool AppendedFile::openLocked(const CString& path, unsigned int mode, CFile::Cause& cause) {
    m_file = system::openFile(path, mode | system::kAppending, cause, &m_locked);
    return isOpen();
}

bool AppendedFile::open(const CString& path, Existing existing, const LineFormat& format) {
    CFile::Cause cause = CFile::causeNone;
    if (!isPath(path))
        return false;
    m_path = path;
    bool readable = openLocked(path, CFile::modeReadWrite, cause);
    if (!readable && cause == CFile::causeAccessDenied) {
        openLocked(path, CFile::modeWrite, cause);
    } else if (!readable && cause == CFile::causeNotFound && existing != Existing::needed) {
        readable = m_made =
            openLocked(path, CFile::modeCreate | CFile::modeNoTruncate | CFile::modeReadWrite, cause);
    }
    if (!isOpen())
        return false;
    m_lines.setFile(m_file);
    m_length = system::seekFile(m_file, 0, true);
    m_wasEmpty = m_length == 0;
    if (existing == Existing::emptied && m_length > 0) {
        if (!system::cutFile(m_file, 0))
            return false;
        m_length = 0;
    }
    return repairEnd(format, readable);
}

// Cuts the file to what it held, and to the new lines that are whole where those stay.
void AppendedFile::takeBack(bool wholeLinesStay) {
    if (!m_locked)
        return;
    long long keep = m_length;
    const long long end = system::fileLength(m_file);
    if (wholeLinesStay && end > m_start) {
        std::string rest;
        long long start = 0;
        if (zeroIfOutOfMemory([&] { return readRest(m_file, end, rest, start) ? 1 : 0; }))
            keep = std::max(keep, start);
        if (keep <= m_start)
            keep = m_length;
    }
    if (end > keep && keep >= 0)
        system::cutFile(m_file, keep);
    if (keep > m_length)
        system::flushFile(m_file);
    else if (m_made && keep == 0)  // while the lock keeps other writers off
        zeroIfOutOfMemory([&] { return system::removeFile(m_path), 1; });
}

bool AppendedFile::finish(bool complete) {
    if (!isOpen())
        return false;
    const bool written = complete && m_lines.finish();
    const bool kept = written && system::flushFile(m_file);
    if (!kept)
        takeBack(complete && !written);
    else if (m_wasEmpty)
        zeroIfOutOfMemory([&] { return system::flushFolderOf(m_path), 1; });
    system::closeFile(m_file);  // after the flush nothing can be lost: its result does not count
    m_file = system::kNoFile;
    return kept;
}

}  // namespace fieldscan
