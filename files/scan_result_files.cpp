// Plain scan result files: points appended as they are measured, and the building blocks for other writers.
#include <fieldscan/scan_result_files.h>

#include "files/point_lines.h"
#include "platform/framework/number_text.h"
#include "platform/system.h"

using namespace fieldscan;

namespace {

// "name,x,y,z,code", or "name,x,y,z" when the code is empty.
void appendWithCode(LineWriter& lines, const CXYZ& point) {
    appendPoint(lines, point);
    if (!point.code.IsEmpty()) {
        lines.text() += ',';
        lines.append(point.code);
    }
    lines.endLine();
}

bool comesBack(const CXYZ& point) { return fitsField(point.name) && fitsLine(point.code); }

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

int ScanFileOpen(CFile* file, CString path) {
    constexpr unsigned int kMode = CFile::modeCreate | CFile::modeNoTruncate | CFile::modeWrite;
    const int opened = zeroIfOutOfMemory([&] {
        if (!file->Open(path, kMode | system::kAppending))
            return 0;
        if (file->GetLength() == 0)
            system::flushFolderOf(path);  // a new file's name must be on the medium too
        return file->SeekToEnd();
    });
    if (!opened)
        file->Close();  // else it keeps other writers off
    return opened;
}

int ScanFileClose(CFile* file) {
    (void)file->Flush();  // its result does not count
    file->Close();
    return 1;
}

int ScanFileAdd(CString path, CXYZ point, CString extra) {
    if (!fitsField(point.name) || !fitsField(point.code) || !fitsLine(extra))
        return 0;
    return appendToFile(path, Existing::kept, kPointLines, [&](LineWriter& lines) {
        appendScanPoint(lines, point, extra);
        lines.endLine();
    });
}

int ScanFileAdd(CString path, CXYZ point) {
    if (!comesBack(point))
        return 0;
    return appendToFile(path, Existing::kept, kPointLines,
                        [&](LineWriter& lines) { appendWithCode(lines, point); });
}

int ScanFileAdd(CString path, CArray<CXYZ, CXYZ&>& points) {
    for (int i = 0; i < points.GetSize(); ++i)
        if (!comesBack(points[i]))
            return 0;
    return appendToFile(path, Existing::kept, kPointLines, [&](LineWriter& lines) {
        for (int i = 0; i < points.GetSize(); ++i)
            appendWithCode(lines, points[i]);
    });
}
