#include "platform/framework/appended_file.h"

#include <algorithm>
#include <string>

#include "platform/system.h"

namespace fieldscan {

namespace {

constexpr std::size_t kTailSize = 512;  // what is looked at first: longer than most lines

// What stands after the last line feed of the file, from `start` on: nothing, unless a line was cut off.
// False when the file cannot be read. What is longer than a line may be begins somewhere in its middle.
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

// As ReadHeader finds it: after a byte order mark, and with any blanks at its ends.
bool beginsWith(system::FileHandle file, std::string_view header) {
    if (header.empty())
        return true;
    std::string bytes(kTailSize, '\0');
    const long long got = system::readFileAt(file, bytes.data(), bytes.size(), 0);
    bytes.resize(static_cast<std::size_t>(std::max(0LL, got)));
    const std::string_view line = std::string_view(bytes).substr(0, bytes.find('\n'));
    return trimmed(withoutByteOrderMark(line)) == trimmed(header);
}

// Of a line that never got to the medium its room may be there.
bool isEmpty(std::string_view rest) { return rest.find_first_not_of('\0') == std::string_view::npos; }

}  // namespace

// Finds out what has to be written before the lines, and cuts off what does not belong to the file.
bool AppendedFile::look(const LineKind& kind, bool readable) {
    std::string& text = m_lines.text();
    if (m_length == 0) {
        text = kind.header;
    } else if (m_length > 0 && m_alone && readable && kind.fields > 0) {
        const system::FileHandle file = handleOf(m_file);
        std::string bytes;
        long long start = 0;
        if (!readRest(file, m_length, bytes, start))
            return false;
        const std::string_view rest = start == 0 ? withoutByteOrderMark(bytes) : bytes;
        if (start == 0 && rest.size() < kind.header.size() && kind.header.substr(0, rest.size()) == rest) {
            text = kind.header.substr(rest.size());
        } else if (!rest.empty()) {
            const bool nothing = isEmpty(rest);
            const bool others = rest.size() > kLongestLine || !beginsWith(file, kind.header);
            if (!nothing && (others || hasFields(rest, kind.fields)))
                text = "\n";
            else if (system::cutFile(file, start))
                m_length = start;
            else
                return false;
            if (m_length == 0)
                text = kind.header;
        }
    }
    m_start = m_length + static_cast<long long>(text.size());
    return m_length >= 0;
}

bool AppendedFile::openAlone(const CString& path, unsigned int mode, CFile::Cause& cause) {
    handleOf(m_file) = system::openFile(path, mode | system::kAppending, cause, &m_alone);
    return m_file.IsOpen();
}

bool AppendedFile::open(const CString& path, Existing existing, const LineKind& kind) {
    CFile::Cause cause = CFile::causeNone;
    if (!isPath(path))
        return false;
    m_path = path;
    bool readable = openAlone(path, CFile::modeReadWrite, cause);
    if (!readable && cause == CFile::causeAccessDenied) {
        openAlone(path, CFile::modeWrite, cause);
    } else if (!readable && cause == CFile::causeNotFound && existing != Existing::needed) {
        readable = m_made =
            openAlone(path, CFile::modeCreate | CFile::modeNoTruncate | CFile::modeReadWrite, cause);
    }
    if (!m_file.IsOpen())
        return false;
    m_length = system::seekFile(handleOf(m_file), 0, true);
    m_wasEmpty = m_length == 0;
    if (existing == Existing::emptied && m_length > 0) {
        if (!system::cutFile(handleOf(m_file), 0))
            return false;
        m_length = 0;
    }
    return look(kind, readable);
}

// Leaves what the file held, and of lines whose writing failed those that are whole.
void AppendedFile::takeBack(bool wholeLinesStay) {
    if (!m_alone)
        return;
    const system::FileHandle file = handleOf(m_file);
    long long keep = m_length;
    const long long end = m_file.GetLength();
    if (wholeLinesStay && end > m_start) {
        std::string rest;
        long long start = 0;
        if (zeroIfOutOfMemory([&] { return readRest(file, end, rest, start) ? 1 : 0; }))
            keep = std::max(keep, start);
        if (keep <= m_start)
            keep = m_length;
    }
    if (end > keep && keep >= 0)
        system::cutFile(file, keep);
    if (keep > m_length)
        m_file.Flush();
    else if (m_made && keep == 0)
        zeroIfOutOfMemory([&] { return system::removeFile(m_path), 1; });  // before anybody else has its lock
}

bool AppendedFile::finish(bool complete) {
    if (!m_file.IsOpen())
        return false;
    const bool written = complete && m_lines.finish();
    const bool kept = written && m_file.Flush() == 1;
    if (!kept)
        takeBack(complete && !written);
    else if (m_wasEmpty)
        zeroIfOutOfMemory([&] { return system::flushFolderOf(m_path), 1; });
    m_file.Close();  // what was flushed it cannot lose
    return kept;
}

}  // namespace fieldscan
