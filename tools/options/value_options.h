// Values to convert: on the command line, or a line each from standard input.
#ifndef TOOLS_OPTIONS_VALUE_OPTIONS_H
#define TOOLS_OPTIONS_VALUE_OPTIONS_H

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "options/command.h"

struct ValueOptions {
    std::vector<std::string> values;
    std::string from, to;

    void addTo(Command& command, const std::vector<std::string>& units);
    // Prints what `convert` makes of each value, a line each, or nothing when it throws a DataError for one
    // of them. That becomes a WrongUse for a value of the command line; for standard input its
    // text gets the line's number.
    void convertAll(const std::function<std::string(std::string_view)>& convert) const;
};

#endif
