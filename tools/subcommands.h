// The subcommands. Each adds itself to the program and runs when the command line asks for it; it throws
// DataError, or sets `exitCode` to kDataAreWrong when it has told what is wrong itself.
#ifndef TOOLS_SUBCOMMANDS_H
#define TOOLS_SUBCOMMANDS_H

#include <CLI/CLI.hpp>

enum ExitCode { kFine = 0, kDataAreWrong = 1, kWrongUse = 2 };

void addShow(CLI::App& program, int& exitCode);
void addCheck(CLI::App& program, int& exitCode);
void addConvert(CLI::App& program, int& exitCode);
void addDirection(CLI::App& program, int& exitCode);
void addInside(CLI::App& program, int& exitCode);
void addHelmert(CLI::App& program, int& exitCode);
void addDraw(CLI::App& program, int& exitCode);

#endif
