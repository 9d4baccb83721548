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

CLI::Option* addNumbersOption(CLI::App& command, const char* name, std::vector<double>& numbers,
                              const NumberList& list, const char* help) {
    const auto take = [=, &numbers](const std::string& text) {
        numbers.clear();
        bool good = true;
        for (const std::string_view field : fieldsOf(text)) {
            const auto number = numberOf(field);
            good = good && number && *number >= list.lowest && *number <= list.highest;
            numbers.push_back(number.value_or(0.0));
        }
        if (!good || numbers.size() < list.least || numbers.size() > list.most)
            throw CLI::ValidationError(name,
                                       std::string("expected ") + list.expected + ", found \"" + text + "\"");
    };
    return command.add_option_function<std::string>(name, take, help);
}

void addAngleUnitOption(CLI::App& command, std::string& unit) {
    command.add_option("--unit", unit, "of the angles")
        ->capture_default_str()
        ->check(CLI::IsMember({"degrees", "gon", "mil", "packed"}));
}
