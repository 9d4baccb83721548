// distance: distances between units and the layout of the instrument.
#include <fieldscan/instrument_strings.h>
#include <fieldscan/survey.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <string_view>

#include "common/data_error.h"
#include "common/text.h"
#include "formats/fields.h"
#include "options/example.h"
#include "options/value_options.h"
#include "subcommands.h"

namespace {

constexpr double kStepsPerMetre = 10000.0;  // of the instrument

std::optional<double> metresOfInstrument(std::string_view text) {
    const std::string_view digits = text.substr(!text.empty() && (text[0] == '+' || text[0] == '-') ? 1 : 0);
    if ((digits.size() != 8 && digits.size() != 9) ||
        !std::all_of(digits.begin(), digits.end(), [](char c) { return c >= '0' && c <= '9'; }))
        return std::nullopt;
    return static_cast<double>(TSstrToLDist(std::string(text).c_str())) / kStepsPerMetre;
}

std::optional<double> metresOf(std::string_view text, const std::string& unit) {
    if (unit == "instrument")
        return metresOfInstrument(text);
    const auto number = numberOf(text);
    if (!number || unit == "m")
        return number;
    return unit == "ft" ? CCalcXYZHV::IntFTtoM(*number) : CCalcXYZHV::USFTtoM(*number);
}

std::optional<std::string> distanceText(double metres, const std::string& unit) {
    if (unit == "instrument") {
        const double steps = std::round(std::fabs(metres) * kStepsPerMetre);
        if (!(steps < 1e9))  // five places of metres
            return std::nullopt;
        char text[32];
        CvtDistStr(static_cast<long>(steps), text, 0);  // empty for a negative distance
        return (metres < 0.0 && steps > 0.0 ? "-" : "") + std::string(text);
    }
    const double distance = unit == "m"    ? metres
                            : unit == "ft" ? CCalcXYZHV::MtoIntFT(metres)
                                           : CCalcXYZHV::MtoUSFT(metres);
    if (!std::isfinite(distance))
        return std::nullopt;
    return fixedText(distance, 6);
}

ExitCode run(const ValueOptions& options) {
    options.convertAll([&](std::string_view text) {
        const auto metres = metresOf(text, options.from);
        if (!metres)
            throw DataError(std::string("expected ") +
                            (options.from == "instrument" ? "a distance iiiiiffff" : "a number") +
                            ", found \"" + std::string(text) + "\"");
        const auto converted = distanceText(*metres, options.to);
        if (!converted)
            throw DataError("expected a distance that can be written as " + options.to + ", found \"" +
                            std::string(text) + "\"");
        return *converted;
    });
    return kFine;
}

}  // namespace

void addDistance(Program& program, ExitCode& exitCode) {
    auto [command, options] = addSubcommand<ValueOptions>(
        program, exitCode, "distance", "Converts distances between units and the instrument's layout",
        "m, ft (international foot), usft (US survey foot), instrument (iiiiiffff: metres, and tenths of a\n"
        "millimetre, less than 100000 m). Standard output: a distance a line; nothing if a value is wrong.",
        run);
    options->addTo(command, {"ft", "instrument", "m", "usft"});
    addExample(command, "distance 001234567 --from instrument --to usft");
}
