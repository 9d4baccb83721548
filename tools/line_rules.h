// What the lines of each format have to hold.
#ifndef TOOLS_LINE_RULES_H
#define TOOLS_LINE_RULES_H

#include <string>
#include <vector>

#include "format.h"

struct Fault {
    int line;  // from 1; 0: the file as a whole
    std::string what;
};

// The readers of the library take what is no number for 0, or refuse a file without saying where. These rules
// are those of docs/file_formats.md, line by line.
std::vector<Fault> lineFaults(const TextFile& file, Format format);

#endif
