// scan: a scan job. Reads an outline, a station and points, finds the points inside the outline as seen from
// the station, records the area and those points, and draws them.
#include <cstdio>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "common/files.h"
#include "common/points.h"
#include "common/progress.h"
#include "common/text.h"
#include "common/wrong_use.h"
#include "options/file_options.h"
#include "options/station_options.h"
#include "pictures/scan_picture.h"
#include "scan/scan_input.h"
#include "scan/scan_records.h"
#include "subcommands.h"

namespace fs = std::filesystem;

namespace {

struct Options {
    std::string outline, station, points, out = "out";
    std::optional<CXYZ> stationCoordinates;
    double instrumentHeight = 1.5;
};

// The files that the command line names, and the sample for the others.
struct InputFiles {
    explicit InputFiles(const Options& options) {
        std::string stationFile = options.station, pointFile = options.points;
        if (options.stationCoordinates) {  // the second file then holds the points
            if (!pointFile.empty())
                throw WrongUse("The following argument was not expected: " + pointFile);
            std::swap(stationFile, pointFile);
        }
        outline = fileOrSample(options.outline, "facade_outline.csv");
        if (!options.stationCoordinates)
            station = fileOrSample(stationFile, "facade_station.csv");
        points = fileOrSample(pointFile, "facade_points.csv");
    }
    fs::path outline, station, points;
};

// Degrees; and degrees, minutes and seconds in a second column.
std::string angleColumns(double degrees) {
    CString text = CCalcXYZHV::AngleStr(CCalcXYZHV::Angle100To60(degrees, 1, 0), 0);
    while (text.GetLength() < 10)  // 359°59'59"
        text.Insert(0, u" ");
    return format("%8.4f  ", degrees) + toUtf8(text);
}

void printDirection(const char* title, double horizontal, double elevation) {
    printEntry(title, angleColumns(horizontal) + "   zenith angle " + angleColumns(90.0 - elevation));
}

void printInput(const InputFiles& files, const ScanJob& job) {
    const CXYZ& station = job.station;
    const std::string name = station.name.IsEmpty() ? "" : toUtf8(station.name) + ": ";
    std::printf("Input\n");
    printEntry("outline",
               format("%s: %d vertices", files.outline.u8string().c_str(), job.area.outlineAngles.GetSize()));
    printEntry("station", name + format("north %.3f, east %.3f, height %.3f; instrument %.3f above it",
                                        station.x, station.y, station.z, job.instrumentHeight));
    printEntry("points", format("%s: %d points", files.points.u8string().c_str(), job.points.GetSize()));
}

void printArea(const ScanJob& job) {
    std::printf("Area (degrees)\n");
    printDirection("top left", job.left(), job.top());
    printDirection("bottom right", job.right(), job.bottom());
    printEntry("size", format("%.4f wide, %.4f high", job.width(), job.height()));
    printEntry("zero", job.fullCircle ? std::string("where the full circle begins and ends")
                       : job.crossesZero
                           ? format("crossed by the outline: %d vertices before it, %d after it",
                                    job.verticesBeforeZero, job.verticesAfterZero)
                           : std::string("not crossed by the outline"));
    const CScanArea& area = job.area;
    const CVertex* first = area.shootPolyline.GetVertex(0);
    const CVertex* last =
        area.shootPolyline.GetVertex(static_cast<unsigned int>(area.shootPolyline.GetVertexSize() - 1));
    printEntry("shots", format("%d x %d, horizontal angle %.2f to %.2f, zenith angle %.2f to %.2f",
                               area.columnCount, area.rowCount, first->x, last->x, first->z, last->z));
    printEntry("check", format("passed (%d)", area.CheckParameter()));
}

void printCounts(const ScanJob& job) {
    std::printf("Points\n");
    printEntry("inside", format("%6d", job.pointsAt(SightPlace::inside)));
    printEntry("outside", format("%6d", job.pointsAt(SightPlace::outside)));
    printEntry("at station", format("%6d   straight above or below it", job.pointsAt(SightPlace::atStation)));
}

void readJob(const InputFiles& files, const Options& options, ScanJob& job) {
    job.instrumentHeight = options.instrumentHeight;
    readOutline(files.outline, job);
    job.station = options.stationCoordinates ? *options.stationCoordinates : readStation(files.station);
    // Fields that are no numbers read as 0, but the origin is also the first station of many sites.
    if (job.station.Len() == 0.0)
        std::fprintf(stderr, "note: the coordinates of the station are all 0\n");
    readPointFile(files.points, job.points, "x north, y east, z up");
}

void recordJob(const ScanJob& job, const fs::path& folder) {
    makeFolder(folder);
    std::printf("Written to %s and read back\n", folder.u8string().c_str());
    const double areaDifference = recordArea(job.area, folder / "scan_area.txt", 1);
    printEntry("scan_area.txt", format("%d shots; angles within %.2g degrees", job.area.shootAngles.GetSize(),
                                       areaDifference));
    SightsBack back;
    {
        ProgressLine line("Recording the points inside");
        back = recordPointsInside(job, folder / "points_inside.csv", std::ref(line));
    }
    printEntry("points_inside.csv", format("%d points; coordinates within %.2g, angles within %.2g degrees",
                                           back.count, back.coordinates, back.angles));
    const int beyond = drawScanJob(job, folder / "scan_job.svg");
    printEntry("scan_job.svg", format("the picture; %d points lie beyond its view", beyond));
}

ExitCode run(const Options& options) {
    const InputFiles files(options);
    ScanJob job;
    readJob(files, options, job);
    printInput(files, job);
    measureArea(job);
    planShots(job, imageGrid(job), false);
    printArea(job);
    {
        ProgressLine line("Sighting the points");
        sightPoints(job, std::ref(line));
    }
    printCounts(job);
    recordJob(job, pathOf(options.out));
    return kFine;
}

}  // namespace

void addScan(Program& program, ExitCode& exitCode) {
    auto [command, options] = addSubcommand(
        program, exitCode, "scan", "Finds the points inside an outlined area, records and draws them",
        "Files that are not named are those of the sample. Standard output: what was read, found and "
        "written.\n"
        "DIR gets scan_area.txt, points_inside.csv and scan_job.svg.",
        run);
    command.option("OUTLINE", options->outline,
                   "lines \"name,horizontal angle,zenith angle,0\" in degrees; a full circle goes from\n"
                   "0 to 359.9999");
    command.option("STATION", options->station,
                   "lines \"name,x,y,z\", of which the first counts; left out where --station is given");
    command.option("POINTS", options->points, "lines \"name,x,y,z\": x north, y east, z up");
    addStationOption(command, options->stationCoordinates);
    addHeightOption(command, options->instrumentHeight);
    addFolderOption(command, options->out);
}
