// convert: files of points between formats, code pages, units and axes, to point files.
#include <fieldscan/string_utilities.h>
#include <fieldscan/survey.h>

#include <cstdlib>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "common/output_file.h"
#include "common/text.h"
#include "common/wrong_use.h"
#include "formats/point_rows.h"
#include "formats/point_stream.h"
#include "options/file_options.h"
#include "subcommands.h"

namespace {

struct Options {
    std::string in, out = "-";
    std::string fromPage, toPage;
    std::string fromUnit = "m", toUnit = "m", fromAxes = "survey", toAxes = "survey";
    std::string separator;
    bool header = false, replace = false;
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

// The name in the code page that is in use.
std::string encoded(const CString& name) {
    std::string bytes(static_cast<std::size_t>(name.GetLength()) * 4 + 1, '\0');
    bytes.resize(static_cast<std::size_t>(CStringToChar(name, bytes.data(), static_cast<int>(bytes.size()))));
    return bytes;
}

// The library writes "?" for a character that the page lacks, which would change the name.
std::string faultOf(const CString& name, const std::string& bytes, bool replace) {
    if (!replace && CString(bytes.c_str()) != name)
        return "expected a name that the code page can hold, found \"" + toUtf8(name) +
               "\" (--replace writes ? for what it lacks)";
    return "";
}

// Appends "name,x,y,z" as the library's writer has it.
void addLine(std::string& lines, const std::string& name, const CXYZ& point) {
    lines += name;
    for (const double value : {point.x, point.y, point.z}) {
        lines += ',';
        addFixed(lines, value, 6);
    }
    lines += '\n';
}

std::optional<char> separatorNamed(const std::string& name) {
    if (name.empty())
        return std::nullopt;
    return name == "comma" ? ',' : name == "semicolon" ? ';' : '\t';
}

// The code pages of IN and OUT, of which one is in use at a time.
class PagesInTurn {
public:
    explicit PagesInTurn(const Options& options) : m_in(options.fromPage), m_out(options.toPage) {
        const char* const usual = std::getenv("FIELDSCAN_ANSI_CODEPAGE");
        useCodePage(m_in);
        if (!m_out.empty() && m_in.empty())
            m_in = usual ? usual : "UTF-8";
    }
    void useIn() const { useCodePage(m_out.empty() ? "" : m_in); }
    void useOut() const { useCodePage(m_out); }

private:
    std::string m_in, m_out;
};

ExitCode run(const Options& options) {
    for (const auto& [axes, unit] :
         {std::pair(options.fromAxes, options.fromUnit), std::pair(options.toAxes, options.toUnit)})
        if (axes == "mathematical" && unit != "m")
            throw WrongUse("units", "expected none: mathematical coordinates are millimetres");
    const PagesInTurn pages(options);
    std::optional<OutputFile> file;
    if (options.out != "-")
        file.emplace(options.out);
    {
        PointRows rows(separatorNamed(options.separator), options.header);
        PointStream stream(options.in, std::ref(rows));
        const auto put = [&](PointBlock& block, PointStream::Pass pass) {
            std::string lines, fault;
            int line = 0;
            pages.useOut();
            for (int i = 0; i < block.points.GetSize() && fault.empty(); ++i) {
                CXYZ& point = block.points[i];
                const std::string name = encoded(point.name);
                fault = faultOf(point.name, name, options.replace);
                line = block.lines[static_cast<std::size_t>(i)];
                if (fault.empty() && pass == PointStream::Pass::results) {
                    convert(point, options);
                    addLine(lines, name, point);
                }
            }
            pages.useIn();
            bool goesOn = true;
            if (file)
                file->write(lines);
            else if (pass == PointStream::Pass::results)
                goesOn = print(lines);
            if (!fault.empty())
                stream.fail(line, fault);
            return goesOn;
        };
        // Names that are in the code page of IN fit it again.
        const auto checkFirst = file                     ? PointStream::CheckFirst::nothing
                                : options.toPage.empty() ? PointStream::CheckFirst::lines
                                                         : PointStream::CheckFirst::points;
        const bool isWhole = stream.read("Converting the points", checkFirst, put);
        if (isWhole && rows.shortened() > 0)
            stream.warn("note: a point file holds name,x,y,z; " + std::to_string(rows.shortened()) +
                        (rows.shortened() == 1 ? " line had more" : " lines had more"));
    }
    if (file)
        file->commit();
    return kFine;
}

}  // namespace

void addConvert(Program& program, ExitCode& exitCode) {
    auto [command, options] = addSubcommand(
        program, exitCode, "convert", "Converts points between formats, code pages, units and axes",
        "IN has lines name,x,y,z: a point, occupied-point or scan result file of either version, or what a\n"
        "spreadsheet writes, with commas, semicolons or tabs, quotation marks, and decimal commas where\n"
        "another separator is used. What follows z is left out. OUT is replaced when all is right.\n"
        "Units: m, ft (international foot), usft (US survey foot). Axes: survey (x north, y east) or\n"
        "mathematical (x east, y north, in millimetres). Six decimals are written.\n"
        "Example, in the folder of the sample data:\n"
        "  fieldscan convert facade_points.csv --to-unit ft",
        run);
    command.option("IN", options->in, "a file of points, \"-\" for standard input").required();
    command.option("OUT", options->out, "the point file to write, \"-\" for standard output").showsDefault();
    addPageOption(command, options->fromPage, "--from-page", "code page of IN");
    addPageOption(command, options->toPage, "--to-page", "code page of OUT (that of IN)");
    const std::vector<std::string> units = {"m", "ft", "usft"}, axes = {"survey", "mathematical"};
    command.option("--from-unit", options->fromUnit, "unit of IN").showsDefault().oneOf(units);
    command.option("--to-unit", options->toUnit, "unit of OUT").showsDefault().oneOf(units);
    command.option("--from-axes", options->fromAxes, "axes of IN").showsDefault().oneOf(axes);
    command.option("--to-axes", options->toAxes, "axes of OUT").showsDefault().oneOf(axes);
    command.option("--separator", options->separator, "of the fields of IN, else what its first row shows")
        .oneOf({"comma", "semicolon", "tab"});
    command.flag("--header", options->header, "the first line of IN holds titles");
    command.flag("--replace", options->replace, "writes ? for characters that the code page lacks");
}
