// angle: angles between units and the layouts of the instrument.
#include <string>
#include <string_view>

#include "common/angle_units.h"
#include "common/data_error.h"
#include "options/example.h"
#include "options/value_options.h"
#include "subcommands.h"

namespace {

ExitCode run(const ValueOptions& options) {
    options.convertAll([&](std::string_view text) {
        const auto degrees = degreesOf(text, options.from);
        if (!degrees)
            throw DataError("expected " + expectedAngle(options.from) + ", found \"" + std::string(text) +
                            "\"");
        const auto converted = angleText(*degrees, options.to);
        if (!converted)
            throw DataError("expected an angle that can be written as " + options.to + ", found \"" +
                            std::string(text) + "\"");
        return *converted;
    });
    return kFine;
}

}  // namespace

void addAngle(Program& program, ExitCode& exitCode) {
    auto [command, options] = addSubcommand<ValueOptions>(
        program, exitCode, "angle", "Converts angles between units and layouts",
        "degrees, gon (400 to the circle), mil (6400); packed ddd.mmsst, instrument dddmmsst and display\n"
        "ddd\xC2\xB0mm'ss\"t, which hold whole tenths of a second (t), less than 1000 degrees, for the\n"
        "instrument not below 0. Standard output: an angle a line, not brought into one circle; nothing if "
        "a\n"
        "value is wrong.",
        run);
    options->addTo(command, {"degrees", "display", "gon", "instrument", "mil", "packed"});
    addExample(command, "angle 123.4530 --from packed --to gon");
}
