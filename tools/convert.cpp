// convert: point files between code pages, units and axes.
#include <fstream>
#include <iostream>
#include <optional>

#include "common/files.h"
#include "common/temporary_folder.h"
#include "common/text.h"
#include "formats/checked_files.h"
#include "options/file_options.h"
#include "subcommands.h"

namespace {

struct Options {
    std::string in, out = "-";
    std::string fromPage, toPage;
    std::string fromUnit = "m", toUnit = "m", fromAxes = "survey", toAxes = "survey";
    bool replace = false;
};

void scale(CXYZ& point, double (*length)(double)) {
    point.SetXYZ(length(point.x), length(point.y), length(point.z));
}

void convert(CXYZ& point, const Options& options) {
    if (options.fromUnit != options.toUnit || options.fromAxes != options.toAxes) {
        if (options.fromAxes == "mathematical")
            CCalcXYZHV::CnvMathToSoku(point);
        else if (options.fromUnit != "m")
            scale(point, options.fromUnit == "ft" ? CCalcXYZHV::IntFTtoM : CCalcXYZHV::USFTtoM);
        if (options.toAxes == "mathematical")
            CCalcXYZHV::CnvSokuToMath(point);
        else if (options.toUnit != "m")
            scale(point, options.toUnit == "ft" ? CCalcXYZHV::MtoIntFT : CCalcXYZHV::MtoUSFT);
    }
}

// The library writes "?" for a character that the page lacks, which would change the name.
void requireEncodable(const TextFile& file, const CArray<CXYZ, CXYZ&>& points) {
    for (int i = 0; i < points.GetSize(); ++i) {
        const CString& name = points[i].name;
        std::string bytes(static_cast<std::size_t>(name.GetLength()) * 4 + 1, '\0');
        CStringToChar(name, bytes.data(), static_cast<int>(bytes.size()));
        if (CString(bytes.c_str()) != name)
            file.fail(i + 1, "expected a name that the code page can hold, found \"" + utf8(name) +
                                 "\" (--replace writes ? for what it lacks)");
    }
}

void write(CArray<CXYZ, CXYZ&>& points, const std::string& out) {
    const bool toStream = out == "-";
    std::optional<TemporaryFolder> folder;
    const std::filesystem::path place = toStream ? folder.emplace().file() : pathOf(out);
    CString path = libraryPath(place);
    if (WriteCSVFile(&path, points, 0) != 1)
        throw DataError(out + ": cannot be written");
    if (toStream && !points.IsEmpty())  // << fails when it copies nothing
        std::cout << std::ifstream(place, std::ios::binary).rdbuf();
}

ExitCode run(const Options& options) {
    for (const auto& [axes, unit] :
         {std::pair(options.fromAxes, options.fromUnit), std::pair(options.toAxes, options.toUnit)})
        if (axes == "mathematical" && unit != "m")
            throw CLI::ValidationError("units", "expected none: mathematical coordinates are millimetres");
    useCodePage(options.fromPage);
    const TextFile file(options.in);
    CArray<CXYZ, CXYZ&> points;
    readCheckedPoints(file, points);
    for (std::size_t i = 0; i < file.lines().size() && static_cast<int>(i) < points.GetSize(); ++i)
        if (fieldsOf(file.line(i)).size() != 4)
            file.fail(static_cast<int>(i) + 1, "expected name,x,y,z only; the rest would be lost");
    for (int i = 0; i < points.GetSize(); ++i)
        convert(points[i], options);
    useCodePage(options.toPage);
    if (!options.replace)
        requireEncodable(file, points);
    write(points, options.out);
    return kFine;
}

}  // namespace

void addConvert(CLI::App& program, ExitCode& exitCode) {
    const auto [command, options] = addSubcommand(
        program, exitCode, "convert", "Converts a point file between code pages, units and axes",
        "Units: m, ft (international foot), usft (US survey foot). Axes: survey (x north, y east) or\n"
        "mathematical (x east, y north, in millimetres). Six decimals are written.",
        run);
    command->add_option("IN", options->in, "a point file")->required();
    command->add_option("OUT", options->out, "the point file to write, \"-\" for standard output")
        ->capture_default_str();
    addPageOption(*command, options->fromPage, "--from-page", "code page of IN");
    addPageOption(*command, options->toPage, "--to-page", "code page of OUT (that of IN)");
    const CLI::IsMember unit({"m", "ft", "usft"}), axes({"survey", "mathematical"});
    command->add_option("--from-unit", options->fromUnit, "unit of IN")->capture_default_str()->check(unit);
    command->add_option("--to-unit", options->toUnit, "unit of OUT")->capture_default_str()->check(unit);
    command->add_option("--from-axes", options->fromAxes, "axes of IN")->capture_default_str()->check(axes);
    command->add_option("--to-axes", options->toAxes, "axes of OUT")->capture_default_str()->check(axes);
    command->add_flag("--replace", options->replace, "writes ? for characters that the code page lacks");
}
