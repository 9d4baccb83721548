// show: which format a file has, and what it holds as the library reads it.
#include <cstdio>
#include <set>
#include <string>

#include "common/angles.h"
#include "common/text.h"
#include "formats/cells.h"
#include "formats/checked_files.h"
#include "formats/line_rules.h"
#include "options/file_options.h"
#include "scan/area_faults.h"
#include "subcommands.h"

namespace {

void put(const char* key, const std::string& value) { std::printf("%s: %s\n", key, value.c_str()); }
void put(const char* key, int value) { put(key, std::to_string(value)); }
void put(const char* key, double value, int decimals) { put(key, format("%.*f", decimals, value)); }
void put(const char* key, double a, double b, int decimals) {
    put(key, format("%.*f %.*f", decimals, a, decimals, b));
}
void put(const char* key, const CWPK& direction) {
    put(key, direction.kappa * kDegreesPerRadian, direction.omega * kDegreesPerRadian, 6);
}

void showBox(const CRange& box) {
    put("x", box.lower.x, box.upper.x, 6);
    put("y", box.lower.y, box.upper.y, 6);
    put("z", box.lower.z, box.upper.z, 6);
}

void showPoints(const CArray<CXYZ, CXYZ&>& points) {
    const int count = points.GetSize();
    put("points", count);
    CRange box;
    std::set<CString> names, codes;
    for (int i = 0; i < count; ++i) {
        (void)box.AddPoint(points[i]);  // a point that is no number is in no box
        names.insert(points[i].name);
        if (!points[i].code.IsEmpty())
            codes.insert(points[i].code);
    }
    put("names", static_cast<int>(names.size()));
    if (!codes.empty())
        put("codes", static_cast<int>(codes.size()));
    if (count == 0)
        return;
    put("first", toUtf8(points[0].name));
    put("last", toUtf8(points[count - 1].name));
    showBox(box);
}

void showCamera(const CCamera& camera) {
    CCamera copy(camera);  // GetDistModel gives a reference to assign to
    put("focal length [mm]", camera.focal, 6);
    put("principal point [mm]", camera.pp.x, camera.pp.y, 6);
    put("pixel [mm]", camera.res.x, camera.res.y, 6);
    put("distortion model", copy.dist.GetDistModel());
    put("distortion parameters", camera.dist.GetNumPara());
    put("fiducial marks", camera.marks.GetSize());
}

void showArea(const CScanArea& area) {
    put("columns", area.columnCount);
    put("rows", area.rowCount);
    put("top left [deg]", area.areaAngle1);
    put("bottom right [deg]", area.areaAngle2);
    put("shots", area.shootAngles.GetSize());
    put("images", area.imageNames.GetSize());
    put("outline", area.outlineAngles.GetSize());
    if (!area.outlineAngles.IsEmpty())
        put("crosses zero", area.CheckZeroCross() == 1 ? "yes" : "no");
    const std::string fault = areaFault(area);
    put("check", fault.empty() ? "passed" : fault);
}

void showValues(const double* values, std::initializer_list<const char*> keys) {
    for (const char* key : keys)
        put(key, *values++, 6);
}

void showContents(const Contents& c, Format format) {
    switch (format) {
        case Format::imageCoordinate:
            put("image", toUtf8(c.image));
            put("pixels", std::to_string(c.size.cx) + " " + std::to_string(c.size.cy));
            [[fallthrough]];
        case Format::unknown:
        case Format::point:
        case Format::occupied:
        case Format::scanResult:
        case Format::versionedScan:
            return showPoints(c.points);
        case Format::camera:
            return showCamera(c.camera);
        case Format::scanArea:
        case Format::scanArea2:
            return showArea(c.area);
        case Format::panorama:
            return showValues(c.values, {"top left, vertical angle [deg]", "top left, horizontal angle [deg]",
                                         "pixel, vertical angle [deg]", "pixel, horizontal angle [deg]"});
        case Format::exterior:
            return showValues(c.values,
                              {"X0 [m]", "Y0 [m]", "Z0 [m]", "omega [deg]", "phi [deg]", "kappa [deg]"});
        case Format::unitSettings:
            put("version", toUtf8(c.units.version));
            put("meter-feet", c.units.meterFeet);
            put("feet", c.units.feet);
            return put("angle", c.units.angle);
        case Format::range:
            put("points", c.range.count);
            return showBox(c.range);
    }
}

void showFile(const TextFile& file, Format format) {
    if (format == Format::unknown)
        file.fail(0, kUnknownFormat + foundInstead(file.lines()));
    Contents contents;
    if (!readContents(file, format, contents))
        readChecked(file, format, contents);  // fails too, and names the line
    if (const auto foreign = foreignBytes(file))
        std::fprintf(stderr, "%s\n", file.message(foreign->line, "note: " + foreign->what).c_str());
    put("file", file.name());
    put("format", nameOf(format));
    showContents(contents, format);
}

ExitCode run(const FileListOptions& files) {
    const bool allFine = files.areAllFine([&](const TextFile& file) {
        showFile(file, files.formatFor(file));
        return true;
    });
    return allFine ? kFine : kDataAreWrong;
}

}  // namespace

void addShow(Program& program, ExitCode& exitCode) {
    auto [command, files] = addSubcommand(
        program, exitCode, "show", "Says what files are and what they hold",
        "Standard output: lines \"key: value\" in UTF-8, \"file\" first. x, y, z are the smallest and the\n"
        "largest of the points; angles are horizontal and zenith angle.\n"
        "Example, in the folder of the sample data:\n"
        "  fieldscan show facade_points.csv facade_outline.csv",
        run);
    files->addTo(command);
}
