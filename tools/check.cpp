// check: what is wrong with files, line by line.
#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "formats/contents.h"
#include "formats/notes.h"
#include "options/file_options.h"
#include "scan/area_faults.h"
#include "subcommands.h"

namespace {

constexpr std::size_t kMostShown = 20;  // of a file; one of another format has a fault in every line

struct Options {
    FileListOptions files;
    bool all = false;
};

std::vector<Fault> faultsOf(const TextFile& file, Format format) {
    std::vector<Fault> faults = lineFaults(file, format);
    Contents contents;
    if (format != Format::unknown && !readContents(file, format, contents) && faults.empty())
        faults.push_back({0, "expected a file that the library reads; it refuses this one"});
    if (format == Format::occupied && seemsToHaveDecimalCommas(file))
        faults.push_back({1,
                          "expected numbers with decimal points, found what seem to be decimal commas: seven "
                          "fields in every line, all numbers whole"});
    const bool isArea = format == Format::scanArea || format == Format::scanArea2;
    if (isArea && faults.empty()) {
        const std::string fault = areaFault(contents.area);
        if (!fault.empty())
            faults.push_back({0, fault});
    }
    return faults;
}

void tell(const TextFile& file, const std::vector<Fault>& list, const Options& options) {
    const std::size_t shown = options.all ? list.size() : std::min(list.size(), kMostShown);
    for (std::size_t i = 0; i < shown; ++i)
        std::fprintf(stderr, "%s\n", file.message(list[i].line, list[i].what).c_str());
    if (shown < list.size())
        std::fprintf(stderr, "%s\n",
                     file.message(0, std::to_string(list.size() - shown) + " more (--all)").c_str());
}

bool isFine(const TextFile& file, const Options& options) {
    const Format format = options.files.formatFor(file);
    const std::vector<Fault> faults = faultsOf(file, format);
    tell(file, faults, options);
    tell(file, notesOn(file, format), options);
    std::printf("%s,%s,%zu\n", file.name().c_str(), nameOf(format), faults.size());
    return faults.empty();
}

ExitCode run(const Options& options) {
    return options.files.areAllFine([&](const TextFile& file) { return isFine(file, options); })
               ? kFine
               : kDataAreWrong;
}

}  // namespace

void addCheck(Program& program, ExitCode& exitCode) {
    auto [command, options] = addSubcommand(
        program, exitCode, "check", "Finds what is wrong with files",
        "Standard output: a line FILE,FORMAT,FAULTS for each. Standard error: the faults, \"FILE:LINE: "
        "expected\n...\". Exit code 1 when there is any. Empty files and names that come again get "
        "notes.\n"
        "Example, in the folder of the sample data:\n"
        "  fieldscan check facade_points.csv image_camera.txt",
        run);
    options->files.addTo(command);
    command.flag("--all", options->all, "lists all faults, not only the first 20 of a file");
}
