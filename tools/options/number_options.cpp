// A wrong number is WrongUse.
#include "options/number_options.h"

#include <string_view>

#include "common/text.h"
#include "common/wrong_use.h"
#include "formats/fields.h"

Option addNumberOption(Command& command, const char* name, double& value, Sign sign, const char* help) {
    const auto take = [&value, name, sign](const std::string& text) {
        const auto number = numberOf(text);
        if (!number || (sign == Sign::positive && *number <= 0.0))
            throw WrongUse(name, std::string("expected a number") +
                                     (sign == Sign::positive ? " above 0" : "") + ", found \"" + text + "\"");
        value = *number;
    };
    return command.option(name, take, help).valueName("NUMBER").showsDefault(format("%g", value));
}

Option addNumbersOption(Command& command, const char* name, std::vector<double>& numbers,
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
            throw WrongUse(name, std::string("expected ") + list.expected + ", found \"" + text + "\"");
    };
    return command.option(name, take, help);
}

void addAngleUnitOption(Command& command, std::string& unit) {
    command.option("--unit", unit, "of the angles").showsDefault().oneOf({"degrees", "gon", "mil", "packed"});
}
