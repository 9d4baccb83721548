// Reads an outline, a station and points; finds out which points lie inside the outlined area as seen from
// the station; records the area and those points, and draws them.
#include <cstdio>
#include <functional>
#include <string>

#include "common/command_line.h"
#include "common/progress.h"
#include "common/text.h"
#include "options.h"
#include "picture.h"
#include "record.h"
#include "scan_job.h"

namespace fs = std::filesystem;

namespace {

// Degrees, and degrees, minutes and seconds in a column of their own.
std::string inBothForms(double degrees) {
    CString text = CCalcXYZHV::AngleStr(CCalcXYZHV::Angle100To60(degrees, 1, 0), 0);
    while (text.GetLength() < 10)  // 359°59'59"
        text.Insert(0, u" ");
    return format("%8.4f  ", degrees) + utf8(text);
}

void printDirection(const char* title, double horizontal, double elevation) {
    print(title, inBothForms(horizontal) + "   zenith angle " + inBothForms(90.0 - elevation));
}

void printInput(const Options& options, const ScanJob& job) {
    const CXYZ& station = job.station;
    const std::string name = station.name.IsEmpty() ? "" : utf8(station.name) + ": ";
    std::printf("Input\n");
    print("outline",
          format("%s: %d vertices", options.outline.u8string().c_str(), job.area.outlineAngles.GetSize()));
    print("station", name + format("north %.3f, east %.3f, height %.3f; instrument %.3f above it", station.x,
                                   station.y, station.z, job.instrumentHeight));
    print("points", format("%s: %d points", options.points.u8string().c_str(), job.points.GetSize()));
}

void printArea(const ScanJob& job) {
    std::printf("Area (degrees)\n");
    printDirection("top left", job.left(), job.top());
    printDirection("bottom right", job.right(), job.bottom());
    print("size", format("%.4f wide, %.4f high", job.width(), job.height()));
    print("zero", job.fullCircle    ? std::string("where the full circle begins and ends")
                  : job.crossesZero ? format("crossed by the outline: %d vertices before it, %d after it",
                                             job.verticesBeforeZero, job.verticesAfterZero)
                                    : std::string("not crossed by the outline"));
    const CScanArea& area = job.area;
    const CVertex* first = area.shootPolyline.GetVertex(0);
    const CVertex* last =
        area.shootPolyline.GetVertex(static_cast<unsigned int>(area.shootPolyline.GetVertexSize() - 1));
    print("shots", format("%d x %d, horizontal angle %.2f to %.2f, zenith angle %.2f to %.2f",
                          area.columnCount, area.rowCount, first->x, last->x, first->z, last->z));
    print("check", format("passed (%d)", area.CheckParameter()));
}

void printCounts(const ScanJob& job) {
    std::printf("Points\n");
    print("inside", format("%6d", job.count(Place::inside)));
    print("outside", format("%6d", job.count(Place::outside)));
    print("at station", format("%6d   straight above or below it", job.count(Place::atStation)));
}

void run(const Options& options) {
    ScanJob job;
    job.instrumentHeight = options.instrumentHeight;
    readOutline(options.outline, job);
    job.station = options.stationGiven ? options.givenStation : readStation(options.station);
    // What is no number reads as 0, but the origin is also where many sites have their first station.
    if (job.station.Len() == 0.0)
        std::fprintf(stderr, "scan_job: note: the coordinates of the station are all 0\n");
    readPoints(options.points, job.points, "x north, y east, z up");
    printInput(options, job);

    measureArea(job);
    planShots(job);
    printArea(job);

    {
        ProgressLine line("Sighting the points");
        sightPoints(job, std::ref(line));
    }
    printCounts(job);

    makeFolder(options.out);
    const fs::path areaFile = options.out / "scan_area.txt";
    const fs::path pointFile = options.out / "points_inside.csv";
    const fs::path pictureFile = options.out / "scan_job.svg";

    std::printf("Written to %s and read back\n", options.out.u8string().c_str());
    const double areaDifference = recordArea(job.area, areaFile);
    print("scan_area.txt",
          format("%d shots; angles within %.2g degrees", job.area.shootAngles.GetSize(), areaDifference));
    PointsBack back;
    {
        ProgressLine line("Recording the points inside");
        back = recordPointsInside(job, pointFile, std::ref(line));
    }
    print("points_inside.csv", format("%d points; coordinates within %.2g, angles within %.2g degrees",
                                      back.count, back.coordinates, back.angles));
    const int beyond = drawPicture(job, pictureFile);
    print("scan_job.svg", format("the picture; %d points lie beyond its view", beyond));
}

}  // namespace

int main(int argc, char** argv) {
    return exitCodeOf("scan_job", kUsage, [&] {
        const Options options = readOptions(argc, argv);
        if (options.help)
            std::fputs(kUsage, stdout);
        else
            run(options);
    });
}
