// What the command line asks for.
#ifndef EXAMPLES_IMAGE_MEASUREMENT_OPTIONS_H
#define EXAMPLES_IMAGE_MEASUREMENT_OPTIONS_H

#include <filesystem>

extern const char kUsage[];

struct Options {
    std::filesystem::path camera, imagePoints, objectPoints, orientation;
    std::filesystem::path out;
    bool help = false;
};

// Throws UsageError (common/command_line.h).
Options readOptions(int argc, char** argv);

#endif
