#include <fieldscan/scan_result_files.h>

#include <string>
#include <utility>

#include "files/point_lines.h"
#include "platform/framework/number_text.h"
#include "platform/system.h"

using namespace fieldscan;

namespace {

void appendWithCode(LineWriter& lines, const CXYZ& point) {
    appendPoint(lines, point);
    if (!point.code.IsEmpty()) {
        lines.text() += ',';
        lines.append(point.code);
    }
    lines.endLine();
}

}  // namespace

int fieldscan::appendToFile(const CString& path, const std::function<void(LineWriter&)>& write) {
    return zeroIfOutOfMemory([&] {
        CFile file;
        if (ScanFileOpen(&file, path) != 1)
            return 0;
        LineWriter lines(file);
        write(lines);
        const bool written = lines.finish();
        return closeOnMedium(file) && written ? 1 : 0;
    });
}

bool fieldscan::closeOnMedium(CFile& file) {
    const bool flushed = file.Flush() == 1;
    return file.Close() == 1 && flushed;
}

int ScanFileOpen(CFile* file, CString path) {
    if (!file->Open(path, CFile::modeCreate | CFile::modeNoTruncate | CFile::modeWrite))
        return 0;
    return file->SeekToEnd();
}

int ScanFileClose(CFile* file) {
    closeOnMedium(*file);
    return 1;
}

int ScanFileAdd(CString path, CXYZ point, CString extra) {
    return appendToFile(path, [&](LineWriter& lines) {
        appendPoint(lines, point);
        lines.text() += ',';
        lines.append(point.code);
        lines.text() += ',';
        appendInt(lines.text(), point.attr[2]);
        lines.text() += ',';
        lines.append(extra);
        lines.endLine();
    });
}

int ScanFileAdd(CString path, CXYZ point) {
    return appendToFile(path, [&](LineWriter& lines) { appendWithCode(lines, point); });
}

int ScanFileAdd(CString path, CArray<CXYZ, CXYZ&>& points) {
    return appendToFile(path, [&](LineWriter& lines) {
        for (int i = 0; i < points.GetSize(); ++i)
            appendWithCode(lines, points[i]);
    });
}
