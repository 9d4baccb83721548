// polar: coordinates of targets from directions, zenith angles and distances, by CCalcXYZHV::CalcXYZ.
#include <algorithm>
#include <cmath>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "common/angle_units.h"
#include "common/angles.h"
#include "common/data_error.h"
#include "common/point_output.h"
#include "common/points.h"
#include "common/text.h"
#include "common/wrong_use.h"
#include "formats/checked_files.h"
#include "formats/observation_lines.h"
#include "options/example.h"
#include "options/file_options.h"
#include "options/number_options.h"
#include "options/station_options.h"
#include "subcommands.h"

namespace {

constexpr char kLine[] = "name,direction,zenith angle,distance, or these and the target's height";

struct Options {
    std::string observations, out = "-", page, unit = "degrees", orientation, backsight, known, reading;
    double targetHeight = 0.0;
    bool isHorizontal = false;
    StationOptions station;
};

// A reading of the first face, or brought into it; the back sight may have only the direction. Degrees,
// metres.
struct Reading {
    int line;
    double direction;
    std::optional<double> zenith, distance;
};

struct Target {
    std::string name;  // in the code page of the file
    std::optional<Reading> faces[2];
    std::optional<double> height;
};

std::optional<double> mean(const std::optional<double>& a, const std::optional<double>& b) {
    return a && b ? std::optional((*a + *b) / 2.0) : a ? a : b;
}

// A larger angle between the faces, in degrees, is a wrong point or a wrong number, not an error of the axes.
constexpr double kLargestFaceDifference = 0.1;

Reading meanOfFaces(const TextFile& file, const Target& target) {
    const auto &first = target.faces[0], &second = target.faces[1];
    if (!first || !second)
        return first ? *first : *second;
    const double across = CCalcXYZHV::AngleDifference(first->direction, second->direction);
    const double up = first->zenith && second->zenith ? *second->zenith - *first->zenith : 0.0;
    const double sineOfZenith = second->zenith ? std::sin(*second->zenith * kRadiansPerDegree) : 1.0;
    const double difference = std::hypot(across * sineOfZenith, up);
    if (difference > kLargestFaceDifference)
        file.fail(second->line, format("expected the second face of line %d within %g degrees, found %.4f",
                                       first->line, kLargestFaceDifference, difference));
    return {first->line, first->direction + across / 2.0, mean(first->zenith, second->zenith),
            mean(first->distance, second->distance)};
}

std::vector<Target> readTargets(const TextFile& file, const std::string& unit) {
    std::vector<Target> targets;
    std::map<std::string, std::size_t> places;
    for (const ObservationLine& line : observationLines(file, kLine)) {
        const auto direction = line.angle(1, unit);
        if (!direction || line.fieldCount() > 5)
            line.fail(std::string("expected ") + kLine);
        Reading reading = {line.number(), *direction, line.angle(2, unit), line.number(3)};
        if (reading.zenith && (*reading.zenith < 0.0 || *reading.zenith > 360.0))
            line.fail("expected a zenith angle between 0 and the full circle");
        if (reading.distance && *reading.distance <= 0.0)
            line.fail("expected a distance above 0");
        const bool isSecond = reading.zenith && *reading.zenith > 180.0;
        if (isSecond) {
            reading.direction -= 180.0;
            reading.zenith = 360.0 - *reading.zenith;
        }
        CCalcXYZHV::Angle0To360(reading.direction);
        const auto [place, isNew] = places.try_emplace(line.name(), targets.size());
        if (isNew)
            targets.push_back({line.name(), {}, {}});
        Target& target = targets[place->second];
        if (const auto& taken = target.faces[isSecond])
            line.fail(format("expected one reading of the target in each face; line %d has it in the %s",
                             taken->line, isSecond ? "second" : "first"));
        const auto height = line.number(4);
        if (height && target.height && *height != *target.height)
            line.fail("expected the same height of the target in both faces");
        target.faces[isSecond] = reading;
        target.height = height ? height : target.height;
    }
    return targets;
}

bool isNumberPair(const std::string& text) {
    const auto fields = fieldsOf(text);
    return fields.size() == 2 && numberOf(fields[0]) && numberOf(fields[1]);
}

CXYZ backsightPoint(const Options& options) {
    if (isNumberPair(options.backsight)) {
        const auto fields = fieldsOf(options.backsight);
        return CXYZ(*numberOf(fields[0]), *numberOf(fields[1]), 0.0);
    }
    const TextFile file(options.known);
    CArray<CXYZ, CXYZ&> points;
    readCheckedPoints(file, points);
    for (int i = 0; i < points.GetSize(); ++i)
        if (toUtf8(points[i].name) == options.backsight)
            return points[i];
    file.fail(0, "expected the back sight " + options.backsight + " among its points");
}

double angleOption(const char* name, const std::string& text, const std::string& unit) {
    const auto degrees = degreesOf(text, unit);
    if (!degrees)
        throw WrongUse(name, "expected " + expectedAngle(unit) + ", found \"" + text + "\"");
    return *degrees;
}

// The azimuth of the zero direction, degrees.
double orientationOf(const Options& options, const TextFile& file, const std::vector<Target>& targets,
                     const CXYZ& station) {
    if (options.backsight.empty())
        return angleOption("--orientation", options.orientation, options.unit);
    double reading = 0.0;
    if (!options.reading.empty()) {
        reading = angleOption("--reading", options.reading, options.unit);
    } else {
        const auto isBacksight = [&](const Target& target) {
            return toUtf8(CString(target.name.c_str())) == options.backsight;
        };
        const auto target = std::find_if(targets.begin(), targets.end(), isBacksight);
        if (target == targets.end())
            file.fail(0, "expected a line of the back sight " + options.backsight + " (or --reading)");
        reading = meanOfFaces(file, *target).direction;
    }
    double zenith, azimuth;
    if (CCalcXYZHV::XYZToHV(station, backsightPoint(options), 0.0, zenith, azimuth) != 1)
        throw DataError("back sight " + options.backsight + ": expected another place than the station's");
    return azimuth - reading;
}

// The first form of CalcXYZ takes both parts of a slope distance, so it gives heights straight above the
// station too.
CXYZ pointOf(const Options& options, const TextFile& file, const Reading& r, const CXYZ& station,
             double heightOffset, double orientation) {
    const double slope = *r.distance, zenith = *r.zenith * kRadiansPerDegree;
    CXYZ point;
    int done = 1;
    if (options.isHorizontal) {
        if (*r.zenith == 0.0 || *r.zenith == 180.0)
            file.fail(r.line, "expected a slope distance straight above or below the station");
        done = CCalcXYZHV::CalcXYZ(point, r.direction, slope, *r.zenith, station, heightOffset, orientation,
                                   1.0);
    } else {
        done = CCalcXYZHV::CalcXYZ(point, r.direction, slope * std::sin(zenith), *r.zenith,
                                   slope * std::cos(zenith), station, heightOffset, orientation, 1.0);
    }
    if (done != 1 || !isFinite(point))
        file.fail(r.line, "expected an observation that gives a point");
    return point;
}

ExitCode run(const Options& options) {
    if (!options.station.given())
        throw WrongUse("--station or --station-file is required");
    if (options.orientation.empty() && options.backsight.empty())
        throw WrongUse("--orientation or --backsight is required");
    const bool isNamed = !options.backsight.empty() && !isNumberPair(options.backsight);
    if (isNamed && options.known.empty())
        throw WrongUse("--known (for a back sight by name) is required");
    if (!options.backsight.empty() && !isNamed && options.reading.empty())
        throw WrongUse("--reading (for a back sight by coordinates) is required");
    useCodePage(options.page);
    const TextFile file(options.observations);
    const std::vector<Target> targets = readTargets(file, options.unit);
    const CXYZ station = options.station.station();
    const double orientation = orientationOf(options, file, targets, station);
    CArray<CXYZ, CXYZ&> points;
    for (const Target& target : targets) {
        const Reading reading = meanOfFaces(file, target);
        const CString name(target.name.c_str());
        if (!reading.zenith || !reading.distance) {
            if (isNamed && toUtf8(name) == options.backsight)
                continue;
            file.fail(reading.line, std::string("expected ") + kLine);
        }
        const double height = options.station.height() - target.height.value_or(options.targetHeight);
        CXYZ point = pointOf(options, file, reading, station, height, orientation);
        point.name = name;
        points.Add(point);
    }
    writePoints(points, options.out);
    return kFine;
}

}  // namespace

