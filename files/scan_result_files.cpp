#include <fieldscan/scan_result_files.h>

#include "files/point_lines.h"
#include "platform/framework/number_text.h"

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

void fieldscan::appendScanPoint(LineWriter& lines, const CXYZ& point, const CString& text) {
    appendPoint(lines, point);
    lines.text() += ',';
    lines.append(point.code);
    lines.text() += ',';
    appendInt(lines.text(), point.attr[2]);
    lines.text() += ',';
    lines.append(text);
}

bool fieldscan::closeOnMedium(CFile& file) {
    const bool flushed = file.Flush() == 1;
    return file.Close() == 1 && flushed;
}

int ScanFileOpen(CFile* file, CString path) { return openForAppending(*file, path); }

int ScanFileClose(CFile* file) {
    closeOnMedium(*file);
    return 1;
}

int ScanFileAdd(CString path, CXYZ point, CString extra) {
    return appendToFile(path, kMadeIfMissing, "", [&](LineWriter& lines) {
        appendScanPoint(lines, point, extra);
        lines.endLine();
    });
}

int ScanFileAdd(CString path, CXYZ point) {
    return appendToFile(path, kMadeIfMissing, "", [&](LineWriter& lines) { appendWithCode(lines, point); });
}

int ScanFileAdd(CString path, CArray<CXYZ, CXYZ&>& points) {
    return appendToFile(path, kMadeIfMissing, "", [&](LineWriter& lines) {
        for (int i = 0; i < points.GetSize(); ++i)
            appendWithCode(lines, points[i]);
    });
}
