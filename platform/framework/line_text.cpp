#include "platform/framework/line_text.h"

#include <algorithm>

#include "platform/system.h"

namespace fieldscan {

namespace {

constexpr std::size_t kPieceSize = 64 * 1024;
constexpr std::string_view kSpace = " \t\n\v\f\r";

}  // namespace

bool openForAppending(CFile& file, const CString& path) {
    if (!file.Open(path, CFile::modeCreate | CFile::modeNoTruncate | CFile::modeWrite))
        return false;
    if (file.SeekToEnd())
        return true;
    file.Close();
    return false;
}

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(kSpace);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kSpace) - first + 1);
}

CString wideTrimmed(unsigned int codePage, std::string_view text) {
    text = trimmed(text);
    CString wide;
    system::appendWide(codePage, text.data(), text.size(), wide);
    wide.Trim();  // the ideographic blank
    return wide;
}

int splitAtCommas(std::string_view line, std::string_view* fields, int most) {
    int count = 0;
    for (;;) {
        const std::size_t comma = line.find(',');
        fields[count++] = line.substr(0, comma);
        if (comma == std::string_view::npos || count == most)
            return count;
        line.remove_prefix(comma + 1);
    }
}

LineWriter::LineWriter(CFile& file) : m_file(file), m_codePage(system::ansiCodePage()), m_good(true) {}

void LineWriter::append(const CString& wide) {
    system::appendAnsi(m_codePage, wide.GetString(), wide.GetLength(), m_text);
}

void LineWriter::endLine() {
    m_text += '\n';
    if (m_text.size() >= kPieceSize)
        put();
}

void LineWriter::put() {
    // In parts that Write can count.
    constexpr std::size_t kMost = std::size_t{1} << 30;
    for (std::size_t at = 0; m_good && at < m_text.size(); at += kMost)
        m_good = m_file.Write(m_text.data() + at,
                              static_cast<unsigned int>(std::min(kMost, m_text.size() - at))) == 1;
    m_text.clear();
}

bool LineWriter::finish() {
    put();
    return m_good;
}

}  // namespace fieldscan
