// The program fieldscan: the library's files and computations at a desk. Turns every outcome into an exit
// code.
#include <cstdio>
#include <exception>
#include <iostream>

#include "common/command_line.h"
#include "options/command.h"
#include "subcommands.h"

int main(int argc, char** argv) {
    const StandardStreams streams;
    ExitCode exitCode = kFine;
    try {
        Program program(
            "fieldscan", FIELDSCAN_VERSION, "Files and computations of a scanning total station.",
            "One FILE may be \"-\", standard input, but for scan and image. Without a code page files are "
            "in\n"
            "FIELDSCAN_ANSI_CODEPAGE, else UTF-8. Exit codes: 0 fine, 1 the data are wrong or a file cannot "
            "be\n"
            "read or written, 2 wrong use. \"fieldscan SUBCOMMAND --help\" lists its options.");
        for (const auto add :
             {addScan, addImage, addShow, addCheck, addConvert, addDirection, addInside, addHelmert, addDraw,
              addPolar, addResect, addAngle, addDistance, addPlan, addPhoto, addProject})
            add(program, exitCode);
        if (!program.run(commandLineWords(argc, argv)))
            exitCode = kWrongUse;
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
