#include "platform/framework/line_text.h"

#include <algorithm>

#include "platform/system.h"

namespace fieldscan {

namespace {

constexpr std::size_t kPieceSize = 64 * 1024;

bool isSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

}  // namespace

bool openForAppending(CFile& file, const CString& path) {
    if (!file.Open(path, CFile::modeCreate | CFile::modeNoTruncate | CFile::modeWrite))
        return false;
    if (file.SeekToEnd())
        return true;
    file.Close();
    return false;
}

// Leaves the position at the end.
bool seekBehindLines(CFile& file, bool& cut) {
    char last = '\n';
    if (system::seekFile(file.m_handle, -1, true) < 0)  // nothing in it
        return file.SeekToEnd() == 1;
    if (system::readFile(file.m_handle, &last, 1) != 1)
        return false;
    cut = last != '\n';
    return true;
}

bool openBehindLines(CFile& file, const CString& path, unsigned int mode) {
    bool cut = false;
    const unsigned int reading = (mode ^ CFile::modeWrite) | CFile::modeReadWrite;
    const bool readable = file.Open(path, reading) == 1;
    // A file that may be written to and not read.
    if (!readable && (file.GetOpenFailure() != CFile::causeAccessDenied || !file.Open(path, mode)))
        return false;
    if ((readable ? seekBehindLines(file, cut) : file.SeekToEnd() == 1) && (!cut || file.Write("\n", 1)))
        return true;
    file.Close();
    return false;
}

bool readLine(CFile& file, std::string& line) {
    std::string_view view;
    const bool found = readLine(file, line, view);
    if (view.data() != line.data())
        line = view;
    return found;
}

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && isSpace(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isSpace(text.back()))
        text.remove_suffix(1);
    return text;
}

void setTrimmed(CString& wide, unsigned int codePage, std::string_view text) {
    text = trimmed(text);
    wide.Empty();
    system::appendWide(codePage, text.data(), text.size(), wide);
    if (static_cast<std::size_t>(wide.GetLength()) < text.size())
        wide.Trim();  // the ideographic blank, which has more than one byte in every page that has it
}

CString wideTrimmed(unsigned int codePage, std::string_view text) {
    CString wide;
    setTrimmed(wide, codePage, text);
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
