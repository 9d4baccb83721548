// inside: which points or directions lie inside the outline of a scan area.
#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include "common/text.h"
#include "common/wrong_use.h"
#include "formats/point_stream.h"
#include "options/file_options.h"
#include "options/station_options.h"
#include "scan/scan_input.h"
#include "subcommands.h"

namespace {

struct Options {
    std::string area, points, page;
    StationOptions station;
};

constexpr char kDirection[] = "expected name,horizontal angle,zenith angle,0 in degrees (or --station)";

// The sight of a direction in degrees; nothing when it is none.
std::optional<Sight> directionOf(const CXYZ& point) {
    if (std::fabs(point.x) > 360.0 || point.y < 0.0 || point.y > 180.0 || point.z != 0.0)
        return std::nullopt;
    Sight sight = {point.x, point.y, 0.0, SightPlace::outside};
    CCalcXYZHV::Angle0To360(sight.direction);
    return sight;
}

std::string placesOf(const ScanJob& job, const PointBlock& block, std::vector<Sight>& sights) {
    static const char* const kPlaces[] = {"inside", "outside", "at station"};
    placeSights(job, sights);
    std::string lines;
    for (std::size_t i = 0; i < sights.size(); ++i)
        lines += toUtf8(block.points[static_cast<int>(i)].name) + "," +
                 kPlaces[static_cast<int>(sights[i].place)] + "\n";
    return lines;
}

ExitCode run(const Options& options) {
    if (options.station.isHeightOnly())
        throw WrongUse("--station or --station-file (for --height) is required");
    useCodePage(options.page);
    ScanJob job;
    readArea(TextFile(options.area), job, true);
    PointStream stream(options.points);
    const bool areDirections = !options.station.given();
    if (!areDirections) {
        job.station = options.station.station();
        job.instrumentHeight = options.station.height();
    }
    const auto put = [&](const PointBlock& block, PointStream::Pass pass) {
        if (areDirections && stream.format() == Format::occupied)  // a line of which may hold several points
            stream.fail(0, kDirection);
        std::vector<Sight> sights;
        const int count = block.points.GetSize();
        int faulty = -1;
        for (int i = 0; i < count && faulty < 0; ++i) {
            const CXYZ& point = block.points[i];
            const auto sight = areDirections ? directionOf(point) : sightOf(job, point);
            if (sight)
                sights.push_back(*sight);
            else
                faulty = block.lines[static_cast<std::size_t>(i)];
        }
        const bool goesOn = pass == PointStream::Pass::check || print(placesOf(job, block, sights));
        if (faulty >= 0)
            stream.fail(faulty, kDirection);
        return goesOn;
    };
    stream.read("Sighting the points",
                areDirections ? PointStream::CheckFirst::points : PointStream::CheckFirst::lines, put);
    return kFine;
}

}  // namespace

void addInside(Program& program, ExitCode& exitCode) {
    auto [command, options] =
        addSubcommand(program, exitCode, "inside", "Finds the points inside the outline of a scan area",
                      "Standard output: lines name,inside or name,outside in UTF-8; name,at station straight "
                      "above or below\n"
                      "it.\n"
                      "Example, in the folder of the sample data:\n"
                      "  fieldscan inside facade_outline.csv facade_points.csv --station-file "
                      "facade_station.csv --height 1.5",
                      run);
    command
        .option("AREA", options->area,
                "a scan-area file of the second version, or an outline: lines\n"
                "name,horizontal angle,zenith angle,0 in degrees")
        .required();
    command
        .option("POINTS", options->points,
                "with a station points (x north, y east, z up), without one directions: lines like\n"
                "those of an outline")
        .required();
    options->station.addTo(command);
    addPageOption(command, options->page);
}
