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
// live as long as the subcommand. `run` may throw WrongUse, and std::runtime_error with a text for the
// operator, which means wrong data.
template <class Options>
std::pair<Command, Options*> addSubcommand(Program& program, ExitCode& exitCode, const char* name,
                                           const char* summary, const char* details,
                                           ExitCode (*run)(const Options&)) {
    const auto options = std::make_shared<Options>();
    return {
        program.subcommand(name, summary, details, [options, run, &exitCode] { exitCode = run(*options); }),
        options.get()};
}

void addScan(Program& program, ExitCode& exitCode);
void addImage(Program& program, ExitCode& exitCode);
void addShow(Program& program, ExitCode& exitCode);
void addCheck(Program& program, ExitCode& exitCode);
void addConvert(Program& program, ExitCode& exitCode);
void addDirection(Program& program, ExitCode& exitCode);
void addInside(Program& program, ExitCode& exitCode);
void addHelmert(Program& program, ExitCode& exitCode);
void addDraw(Program& program, ExitCode& exitCode);
void addPolar(Program& program, ExitCode& exitCode);
void addResect(Program& program, ExitCode& exitCode);
void addAngle(Program& program, ExitCode& exitCode);
void addDistance(Program& program, ExitCode& exitCode);
void addPlan(Program& program, ExitCode& exitCode);
void addPhoto(Program& program, ExitCode& exitCode);
void addProject(Program& program, ExitCode& exitCode);

#endif
