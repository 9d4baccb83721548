// The command line of the example programs: files in their order, --out DIR, --help, and their own options.
#ifndef EXAMPLES_COMMON_COMMAND_LINE_H
#define EXAMPLES_COMMON_COMMAND_LINE_H

#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct CommandLine {
    std::vector<std::filesystem::path> files;
    std::filesystem::path out = "out";
    bool help = false;
};

// Takes an option of the program's own; `value` gives the word behind it. False: there is no such option.
using TakeOption = std::function<bool(const std::string& word, const std::function<const char*()>& value)>;

// Throws UsageError. What is behind --help is not looked at.
CommandLine readCommandLine(int argc, char** argv, const TakeOption& takeOption);

// Puts the files that are given into the first places. Throws UsageError when they are too many.
void takeFiles(const std::vector<std::filesystem::path>& files,
               const std::vector<std::filesystem::path*>& places);

// A file of the sample, seen from the root of the source tree or where the build found it.
std::filesystem::path sampleFile(const char* name);

// Runs the program and gives its exit code: 0, 1 for a failure, 2 for a wrong command line.
int exitCodeOf(const char* program, const char* usage, const std::function<void()>& run);

#endif
