// resect: a station from directions and distances to known points.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "common/angle_units.h"
#include "common/angles.h"
#include "common/data_error.h"
#include "common/text.h"
#include "common/wrong_use.h"
#include "formats/checked_files.h"
#include "formats/observation_lines.h"
#include "options/example.h"
#include "options/file_options.h"
#include "options/number_options.h"
#include "resect/resection.h"
#include "subcommands.h"

namespace {

constexpr char kLine[] = "name,direction or name,direction,distance";
constexpr double kSecondsPerRadian = kDegreesPerRadian * 3600.0;

struct Options {
    std::string known, observations, page, unit = "degrees", nearTo;
    double directionSigma = 3.0, distanceSigma = 0.002;  // seconds of arc, metres
};

struct Observations {
    std::vector<Observation> list;
    std::vector<std::string> names;  // of the targets, in UTF-8
    bool haveDistances = false;
};

std::map<std::string, Place> readKnownPoints(const TextFile& file) {
    CArray<CXYZ, CXYZ&> points;
    readCheckedPoints(file, points);
    std::map<std::string, Place> places;
    for (int i = 0; i < points.GetSize(); ++i)
        if (!places.try_emplace(toUtf8(points[i].name), Place{points[i].x, points[i].y}).second)
            file.fail(0, "expected one point of a name, found another " + toUtf8(points[i].name));
    return places;
}

Observations readObservations(const TextFile& file, const Options& options,
                              const std::map<std::string, Place>& known) {
    Observations observations;
    const auto add = [&](const std::string& name, bool isDirection, double value, double sigma) {
        observations.list.push_back({isDirection, known.at(name), value, sigma});
        observations.names.push_back(name);
    };
    for (const ObservationLine& line : observationLines(file, kLine)) {
        const std::string name = toUtf8(CString(line.name().c_str()));
        const auto direction = line.angle(1, options.unit);
        const auto distance = line.number(2);
        if (line.fieldCount() > 3 || (!direction && !distance))
            line.fail(std::string("expected ") + kLine);
        if (distance && *distance <= 0.0)
            line.fail("expected a distance above 0");
        if (known.count(name) == 0)
            line.fail("expected one of the known points, found " + name);
        if (direction)
            add(name, true, *direction * kRadiansPerDegree, options.directionSigma / kSecondsPerRadian);
        if (distance)
            add(name, false, *distance, options.distanceSigma);
        observations.haveDistances = observations.haveDistances || distance;
    }
    return observations;
}

std::optional<Place> placeNear(const std::string& text) {
    if (text.empty())
        return std::nullopt;
    const auto fields = fieldsOf(text);
    if (fields.size() != 2 || !numberOf(fields[0]) || !numberOf(fields[1]))
        throw WrongUse("--near", "expected two numbers X,Y, found \"" + text + "\"");
    return Place{*numberOf(fields[0]), *numberOf(fields[1])};
}

struct Ellipse {
    double major, minor, direction;  // metres, radians
};

// With the standard deviations known before.
Ellipse ellipseOf(const CPrecision& precision) {
    Ellipse ellipse = {};
    if (precision.CalEllipse(0, 1, 1.0, ellipse.major, ellipse.minor, ellipse.direction) != 1)
        throw DataError("expected observations that have figures of precision");
    return ellipse;
}

// An axis of a hundredth of the shortest sight is beyond what linear equations describe. Without distances
// the axes of the ellipse show how far the station is from a circle through the targets.
void requireDetermined(const Observations& observations, const Station& station, const Ellipse& ellipse,
                       const TextFile& file) {
    constexpr double kLargestAxis = 0.01, kNearCircle = 0.02;
    double shortest = std::numeric_limits<double>::infinity();
    for (const Observation& o : observations.list)
        shortest = std::min(shortest, std::hypot(o.target.x - station.place.x, o.target.y - station.place.y));
    const char* circle =
        observations.haveDistances ? "" : ", near the circle through the targets (danger circle)";
    if (ellipse.major > kLargestAxis * shortest)
        file.fail(0, format("expected observations that determine the station, found a standard deviation of "
                            "%.3f m%s",
                            ellipse.major, circle));
    if (!observations.haveDistances && ellipse.minor < kNearCircle * ellipse.major)
        std::fprintf(stderr, "%s\n",
                     file.message(0, "the station is weakly determined" + std::string(circle)).c_str());
}

void printStation(const Options& options, const Station& station, const CPrecision& precision,
                  const Ellipse& ellipse) {
    const int n = precision.parameterNumber;
    const auto sigma = [&](int unknown) { return std::sqrt(precision.cofactors[unknown * n + unknown]); };
    std::printf("x,%s,%.4f\n", fixedText(station.place.x, 4).c_str(), sigma(0));
    std::printf("y,%s,%.4f\n", fixedText(station.place.y, 4).c_str(), sigma(1));
    if (n == 3)
        std::printf("orientation,%s,%.2f\n",
                    circleText(station.orientation * kDegreesPerRadian, options.unit).c_str(),
                    sigma(2) * kSecondsPerRadian);
    const std::string direction = circleText(ellipse.direction * kDegreesPerRadian, options.unit);
    const bool isHalfTurn = direction == circleText(180.0, options.unit);
    std::printf("ellipse,%.4f,%.4f,%s\n", ellipse.major, ellipse.minor,
                isHalfTurn ? circleText(0.0, options.unit).c_str() : direction.c_str());
}

void printSigma0(const CPrecision& precision) {
    double lower = 0.0, upper = 0.0;
    const bool isAccepted = precision.TestGlobal(0.05, lower, upper) == 1;
    std::printf("sigma0,%.2f\n", precision.estimatedSigma0);
    std::printf("test,%s\n", isAccepted                       ? "accepted"
                             : precision.sumOfSquares < lower ? "sigma0 too small"
                                                              : "sigma0 too large");
}

void printObservations(const Options& options, const Observations& observations,
                       const CPrecision& precision) {
    for (std::size_t i = 0; i < observations.list.size(); ++i) {
        const Observation& o = observations.list[i];
        const int k = static_cast<int>(i);
        const CEquationPrecision& figures = precision.equations[k];
        const std::string value =
            o.isDirection ? circleText(o.value * kDegreesPerRadian, options.unit) : format("%.4f", o.value);
        const double residual = o.isDirection ? figures.residual * kSecondsPerRadian : figures.residual;
        const std::string standardized = figures.controlled ? fixedText(figures.standardized, 2) : "";
        const bool isLargest = precision.largest == k && standardized != "0.00";
        std::printf("%s,%s,%s,%s,%s,%s%s\n", o.isDirection ? "direction" : "distance",
                    observations.names[i].c_str(), value.c_str(),
                    fixedText(residual, o.isDirection ? 2 : 4).c_str(), standardized.c_str(),
                    fixedText(figures.redundancy, 3).c_str(), isLargest ? ",largest" : "");
    }
}

ExitCode run(const Options& options) {
    const std::optional<Place> nearPlace = placeNear(options.nearTo);
    useCodePage(options.page);
    const TextFile known(options.known), file(options.observations);
    const Observations observations = readObservations(file, options, readKnownPoints(known));
    CLeastSq adjustment;
    CPrecision precision;
    Station station;
    Ellipse ellipse;
    try {
        station = resect(observations.list, nearPlace, adjustment);
        if (precision.CalFigures(adjustment, 1.0) != 1)
            throw DataError("expected observations whose precision can be computed");
        ellipse = ellipseOf(precision);
    } catch (const DataError& error) {
        file.fail(0, error.what());
    }
    requireDetermined(observations, station, ellipse, file);
    const int redundancy = static_cast<int>(observations.list.size()) - precision.parameterNumber;
    printStation(options, station, precision, ellipse);
    std::printf("redundancy,%d\n", redundancy);
    if (redundancy > 0)
        printSigma0(precision);
    printObservations(options, observations, precision);
    return kFine;
}

}  // namespace

