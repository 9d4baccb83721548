// The subcommands of the program. Each adds itself, and runs when the command line names it. A new one is a
// file of its name in this folder, its line below, in main.cpp and in CMakeLists.txt, rows in
// tests/tools/rows, and a row on docs/tools.md.
#ifndef TOOLS_SUBCOMMANDS_H
#define TOOLS_SUBCOMMANDS_H

#include <memory>
#include <utility>

#include "options/command.h"

enum ExitCode { kFine = 0, kDataAreWrong = 1, kWrongUse = 2 };

// Adds a subcommand whose function `run` gets its options and returns the exit code. The options to be filled
// live as long as the subcommand. `run` may throw WrongUse, and std::runtime_error with a text
// for the operator, which means wrong data.
template <class Options>
std::pair<Command, Options*> addSubcommand(CLI::App& program, ExitCode& exitCode, const char* name,
                                           const char* summary, const char* details,
                                           ExitCode (*run)(const Options&)) {
    const auto options = std::make_shared<Options>();
    const Command command(program, name, summary, details,
                          [options, run, &exitCode] { exitCode = run(*options); });
    return {command, options.get()};
}

void addScan(CLI::App& program, ExitCode& exitCode);
void addImage(CLI::App& program, ExitCode& exitCode);
void addShow(CLI::App& program, ExitCode& exitCode);
void addCheck(CLI::App& program, ExitCode& exitCode);
void addConvert(CLI::App& program, ExitCode& exitCode);
void addDirection(CLI::App& program, ExitCode& exitCode);
void addInside(CLI::App& program, ExitCode& exitCode);
void addHelmert(CLI::App& program, ExitCode& exitCode);
void addDraw(CLI::App& program, ExitCode& exitCode);
void addPolar(CLI::App& program, ExitCode& exitCode);
void addResect(CLI::App& program, ExitCode& exitCode);
void addAngle(CLI::App& program, ExitCode& exitCode);
void addDistance(CLI::App& program, ExitCode& exitCode);
void addPlan(CLI::App& program, ExitCode& exitCode);
void addPhoto(CLI::App& program, ExitCode& exitCode);
void addProject(CLI::App& program, ExitCode& exitCode);

#endif
