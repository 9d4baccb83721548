// A wrong number is wrong use: CLI::ValidationError.
#include "options/number_options.h"

#include "common/text.h"
#include "formats/fields.h"

CLI::Option* addNumberOption(CLI::App& command, const char* name, double& value, Sign sign,
                             const char* help) {
    const auto take = [&value, name, sign](const std::string& text) {
        const auto number = numberOf(text);
        if (!number || (sign == Sign::positive && *number <= 0.0))
            throw CLI::ValidationError(name, std::string("expected a number") +
                                                 (sign == Sign::positive ? " above 0" : "") + ", found \"" +
                                                 text + "\"");
        value = *number;
    };
    return command.add_option_function<std::string>(name, take, help)
        ->type_name("NUMBER")
        ->default_str(format("%g", value));
}

void addAngleUnitOption(CLI::App& command, std::string& unit) {
    command.add_option("--unit", unit, "of the angles")
        ->capture_default_str()
        ->check(CLI::IsMember({"degrees", "gon", "mil", "packed"}));
}