void addResect(Program& program, ExitCode& exitCode) {
    auto [command, options] = addSubcommand(
        program, exitCode, "resect", "Computes a station from directions and distances to known points",
        "Distances are horizontal. Standard output:\n"
        "  x, y                 value and standard deviation\n"
        "  orientation          azimuth of the zero direction, its standard deviation in seconds of arc\n"
        "  ellipse              standard error ellipse: semi-axes, direction of the major one\n"
        "  redundancy           number of observations beyond those needed\n"
        "  sigma0, test         1 if the observations are as precise as assumed, and the test of that at 5 "
        "%\n"
        "  direction, distance  NAME,OBSERVED,V,W,R: residual, observed minus adjusted, in seconds of arc "
        "or\n"
        "                       metres; divided by its standard deviation (a blunder beyond 3.29); "
        "redundancy\n"
        "                       number; and \"largest\" after the largest W\n"
        "Standard deviations follow from --sigma-direction and --sigma-distance.",
        run);
    command.option("KNOWN", options->known, "the point file with the targets: x north, y east").required();
    command
        .option("OBSERVATIONS", options->observations,
                "lines name,direction or name,direction,distance; directions may be empty")
        .required();
    addNumberOption(command, "--sigma-direction", options->directionSigma, Sign::positive,
                    "standard deviation of a direction, seconds of arc");
    addNumberOption(command, "--sigma-distance", options->distanceSigma, Sign::positive,
                    "standard deviation of a distance, metres");
    command.option("--near", options->nearTo, "chooses where two stations fit").valueName("X,Y");
    addAngleUnitOption(command, options->unit);
    addPageOption(command, options->page);
    addExample(command, "resect @station_control.csv @station_observations.txt --unit packed");
}
