// Lines collected to pieces of 64 KiB; each is one write.
#include "platform/framework/line_writer.h"

#include "platform/framework/file_access.h"

namespace fieldscan {

namespace {

constexpr std::size_t kPieceSize = 64 * 1024;

}  // namespace

LineWriter::LineWriter() : m_codePage(system::ansiCodePage()) {
    m_text.reserve(kPieceSize + 4096);  // the line that fills a piece goes beyond it
}

void LineWriter::append(const CString& wide) {
    system::appendAnsi(m_codePage, wide.GetString(), wide.GetLength(), m_text);
}

void LineWriter::endLine() {
    m_text += '\n';
    if (m_text.size() >= kPieceSize)
        writePiece();
}

void LineWriter::writePiece() {
    m_good = m_good && writeAll(m_file, m_text.data(), m_text.size());
    m_text.clear();
}

bool LineWriter::finish() {
    writePiece();
    return m_good;
}

}  // namespace fieldscan
