// convert: files of points between formats, code pages, units and axes, to point files.
#include <fieldscan/string_utilities.h>
#include <fieldscan/survey.h>

#include <charconv>
#include <cstdlib>
#include <functional>
#include <optional>

#include "common/output_file.h"
#include "common/text.h"
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

// Appends "name,x,y,z" as the library's writer has it, in the code page that is in use. Returns what is wrong
// with the name instead: the library writes "?" for a character that the page lacks, which would change it.
std::string addLine(std::string& lines, const CXYZ& point, bool replace) {
    constexpr unsigned short kByteOrderMark = 0xFEFF;
    std::string name(static_cast<std::size_t>(point.name.GetLength()) * 4 + 1, '\0');
    name.resize(
        static_cast<std::size_t>(CStringToChar(point.name, name.data(), static_cast<int>(name.size()))));
    if (!replace && CString(name.c_str()) != point.name)
        return "expected a name that the code page can hold, found \"" + utf8(point.name) +
               "\" (--replace writes ? for what it lacks)";
    if (point.name[0] == kByteOrderMark)
        return "expected a name that does not begin with a byte order mark";
    lines += name;
    for (const double value : {point.x, point.y, point.z}) {
        char text[330];  // a double has up to 309 digits before its point
        lines += ',';
        lines.append(text, std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, 6).ptr);
    }
    lines += '\n';
    return "";
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
            throw CLI::ValidationError("units", "expected none: mathematical coordinates are millimetres");
    const PagesInTurn pages(options);
    std::optional<OutputFile> file;
    if (options.out != "-")
        file.emplace(options.out);
    {
        PointRows rows(options.in == "-" ? "(standard input)" : options.in, separatorNamed(options.separator),
                       options.header);
        PointStream stream(options.in, std::ref(rows));
        const auto put = [&](PointBlock& block, PointStream::Pass pass) {
            std::string lines, fault;
            int line = 0;
            pages.useOut();
            for (int i = 0; i < block.points.GetSize() && fault.empty(); ++i) {
                convert(block.points[i], options);
                fault = addLine(lines, block.points[i], options.replace);
                line = block.lines[static_cast<std::size_t>(i)];
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
        stream.read("Converting the points", !file, put);
        if (rows.shortened() > 0)
            stream.warn("note: a point file holds name,x,y,z; " + std::to_string(rows.shortened()) +
                        (rows.shortened() == 1 ? " line had more" : " lines had more"));
    }
    if (file)
        file->commit();
    return kFine;
}

}  // namespace

void addConvert(CLI::App& program, ExitCode& exitCode) {
    const auto [command, options] = addSubcommand(
        program, exitCode, "convert", "Converts points between formats, code pages, units and axes",
        "IN has lines name,x,y,z: a point, occupied-point or scan result file of either version, or what a\n"
        "spreadsheet writes, with commas, semicolons or tabs, quotation marks, and decimal commas where\n"
        "another separator is used. What follows z is left out. OUT is replaced when all is right.\n"
        "Units: m, ft (international foot), usft (US survey foot). Axes: survey (x north, y east) or\n"
        "mathematical (x east, y north, in millimetres). Six decimals are written.",
        run);
    command->add_option("IN", options->in, "a file of points, \"-\" for standard input")->required();
    command->add_option("OUT", options->out, "the point file to write, \"-\" for standard output")
        ->capture_default_str();
    addPageOption(*command, options->fromPage, "--from-page", "code page of IN");
    addPageOption(*command, options->toPage, "--to-page", "code page of OUT (that of IN)");
    const CLI::IsMember unit({"m", "ft", "usft"}), axes({"survey", "mathematical"});
    command->add_option("--from-unit", options->fromUnit, "unit of IN")->capture_default_str()->check(unit);
    command->add_option("--to-unit", options->toUnit, "unit of OUT")->capture_default_str()->check(unit);
    command->add_option("--from-axes", options->fromAxes, "axes of IN")->capture_default_str()->check(axes);
    command->add_option("--to-axes", options->toAxes, "axes of OUT")->capture_default_str()->check(axes);
    command
        ->add_option("--separator", options->separator, "of the fields of IN, else what its first row shows")
        ->check(CLI::IsMember({"comma", "semicolon", "tab"}));
    command->add_flag("--header", options->header, "the first line of IN holds titles");
    command->add_flag("--replace", options->replace, "writes ? for characters that the code page lacks");
}
