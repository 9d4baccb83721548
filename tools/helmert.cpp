// helmert: a plane similarity transformation from two point files, by CHelmert.
#include <cmath>
#include <cstdio>

#include "common/angles.h"
#include "common/text.h"
#include "formats/checked_files.h"
#include "options/file_options.h"
#include "subcommands.h"

namespace {

struct Options {
    std::string from, to, page;
};

void printTransformation(const CHelmert& helmert) {
    static const char* const kNames[] = {"a", "b", "tx", "ty"};
    std::printf("pairs,%d\n", helmert.targetPoints.GetSize());
    for (int i = 0; i < 4; ++i)
        std::printf("%s,%.15g\n", kNames[i], helmert.parameters[i]);
    const double a = helmert.parameters[0], b = helmert.parameters[1];
    std::printf("scale,%.12f\n", std::hypot(a, b));
    std::printf("rotation,%.9f\n", std::atan2(b, a) * kDegreesPerRadian);
    for (int i = 0; i < helmert.residuals.GetSize(); ++i) {
        const CXYZ &target = helmert.targetPoints[i], &residual = helmert.residuals[i];
        std::printf("residual,%s,%.6f,%.6f,%.6f,%.6f\n", utf8(target.name).c_str(), target.x, target.y,
                    residual.x, residual.y);
    }
    std::printf("rms,%.6f,%.6f\n", helmert.RMS.x, helmert.RMS.y);
    std::printf("maximum,%.6f,%.6f\n", helmert.maximum.x, helmert.maximum.y);
}

ExitCode run(const Options& options) {
    useCodePage(options.page);
    CArray<CXYZ, CXYZ&> source, target;
    const TextFile from(options.from), to(options.to);
    readCheckedPoints(from, source);
    readCheckedPoints(to, target);
    CHelmert helmert;
    const int pairs = helmert.SetPoints(target, source);
    if (pairs < 2)
        from.fail(0, "expected two points at least with the names of " + to.name() + ", found " +
                         std::to_string(pairs));
    if (helmert.CalPara() != 1)
        from.fail(0, "expected points at different places");
    printTransformation(helmert);
    return kFine;
}

}  // namespace

void addHelmert(CLI::App& program, ExitCode& exitCode) {
    const auto [command, options] = addSubcommand(
        program, exitCode, "helmert", "Adjusts a plane similarity transformation between point files",
        "x' = a x - b y + tx, y' = b x + a y + ty, from points of FROM to those of TO with the same name.\n"
        "Standard output: pairs,N; a, b, tx, ty, scale and rotation (degrees, from x toward y) with their\n"
        "value; residual,NAME,X,Y,VX,VY for each pair, transformed minus TO; rms and maximum with x,y.",
        run);
    command->add_option("FROM", options->from, "the points to transform")->required();
    command->add_option("TO", options->to, "the points they are to fit")->required();
    addPageOption(*command, options->page);
}
