// The camera file: one value a line, then marks and distortion table (docs/file_formats.md).
#include <fieldscan/camera.h>
#include <fieldscan/point_files.h>

#include <algorithm>
#include <string>

#include "files/point_lines.h"
#include "files/value_lines.h"
#include "photogrammetry/mark_names.h"
#include "platform/framework/array_growth.h"
#include "platform/framework/line_text.h"
#include "platform/framework/number_text.h"
#include "platform/framework/out_of_memory.h"
#include "platform/framework/rewritten_file.h"
#include "platform/system.h"

using namespace fieldscan;

namespace {

constexpr int kParameters = 10;  // of CDist::para

bool hasFileName(const CString& path) {
    CString fileTitle;
    return EditFileName(path, fileTitle) == 1;
}

bool marksHaveNames(const CCamera& camera) {
    for (int i = 0; i < camera.marks.GetSize(); ++i)
        if (!fitsWord(markName(camera, i)))
            return false;
    return true;
}

bool readModel(CFile& file, CDist& dist) {
    int model = DIST_NONE;
    if (!readInteger(file, model))
        return false;
    dist.SetDistModel(static_cast<DIST_MODEL>(model));
    int count = 0;
    if (!readInteger(file, count))
        return false;
    double ignored = 0.0;
    for (int i = 0; i < count; ++i)
        if (!readReal(file, i < kParameters ? dist.para[i] : ignored))
            return false;
    return true;
}

bool readMarks(CFile& file, CCamera& camera) {
    int count = 0;
    if (!readInteger(file, count))
        return false;
    const unsigned int codePage = system::ansiCodePage();
    while (camera.marks.GetSize() < count) {
        CXYZ mark;
        if (!readNamedPoint(file, codePage, mark))
            return false;
        reserveDouble(camera.marks);
        reserveDouble(camera.markNames);
        camera.marks.Add(mark);
        camera.markNames.Add(mark.name);
    }
    return true;
}

// The table may be missing: Write writes none.
void readDistortionTable(CFile& file, CDist& dist) {
    int count = 0;
    if (!readInteger(file, count))
        return;
    std::string line;
    for (int i = 0; i < count && readLine(file, line); ++i) {
        Scanner scanner(line);
        double radius = 0.0, distortion = 0.0;
        scanner.scanDouble(radius);
        if (scanner.scanDouble(distortion) != Scanner::Result::matched)
            continue;
        dist.AddDist(radius, distortion);
    }
}

}  // namespace

int CCamera::Write(CString path) const {
    return zeroIfOutOfMemory([&] {
        RewrittenFile rewritten;
        CFile::Cause cause;
        if (!hasFileName(path) || !marksHaveNames(*this) || !rewritten.open(path, cause))
            return 0;
        LineWriter& lines = rewritten.lines();
        std::string& text = lines.text();
        appendReal(lines, focal, "\t\t\t// focul length [mm]");
        appendReal(lines, pp.x, "\t\t\t// x of principal point [m]");
        appendReal(lines, pp.y, "\t\t\t// y of principal point [m]");
        appendInteger(lines, dist.model, "\t\t\t\t\t// distortion model");
        // The application may have set any number; the line must say how many parameters follow.
        const int parameters = std::clamp(dist.GetNumPara(), 0, kParameters);
        appendInteger(lines, parameters, "\t\t\t\t\t// number of distortion parameters");
        for (int i = 0; i < parameters; ++i) {
            appendExponent(text, dist.para[i]);
            text += "\t\t// distortion parameter ";
            appendInt(text, i);
            lines.endLine();
        }
        appendReal(lines, res.x, "\t\t\t// x resolution [mm/pixel]");
        appendReal(lines, res.y, "\t\t\t// y resolution [mm/pixel]");
        appendInteger(lines, marks.GetSize(), "\t\t\t\t\t// number of fiducial marks");
        for (int i = 0; i < marks.GetSize(); ++i) {
            lines.append(markName(*this, i));
            text += '\t';
            appendFixed(text, marks[i].x, 6);
            text += '\t';
            appendFixed(text, marks[i].y, 6);
            text += "\t// coordinates of fiducial mark ";
            appendInt(text, i);
            text += " [mm]";
            lines.endLine();
        }
        return rewritten.finish() ? 1 : 0;
    });
}

int CCamera::Read(CString path) {
    return zeroIfOutOfMemory([&] {
        CFile file;
        if (!openText(file, path))
            return 0;
        Init();
        if (!hasFileName(path) || !readReal(file, focal) || !readReal(file, pp.x) || !readReal(file, pp.y) ||
            !readModel(file, dist) || !readReal(file, res.x) || !readReal(file, res.y) ||
            !readMarks(file, *this))
            return 0;
        innType = marks.IsEmpty() ? 0 : 1;
        readDistortionTable(file, dist);
        return file.HasReadFailed() ? 0 : 1;
    });
}
