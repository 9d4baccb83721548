// All values are converted before the first is printed.
#include "options/value_options.h"

#include <cstdio>

#include "common/data_error.h"
#include "common/wrong_use.h"
#include "formats/text_file.h"

void ValueOptions::addTo(Command& command, const std::vector<std::string>& units) {
    command.option("VALUE", values, "else lines of standard input; after \"--\" if one is negative");
    command.option("--from", from, "unit or layout of the values").required().oneOf(units);
    command.option("--to", to, "unit or layout to convert to").required().oneOf(units);
}

void ValueOptions::convertAll(const std::function<std::string(std::string_view)>& convert) const {
    std::string converted;
    for (const std::string& value : values) {
        try {
            converted += convert(trimmed(value)) + "\n";
        } catch (const DataError& error) {
            throw WrongUse("VALUE", error.what());
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
