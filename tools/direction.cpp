// direction: directions and zenith angles from a station.
#include <cmath>
#include <cstdio>
#include <memory>

#include "common/progress.h"
#include "common/text.h"
#include "options.h"
#include "points.h"
#include "subcommands.h"

namespace {

struct Options {
    std::string points, page, unit = "degrees";
    StationOptions station;
};

// Rounded to the decimals that are shown before the circle is closed, so that no 360.000000 appears.
std::string decimalText(double angle, double circle) {
    const double rounded = std::round(angle * 1e6) / 1e6;
    return format("%.6f", rounded < circle ? rounded : 0.0);
}

std::string angleText(double degrees, const std::string& unit) {
    if (unit == "gon")
        return decimalText(CCalcXYZHV::DEGtoGON(degrees), 400.0);
    if (unit == "mil")
        return decimalText(CCalcXYZHV::DEGtoMIL(degrees), 6400.0);
    if (unit == "degrees")
        return decimalText(degrees, 360.0);
    // ddd.mmsst by way of whole tenths of a second, which carry where the decimals of a packed angle do not.
    char text[32];
    lAnglToStr(std::lround(degrees * 36000.0) % 12960000, text, 0);
    return text;
}

void run(const Options& options, int& exitCode) {
    if (!options.station.given())
        throw CLI::RequiredError("--station or --station-file");
    useCodePage(options.page);
    const TextFile file(options.points);
    CArray<CXYZ, CXYZ&> points;
    readPoints(file, points);
    const CXYZ station = options.station.station();
    std::string lines, faults;  // shown when the progress line is gone
    {
        ProgressLine progress("Computing directions");
        for (int i = 0; i < points.GetSize(); ++i) {
            double direction, zenith;
            const std::string name = utf8(points[i].name);
            if (CCalcXYZHV::XYZToHV(station, points[i], options.station.height(), zenith, direction) == 1) {
                lines += name + "," + angleText(direction, options.unit) + "," +
                         angleText(zenith, options.unit) + "\n";
            } else {
                lines += name + ",,\n";
                faults += file.message(0, "point " + name +
                                              ": expected one that is not straight above or below "
                                              "the station\n");
            }
            progress(i + 1, points.GetSize());
        }
    }
    std::fputs(lines.c_str(), stdout);
    std::fputs(faults.c_str(), stderr);
    if (!faults.empty())
        exitCode = kDataAreWrong;
}

}  // namespace

void addDirection(CLI::App& program, int& exitCode) {
    const auto options = std::make_shared<Options>();
    CLI::App* command =
        program.add_subcommand("direction", "Computes directions and zenith angles from a station");
    command->footer(
        "Standard output: lines name,direction,zenith angle in UTF-8. Coordinates are x north, y east, z "
        "up.\n"
        "packed: ddd.mmsst, degrees, minutes, seconds and tenths.");
    command->add_option("POINTS", options->points, "a point, occupied-point or scan result file")->required();
    options->station.addTo(*command);
    command->add_option("--unit", options->unit, "of the angles")
        ->capture_default_str()
        ->check(CLI::IsMember({"degrees", "gon", "mil", "packed"}));
    addCodePageOption(*command, "--page", options->page, "code page of the files");
    command->callback([options, &exitCode] { run(*options, exitCode); });
}
