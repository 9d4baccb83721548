// direction: directions and zenith angles from a station, by XYZToHV.
#include <fieldscan/survey.h>

#include <string>

#include "common/angle_units.h"
#include "common/text.h"
#include "common/wrong_use.h"
#include "formats/point_stream.h"
#include "options/file_options.h"
#include "options/station_options.h"
#include "subcommands.h"

namespace {

struct Options {
    std::string points, page, unit = "degrees";
    StationOptions station;
};

ExitCode run(const Options& options) {
    if (!options.station.given())
        throw WrongUse("--station or --station-file is required");
    useCodePage(options.page);
    PointStream stream(options.points);
    const CXYZ station = options.station.station();
    bool allHaveDirections = true;
    const auto put = [&](const PointBlock& block, PointStream::Pass pass) {
        if (pass == PointStream::Pass::check)
            return true;
        std::string lines;
        for (int i = 0; i < block.points.GetSize(); ++i) {
            const CXYZ& point = block.points[i];
            double direction, zenith;
            const std::string name = toUtf8(point.name);
            if (CCalcXYZHV::XYZToHV(station, point, options.station.height(), zenith, direction) == 1) {
                lines += name + "," + circleText(direction, options.unit) + "," +
                         circleText(zenith, options.unit) + "\n";
            } else {
                lines += name + ",,\n";
                stream.warn("point " + name +
                            ": expected one that is not straight above or below the station");
                allHaveDirections = false;
            }
        }
        return print(lines);
    };
    stream.read("Computing directions", PointStream::CheckFirst::lines, put);
    return allHaveDirections ? kFine : kDataAreWrong;
}

}  // namespace

void addDirection(Program& program, ExitCode& exitCode) {
    auto [command, options] = addSubcommand(
        program, exitCode, "direction", "Computes directions and zenith angles from a station",
        "Standard output: lines name,direction,zenith angle in UTF-8. Coordinates are x north, y east, z "
        "up.\n"
        "packed: ddd.mmsst, degrees, minutes, seconds and tenths.\n"
        "Example, in the folder of the sample data:\n"
        "  fieldscan direction facade_points.csv --station-file facade_station.csv --height 1.5",
        run);
    command.option("POINTS", options->points, "a point, occupied-point or scan result file").required();
    options->station.addTo(command);
    command.option("--unit", options->unit, "of the angles")
        .showsDefault()
        .oneOf({"degrees", "gon", "mil", "packed"});
    addPageOption(command, options->page);
}
