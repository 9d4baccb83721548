// plan: the shots over an area, as a scan-area file.
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "common/angles.h"
#include "common/files.h"
#include "common/text.h"
#include "common/wrong_use.h"
#include "options/example.h"
#include "options/file_options.h"
#include "options/number_options.h"
#include "scan/scan_input.h"
#include "scan/scan_records.h"
#include "subcommands.h"

namespace fs = std::filesystem;

namespace {

constexpr double kMostShots = 1e6;

struct Options {
    std::string outline, out, page;
    std::vector<double> corners, panorama, step;
    int columns = 0, rows = 0, version = 2;
};

void addVertex(CScanArea& area, double horizontal, double zenith) {
    CWPK vertex(zenith * kRadiansPerDegree, 0.0, horizontal * kRadiansPerDegree);
    area.NormalizeAngle(vertex.kappa);
    area.outlineAngles.Add(vertex);
}

// The rectangle between two corners. No edge may span half a turn, so long ones get vertices between.
void setCorners(const std::vector<double>& corners, ScanJob& job) {
    constexpr double kLongestEdge = 120.0, kLeastWidth = 0.01;
    const double left = corners[0], top = corners[1], bottom = corners[3];
    double width = corners[2] - left;
    width -= 360.0 * std::floor(width / 360.0);
    if (width < kLeastWidth || top < 0.0 || top >= bottom || bottom > 180.0)
        throw WrongUse("--corners",
                       "expected the right one 0.01 degrees or more from the left one, and zenith "
                       "angles from 0 to 180, the top before the bottom (--panorama: full circle)");
    const int edges = static_cast<int>(std::ceil(width / kLongestEdge));
    for (int i = 0; i <= edges; ++i)
        addVertex(job.area, left + width * i / edges, top);
    for (int i = edges; i >= 0; --i)
        addVertex(job.area, left + width * i / edges, bottom);
}

void setFullCircle(const std::vector<double>& panorama, ScanJob& job) {
    if (job.area.SetFullCircle(panorama[0] * kRadiansPerDegree, panorama[1] * kRadiansPerDegree) != 1)
        throw WrongUse("--panorama", "expected the top before the bottom");
}

void readOrSetArea(const Options& options, ScanJob& job) {
    if (!options.outline.empty()) {
        readArea(TextFile(options.outline), job, true);
        job.area.imageNames.RemoveAll();  // else names would go on from those of the file
        return;
    }
    if (!options.corners.empty())
        setCorners(options.corners, job);
    else
        setFullCircle(options.panorama, job);
    measureArea(job);
}

// Counts for steps of at most this many degrees. The columns of a full circle are on a ring: the last one has
// a step to the first.
Grid gridOf(const Options& options, const ScanJob& job) {
    constexpr double kRounding = 1e-6;  // degrees; files keep as much
    double columns = options.columns, rows = options.rows;
    if (!options.step.empty()) {
        const double stepX = options.step.front(), stepY = options.step.back();
        columns = std::ceil((job.width() - kRounding) / stepX) + (job.fullCircle ? 0.0 : 1.0);
        rows = std::ceil((job.height() - kRounding) / stepY) + 1.0;
    }
    if (columns * rows > kMostShots)
        throw WrongUse("the grid",
                       format("expected up to %.0f shots, found %.0f x %.0f", kMostShots, columns, rows));
    return {static_cast<int>(columns), static_cast<int>(rows)};
}

void printPlan(const ScanJob& job, const Options& options, double difference) {
    const CScanArea& area = job.area;
    const bool keepsOutline = options.version == 2;
    std::printf("corners,%.4f,%.4f,%.4f,%.4f\n", job.left(), 90.0 - job.top(), job.right(),
                90.0 - job.bottom());
    std::printf("outline,%d\n", keepsOutline ? area.outlineAngles.GetSize() : 0);
    std::printf("columns,%d\nrows,%d\nshots,%d\n", area.columnCount, area.rowCount,
                area.shootAngles.GetSize());
    const auto stepOf = [](const CArray<double, double>& angles) {
        return angles.GetSize() < 2 ? 0.0
                                    : CCalcXYZHV::AngleDifference_Over0(angles[0] * kDegreesPerRadian,
                                                                        angles[1] * kDegreesPerRadian);
    };
    std::printf("step,%.4f,%.4f\n", stepOf(area.workTable1), stepOf(area.workTable2));
    for (const int i : {0, area.shootAngles.GetUpperBound()})
        std::printf("%s,%.4f,%.4f,%s\n", i == 0 ? "first" : "last",
                    area.shootAngles[i].kappa * kDegreesPerRadian,
                    area.shootAngles[i].omega * kDegreesPerRadian, toUtf8(area.imageNames[i]).c_str());
    std::printf("difference,%.6f\n", difference);
}

void requireOneOf(bool first, bool second, bool third, const char* words) {
    const int given = (first ? 1 : 0) + (second ? 1 : 0) + (third ? 1 : 0);
    if (given == 0)
        throw WrongUse(std::string(words) + " is required");
    if (given > 1)
        throw WrongUse(words, "expected one of them only");
}

ExitCode run(const Options& options) {
    requireOneOf(!options.outline.empty(), !options.corners.empty(), !options.panorama.empty(),
                 "OUTLINE, --corners or --panorama");
    const bool counted = options.columns > 0 || options.rows > 0;
    requireOneOf(counted, !options.step.empty(), false, "--columns and --rows, or --step");
    if (counted && (options.columns == 0 || options.rows == 0))
        throw WrongUse("--columns and --rows, both of them is required");
    std::error_code ignored;
    if (fs::equivalent(pathOf(options.outline), pathOf(options.out), ignored))
        throw WrongUse("--out", "expected another file than the outline");
    useCodePage(options.page);
    ScanJob job;
    readOrSetArea(options, job);
    planShots(job, gridOf(options, job), job.fullCircle);
    const double difference = recordArea(job.area, pathOf(options.out), options.version);
    printPlan(job, options, difference);
    return kFine;
}

}  // namespace

