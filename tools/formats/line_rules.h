// What the lines of each format must hold.
#ifndef TOOLS_FORMATS_LINE_RULES_H
#define TOOLS_FORMATS_LINE_RULES_H

#include <string>
#include <vector>

#include "formats/format.h"

struct Fault {
    int line;  // from 1; 0: the file as a whole
    std::string what;
};

// The faults of a file, sorted by line; empty when it has none. The library's readers take what is no number
// for 0, or refuse a file without saying where; these rules are those of docs/file_formats.md, line by line.
std::vector<Fault> lineFaults(const TextFile& file, Format format);

#endif
