// draw: a scan area, or the residuals of helmert, as a picture.
#include <cmath>
#include <string>
#include <vector>

#include "common/files.h"
#include "common/text.h"
#include "options/example.h"
#include "options/file_options.h"
#include "pictures/residual_picture.h"
#include "pictures/scan_picture.h"
#include "scan/scan_input.h"
#include "subcommands.h"

namespace {

struct Options {
    std::string file, out = "-", page, axes = "survey";
    ResidualView view;
};

bool isResidualTable(const TextFile& file) {
    const auto fields = fieldsOf(file.line(0));
    return fields[0] == "pairs" && fields.size() == 2;
}

std::vector<Residual> residualsOf(const TextFile& file) {
    std::vector<Residual> residuals;
    for (std::size_t i = 0; i < file.lines().size(); ++i) {
        const auto fields = fieldsOf(file.line(i));
        if (fields[0] != "residual")
            continue;
        constexpr double kMost = 1e12;  // squares and sums of more points than fit a file stay finite
        double values[4] = {};
        bool good = fields.size() >= 6;  // further fields are not drawn
        for (std::size_t k = 0; good && k < 4; ++k) {
            values[k] = numberOf(fields[k + 2]).value_or(HUGE_VAL);
            good = std::fabs(values[k]) <= kMost;
        }
        if (!good)
            file.fail(static_cast<int>(i) + 1, "expected residual,NAME,X,Y,VX,VY, numbers up to 1e12");
        residuals.push_back({std::string(fields[1]), values[0], values[1], values[2], values[3]});
    }
    if (residuals.empty())
        file.fail(0, "expected lines residual,NAME,X,Y,VX,VY");
    return residuals;
}

// Why a picture cannot have this name; empty where it can. A name without an end is as the user wants it.
std::string refusalOf(const std::string& out) {
    const std::string end = lowered(pathOf(out).extension().u8string());
    return end.empty() || end == ".svg" ? ""
                                        : "expected NAME.svg, found \"" + out + "\" (pictures are SVG only)";
}

ExitCode run(const Options& options) {
    useCodePage(options.page);
    const TextFile file(options.file);
    if (isResidualTable(file)) {
        ResidualView view = options.view;
        view.xIsUpward = options.axes == "survey";
        drawResiduals(residualsOf(file), view, pathOf(options.out));
    } else {
        ScanJob job;
        readArea(file, job, false);
        drawScanJob(job, pathOf(options.out));
    }
    return kFine;
}

}  // namespace

void addDraw(Program& program, ExitCode& exitCode) {
    auto [command, options] = addSubcommand(
        program, exitCode, "draw", "Draws a scan area, or the residuals of helmert",
        "The picture is SVG. Residuals are enlarged; those longer than 3 times their RMS are marked:\n"
        "  fieldscan helmert FROM TO | fieldscan draw - --out residuals.svg",
        run);
    addExample(command, "draw @facade_outline.csv --out area.svg");
    command
        .option("FILE", options->file,
                "a scan-area file, an outline (lines name,horizontal angle,zenith angle,0 in degrees),\n"
                "or the output of helmert")
        .required();
    command.option("--out", options->out, "the picture, NAME.svg; \"-\" for standard output")
        .showsDefault()
        .valueName("FILE")
        .check(refusalOf);
    command
        .option("--axes", options->axes,
                "of residuals: survey (x upward, y to the right) or mathematical (x to the right)")
        .showsDefault()
        .oneOf({"survey", "mathematical"});
    command.option("--unit", options->view.unit, "of residuals and their coordinates")
        .showsDefault()
        .oneOf({"m", "mm", "ft"});
    addPageOption(command, options->page);
}
