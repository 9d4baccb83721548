#include "common/command_line.h"

#include <cstdio>
#include <exception>

namespace fs = std::filesystem;

CommandLine readCommandLine(int argc, char** argv, const TakeOption& takeOption) {
    CommandLine line;
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        const auto value = [&]() -> const char* {
            if (i + 1 >= argc)
                throw UsageError(word + " takes a value");
            return argv[++i];
        };
        if (word == "--help" || word == "-h") {
            line.help = true;
            return line;
        }
        if (word == "--out")
            line.out = value();
        else if (!word.empty() && word[0] != '-')
            line.files.push_back(word);
        else if (!takeOption(word, value))
            throw UsageError("unknown option \"" + word + "\"");
    }
    return line;
}

void takeFiles(const std::vector<fs::path>& files, const std::vector<fs::path*>& places) {
    if (files.size() > places.size())
        throw UsageError("one file too many: \"" + files[places.size()].u8string() + "\"");
    for (std::size_t k = 0; k < files.size(); ++k)
        *places[k] = files[k];
}

fs::path sampleFile(const char* name) {
    fs::path here = fs::path("examples") / "data" / name;
#if defined(FIELDSCAN_EXAMPLE_DATA)
    std::error_code ignored;
    if (!fs::exists(here, ignored))
        return fs::path(FIELDSCAN_EXAMPLE_DATA) / name;
#endif
    return here;
}

int exitCodeOf(const char* program, const char* usage, const std::function<void()>& run) {
    try {
        run();
        return 0;
    } catch (const UsageError& error) {
        std::fprintf(stderr, "%s: %s\n\n%s", program, error.what(), usage);
        return 2;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s: %s\n", program, error.what());
        return 1;
    }
}
