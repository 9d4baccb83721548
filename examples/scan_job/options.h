// What the command line asks for.
#ifndef EXAMPLES_SCAN_JOB_OPTIONS_H
#define EXAMPLES_SCAN_JOB_OPTIONS_H

#include <fieldscan/points.h>

#include <filesystem>
#include <stdexcept>

extern const char kUsage[];

struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct Options {
    std::filesystem::path outline, station, points;
    std::filesystem::path out = "out";
    bool stationGiven = false;  // then `givenStation`, without a name, counts instead of the file
    CXYZ givenStation;
    double instrumentHeight = 1.5;
    bool help = false;
};

// Throws UsageError.
Options readOptions(int argc, char** argv);

#endif
