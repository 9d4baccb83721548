// draw: a scan area, or the residuals of helmert, as a picture.
#include "common/files.h"
#include "common/text.h"
#include "options/file_options.h"
#include "pictures/residual_picture.h"
#include "pictures/scan_picture.h"
#include "scan/scan_input.h"
#include "subcommands.h"

namespace {

struct Options {
    std::string file, out = "-", page;
};

bool isResidualTable(const TextFile& file) { return file.line(0).rfind("pairs,", 0) == 0; }

std::vector<Residual> residualsOf(const TextFile& file) {
    std::vector<Residual> residuals;
    for (std::size_t i = 0; i < file.lines().size(); ++i) {
        const auto fields = fieldsOf(file.line(i));
        if (fields[0] != "residual")
            continue;
        double values[4] = {};
        bool good = fields.size() >= 6;
        for (std::size_t k = 0; good && k < 4; ++k) {
            const auto value = numberOf(fields[k + 2]);
            good = value.has_value();
            values[k] = value.value_or(0.0);
        }
        if (!good)
            file.fail(static_cast<int>(i) + 1, "expected residual,NAME,X,Y,VX,VY");
        residuals.push_back({std::string(fields[1]), values[0], values[1], values[2], values[3]});
    }
    if (residuals.empty())
        file.fail(0, "expected lines residual,NAME,X,Y,VX,VY");
    return residuals;
}

ExitCode run(const Options& options) {
    useCodePage(options.page);
    const TextFile file(options.file);
    if (isResidualTable(file)) {
        drawResiduals(residualsOf(file), pathOf(options.out));
    } else {
        ScanJob job;
        readArea(file, job, false);
        drawScanJob(job, pathOf(options.out));
    }
    return kFine;
}

}  // namespace

void addDraw(CLI::App& program, ExitCode& exitCode) {
    const auto [command, options] = addSubcommand(
        program, exitCode, "draw", "Draws a scan area, or the residuals of helmert",
        "The picture is SVG. \"fieldscan helmert FROM TO | fieldscan draw -\" draws residuals.", run);
    command
        ->add_option("FILE", options->file,
                     "a scan-area file, an outline (lines name,horizontal angle,zenith angle,0 in degrees),\n"
                     "or the output of helmert")
        ->required();
    command->add_option("--out", options->out, "the picture, \"-\" for standard output")
        ->capture_default_str();
    addPageOption(*command, options->page);
}