void addPlan(Program& program, ExitCode& exitCode) {
    auto [command, options] = addSubcommand(
        program, exitCode, "plan", "Plans the shots over an area, as a scan-area file",
        "The outermost shots are at the corners of the area; those of a full circle are on a ring, at equal\n"
        "steps. Standard output, in degrees, horizontal before zenith angles: corners (left, top, right, "
        "bottom);\n"
        "vertices of the outline in the file; columns, rows, shots; step; first and last shot; the largest\n"
        "difference of an angle after reading the file back. Also:\n"
        "  fieldscan plan --corners 350,80.5,20,100.25 --columns 3 --rows 2 --version 1 --out area.txt\n"
        "  fieldscan plan --panorama 60,110 --step 20,16 --out area.txt",
        run);
    addExample(command, "plan @facade_outline.csv --step 15 --out area.txt");
    const double kTurn = 360.0;
    command.option("OUTLINE", options->outline,
                   "an outline (lines name,horizontal angle,zenith angle,0 in degrees), or a scan-area\n"
                   "file of the second version");
    addNumbersOption(command, "--corners", options->corners,
                     {4, 4, -kTurn, kTurn, "four angles LEFT,TOP,RIGHT,BOTTOM up to 360"},
                     "of a rectangle instead, from left to right also across zero")
        .valueName("LEFT,TOP,RIGHT,BOTTOM");
    addNumbersOption(command, "--panorama", options->panorama,
                     {2, 2, 0.0, 180.0, "two zenith angles TOP,BOTTOM from 0 to 180"},
                     "the full circle instead, between two zenith angles")
        .valueName("TOP,BOTTOM");
    const int most = static_cast<int>(kMostShots);
    command.option("--columns", options->columns, "of shots").valueName("N").between(1, most);
    command.option("--rows", options->rows, "of shots").valueName("N").between(1, most);
    addNumbersOption(command, "--step", options->step,
                     {1, 2, 0.001, kTurn, "one or two steps H,V from 0.001 to 360"},
                     "degrees between neighbours, at most: horizontal and vertical, or one for both")
        .valueName("H[,V]");
    command.option("--version", options->version, "of the file; the first has no outline, but six decimals")
        .showsDefault()
        .oneOf({1, 2}, "1|2");
    command.option("--out", options->out, "the scan-area file to write").valueName("FILE").required();
    addPageOption(command, options->page);
}
