// The program fieldscan: the library's files and computations at a desk. Reads the command line by CLI11 and
// turns every outcome into an exit code.
#include <csignal>
#include <cstdio>
#include <exception>
#include <iostream>

#include "subcommands.h"

#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>
#endif

namespace {

volatile std::sig_atomic_t readerIsGone = 0;

}  // namespace

int main(int argc, char** argv) {
#if defined(_WIN32)
    // Files through the standard streams are bytes.
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
#else
    // A reader that has seen enough, such as head, ends the program, but its temporary files are removed
    // first.
    std::signal(SIGPIPE, [](int) { readerIsGone = 1; });
#endif
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
        for (const auto add : {addScan, addImage, addShow, addCheck, addConvert, addDirection, addInside,
                               addHelmert, addDraw, addPolar, addResect, addAngle, addDistance})
            add(program, exitCode);
        try {
            program.parse(argc, argv);
            if (program.get_subcommands().empty())  // require_subcommand would not name a misspelt one
                throw CLI::RequiredError("SUBCOMMAND");
        } catch (const CLI::ParseError& error) {
            exitCode = program.exit(error) == 0 ? kFine : kWrongUse;
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        exitCode = kDataAreWrong;
    }
    if (!std::cout.flush() || std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
        if (!readerIsGone)
            std::fprintf(stderr, "(standard output): cannot be written\n");
        exitCode = kDataAreWrong;
    }
    return exitCode;
}
