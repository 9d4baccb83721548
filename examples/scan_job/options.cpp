#include "options.h"

#include <cmath>
#include <cstdlib>
#include <string>

#include "common/command_line.h"

const char kUsage[] =
    "Usage: scan_job [outline] [station] [points] [options]\n"
    "       scan_job [outline] [points] --station X,Y,Z [options]\n"
    "\n"
    "Finds out which points lie inside an outlined area as seen from a station, records\n"
    "the area and those points, and draws them. Without arguments it takes the sample.\n"
    "\n"
    "  outline   lines \"name,horizontal angle,zenith angle,0\" in degrees; a full circle\n"
    "            goes from 0 to 359.9999\n"
    "  station   lines \"name,x,y,z\", of which the first counts\n"
    "  points    lines \"name,x,y,z\": x north, y east, z up\n"
    "\n"
    "  --station X,Y,Z   the station's coordinates, in place of the file\n"
    "  --height H        the instrument's height above the station, in the unit of the\n"
    "                    coordinates (1.5)\n"
    "  --out DIR         the folder for what is written (out)\n"
    "  --help            this text\n";

namespace {

// A number that takes the text up to its end or to `stop`, behind which `text` is left.
double numberOf(const char*& text, char stop, const std::string& expected) {
    char* end = nullptr;
    const double value = std::strtod(text, &end);
    if (end == text || *end != stop || !std::isfinite(value))
        throw UsageError(expected);
    text = stop == '\0' ? end : end + 1;
    return value;
}

CXYZ stationOf(const char* text) {
    const std::string expected = std::string("--station takes three numbers X,Y,Z, not \"") + text + "\"";
    const double x = numberOf(text, ',', expected);
    const double y = numberOf(text, ',', expected);
    const double z = numberOf(text, '\0', expected);
    return CXYZ(x, y, z);
}

double heightOf(const char* text) {
    return numberOf(text, '\0', std::string("--height takes a number, not \"") + text + "\"");
}

}  // namespace

Options readOptions(int argc, char** argv) {
    Options options;
    const auto takeOption = [&](const std::string& word, const auto& value) {
        if (word == "--station") {
            options.givenStation = stationOf(value());
            options.stationGiven = true;
        } else if (word == "--height") {
            options.instrumentHeight = heightOf(value());
        } else {
            return false;
        }
        return true;
    };
    const CommandLine line = readCommandLine(argc, argv, takeOption);
    options.out = line.out;
    options.help = line.help;

    std::vector<std::filesystem::path*> places = {&options.outline, &options.station, &options.points};
    options.outline = sampleFile("facade_outline.csv");
    options.station = sampleFile("facade_station.csv");
    options.points = sampleFile("facade_points.csv");
    if (options.stationGiven)
        places.erase(places.begin() + 1);
    takeFiles(line.files, places);
    return options;
}
