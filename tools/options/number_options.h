// Options that are numbers, read as those in files are: not "nan", "inf" or hexadecimal, which CLI11 would
// take.
#ifndef TOOLS_OPTIONS_NUMBER_OPTIONS_H
#define TOOLS_OPTIONS_NUMBER_OPTIONS_H

#include <CLI/CLI.hpp>
#include <string>

enum class Sign { any, positive };

// What `value` holds before is the default.
CLI::Option* addNumberOption(CLI::App& command, const char* name, double& value, Sign sign, const char* help);

// Adds --unit of angles, one of degrees, gon, mil and packed.
void addAngleUnitOption(CLI::App& command, std::string& unit);

#endif
