// The program fieldscan: the library's files and computations at a desk. Reads the command line by CLI11 and
// turns every outcome into an exit code.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <exception>
#include <iostream>

#include "common/command_line.h"
#include "common/wrong_use.h"
#include "subcommands.h"

int main(int argc, char** argv) {
    const StandardStreams streams;
    ExitCode exitCode = kFine;
    try {
        CLI::App program("Files and computations of a scanning total station.", "fieldscan");
        program.set_version_flag("--version", FIELDSCAN_VERSION);
        program.footer(
            "One FILE may be \"-\", standard input, but for scan and image. Without a code page files are "
            "in\n"
            "FIELDSCAN_ANSI_CODEPAGE, else UTF-8. Exit codes: 0 fine, 1 the data are wrong or a file cannot "
            "be\n"
            "read or written, 2 wrong use. \"fieldscan SUBCOMMAND --help\" lists its options.");
        for (const auto add :
             {addScan, addImage, addShow, addCheck, addConvert, addDirection, addInside, addHelmert, addDraw,
              addPolar, addResect, addAngle, addDistance, addPlan, addPhoto, addProject})
            add(program, exitCode);
        try {
            std::vector<std::string> words = commandLineWords(argc, argv);
            std::reverse(words.begin(), words.end());  // CLI11 takes them from the end
            program.parse(words);
            if (program.get_subcommands().empty())  // require_subcommand would not name a misspelt one
                throw CLI::RequiredError("SUBCOMMAND");
        } catch (const CLI::ParseError& error) {
            exitCode = program.exit(error) == 0 ? kFine : kWrongUse;
        } catch (const WrongUse& error) {
            program.exit(CLI::ValidationError(error.what()));
            exitCode = kWrongUse;
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        exitCode = kDataAreWrong;
    }
    if (!std::cout.flush() || std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
        if (!streams.readerIsGone())
            std::fprintf(stderr, "(standard output): cannot be written\n");
        exitCode = kDataAreWrong;
    }
    return exitCode;
}
