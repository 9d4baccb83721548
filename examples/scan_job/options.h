// What the command line asks for.
#ifndef EXAMPLES_SCAN_JOB_OPTIONS_H
#define EXAMPLES_SCAN_JOB_OPTIONS_H

#include <fieldscan/points.h>

#include <filesystem>

extern const char kUsage[];

struct Options {
    std::filesystem::path outline, station, points;
    std::filesystem::path out;
    bool stationGiven = false;  // then `givenStation`, without a name, counts instead of the file
    CXYZ givenStation;
    double instrumentHeight = 1.5;
    bool help = false;
};

// Throws UsageError (common/command_line.h).
Options readOptions(int argc, char** argv);

#endif
