// All values are converted before the first is printed.
#include "options/value_options.h"

#include <cstdio>

#include "formats/text_file.h"

void ValueOptions::addTo(CLI::App& command, const std::set<std::string>& units) {
    command.add_option("VALUE", values, "else lines of standard input; after \"--\" if one is negative");
    command.add_option("--from", from, "unit or layout of the values")
        ->required()
        ->check(CLI::IsMember(units));
    command.add_option("--to", to, "unit or layout to convert to")->required()->check(CLI::IsMember(units));
}

void ValueOptions::convertAll(const std::function<std::string(std::string_view)>& convert) const {
    std::string converted;
    for (const std::string& value : values) {
        try {
            converted += convert(trimmed(value)) + "\n";
        } catch (const DataError& error) {
            throw CLI::ValidationError("VALUE", error.what());
        }
    }
    if (values.empty()) {
        const TextFile file("-");
        for (std::size_t i = 0; i < file.lines().size(); ++i) {
            try {
                converted += convert(trimmed(file.line(i))) + "\n";
            } catch (const DataError& error) {
                file.fail(static_cast<int>(i) + 1, error.what());
            }
        }
    }
    std::fputs(converted.c_str(), stdout);
}
