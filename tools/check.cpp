// check: what is wrong with files, line by line.
#include <algorithm>
#include <cstdio>
#include <memory>

#include "contents.h"
#include "line_rules.h"
#include "options.h"
#include "subcommands.h"

namespace {

constexpr std::size_t kMostShown = 20;  // of a file; one of another kind has a fault in every line

struct Options {
    std::vector<std::string> files;
    std::string as, page;
    bool all = false;
};

bool isFine(const TextFile& file, const Options& options) {
    const Format format = options.as.empty() ? formatOf(file) : kFormats.at(options.as);
    std::vector<Fault> faults = lineFaults(file, format);
    Contents contents;
    if (format != Format::unknown && !readContents(file, format, contents) && faults.empty())
        faults.push_back({0, "expected a file that the library reads; it refuses this one"});
    const bool isArea = format == Format::scanArea || format == Format::scanArea2;
    if (isArea && faults.empty() && !areaFault(contents.area).empty())
        faults.push_back({0, areaFault(contents.area)});

    const std::size_t shown = options.all ? faults.size() : std::min(faults.size(), kMostShown);
    for (std::size_t i = 0; i < shown; ++i)
        std::fprintf(stderr, "%s\n", file.message(faults[i].line, faults[i].what).c_str());
    if (shown < faults.size())
        std::fprintf(stderr, "%s\n",
                     file.message(0, std::to_string(faults.size() - shown) + " more (--all)").c_str());
    std::printf("%s,%s,%zu\n", file.name().c_str(), nameOf(format), faults.size());
    return faults.empty();
}

void run(const Options& options, int& exitCode) {
    useCodePage(options.page);
    for (const std::string& name : options.files) {
        try {
            if (!isFine(TextFile(name), options))
                exitCode = kDataAreWrong;
        } catch (const DataError& error) {
            std::fprintf(stderr, "%s\n", error.what());
            exitCode = kDataAreWrong;
        }
    }
}

}  // namespace

void addCheck(CLI::App& program, int& exitCode) {
    const auto options = std::make_shared<Options>();
    CLI::App* command = program.add_subcommand("check", "Tells what is wrong with files");
    command->footer(
        "Standard output: a line FILE,FORMAT,FAULTS each. Standard error: the faults, \"FILE:LINE: expected\n"
        "...\". Exit code 1 when there is any.");
    command->add_option("FILE", options->files, "files of the application")->required();
    addFormatOption(*command, options->as);
    addCodePageOption(*command, "--page", options->page, "code page of the files");
    command->add_flag("--all", options->all, "tells all faults, not only the first 20 of a file");
    command->callback([options, &exitCode] { run(*options, exitCode); });
}
