// The rules for lines first, then the library's reader, which takes what is no number for 0.
#include "formats/checked_files.h"

#include "formats/cells.h"
#include "formats/line_rules.h"

void readChecked(const TextFile& file, Format format, Contents& contents) {
    const std::vector<Fault> faults = lineFaults(file, format);
    if (!faults.empty())
        file.fail(faults[0].line, faults[0].what);
    if (!readContents(file, format, contents))
        file.fail(0, "cannot be read");
}

Format readCheckedPoints(const TextFile& file, CArray<CXYZ, CXYZ&>& points) {
    const Format format = formatOf(file);
    if (!hasPointLines(format))
        file.fail(1, kExpectedPoints + foundInstead(file.lines()));
    Contents contents;
    readChecked(file, format, contents);
    points.Swap(contents.points);
    return format;
}