void addPolar(Program& program, ExitCode& exitCode) {
    auto [command, options] = addSubcommand(
        program, exitCode, "polar", "Computes coordinates from directions, zenith angles and distances",
        "The result is a point file in the code page of the files, x north, y east, z up, rounded to 0.1 "
        "mm.\n"
        "A zenith angle above half a turn is of the second face. Such a reading is brought into the first\n"
        "face; where both faces have the name, the mean counts, and more than 0.1 degrees between them is a\n"
        "fault. Of the back sight OBSERVATIONS may have only name,direction.",
        run);
    command
        .option("OBSERVATIONS", options->observations,
                "lines name,direction,zenith angle,distance, or these and the target's height")
        .required();
    options->station.addTo(command);
    addNumberOption(command, "--target-height", options->targetHeight, Sign::any,
                    "of targets whose line has none");
    const Option orientation =
        command.option("--orientation", options->orientation, "azimuth of the zero direction")
            .valueName("ANGLE");
    const Option backsight =
        command.option("--backsight", options->backsight, "a point of --known, or its coordinates")
            .valueName("NAME|X,Y")
            .excludes(orientation);
    command.option("--known", options->known, "the point file with the back sight")
        .valueName("FILE")
        .needs(backsight);
    command.option("--reading", options->reading, "direction to the back sight, else that of OBSERVATIONS")
        .valueName("ANGLE")
        .needs(backsight);
    command.flag("--horizontal", options->isHorizontal, "distances are horizontal, not along the slope");
    addAngleUnitOption(command, options->unit);
    command.option("--out", options->out, "the point file, \"-\" for standard output").showsDefault();
    addPageOption(command, options->page);
    addExample(
        command,
        "polar @polar_observations.txt --station-file @polar_station.csv --height 1.52 --target-height 1.6 "
        "--backsight T11 --known @station_control.csv --unit packed");
}
