// inside: which points or directions lie inside the outline of a scan area.
#include <cmath>
#include <cstdio>
#include <functional>

#include "common/progress.h"
#include "common/text.h"
#include "formats/checked_files.h"
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

void sightDirections(const TextFile& file, ScanJob& job) {
    for (int i = 0; i < job.points.GetSize(); ++i) {
        const CXYZ& point = job.points[i];
        if (std::fabs(point.x) > 360.0 || point.y < 0.0 || point.y > 180.0 || point.z != 0.0)
            file.fail(i + 1, kDirection);
        Sight sight = {point.x, point.y, 0.0, SightPlace::outside};
        CCalcXYZHV::Angle0To360(sight.direction);
        placeSight(job, sight);
        job.sights.push_back(sight);
    }
}

ExitCode run(const Options& options) {
    if (options.station.isHeightOnly())
        throw CLI::RequiredError("--station or --station-file (for --height)");
    useCodePage(options.page);
    ScanJob job;
    readArea(TextFile(options.area), job, true);
    const TextFile file(options.points);
    const Format format = readCheckedPoints(file, job.points);
    if (options.station.given()) {
        job.station = options.station.station();
        job.instrumentHeight = options.station.height();
        ProgressLine progress("Sighting the points");
        sightPoints(job, std::ref(progress));
    } else if (format == Format::occupied) {  // a line of which may hold several points
        file.fail(0, kDirection);
    } else {
        sightDirections(file, job);
    }
    static const char* const kPlaces[] = {"inside", "outside", "at station"};
    for (int i = 0; i < job.points.GetSize(); ++i)
        std::printf("%s,%s\n", utf8(job.points[i].name).c_str(),
                    kPlaces[static_cast<int>(job.sights[static_cast<std::size_t>(i)].place)]);
    return kFine;
}

}  // namespace

void addInside(CLI::App& program, ExitCode& exitCode) {
    const auto [command, options] =
        addSubcommand(program, exitCode, "inside", "Finds the points inside the outline of a scan area",
                      "Standard output: lines name,inside or name,outside in UTF-8; name,at station straight "
                      "above or below\n"
                      "it.",
                      run);
    command
        ->add_option("AREA", options->area,
                     "a scan-area file of the second version, or an outline: lines\n"
                     "name,horizontal angle,zenith angle,0 in degrees")
        ->required();
    command
        ->add_option("POINTS", options->points,
                     "with a station points (x north, y east, z up), without one directions: lines like\n"
                     "those of an outline")
        ->required();
    options->station.addTo(*command);
    addPageOption(*command, options->page);
}
