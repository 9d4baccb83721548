// Options that are numbers, read as those in files are: not "nan", "inf" or hexadecimal, which CLI11 would
// take.
#ifndef TOOLS_OPTIONS_NUMBER_OPTIONS_H
#define TOOLS_OPTIONS_NUMBER_OPTIONS_H

#include <string>
#include <vector>

#include "options/command.h"

enum class Sign { any, positive };

// What `value` holds before is the default.
Option addNumberOption(Command& command, const char* name, double& value, Sign sign, const char* help);

// How many numbers an option takes, between commas, and their range.
struct NumberList {
    std::size_t least, most;
    double lowest, highest;
    const char* expected;  // for messages: "two zenith angles TOP,BOTTOM from 0 to 180"
};

Option addNumbersOption(Command& command, const char* name, std::vector<double>& numbers,
                        const NumberList& list, const char* help);

// Adds --unit of angles, one of degrees, gon, mil and packed.
void addAngleUnitOption(Command& command, std::string& unit);

#endif
