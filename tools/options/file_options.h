// Options of several subcommands about files: their names, code page, format, and the folder for results.
#ifndef TOOLS_OPTIONS_FILE_OPTIONS_H
#define TOOLS_OPTIONS_FILE_OPTIONS_H

#include <functional>
#include <string>
#include <vector>

#include "formats/format.h"
#include "options/command.h"

// Adds an option for a code page; `page` is then one that useCodePage takes, or empty where it is not given.
void addPageOption(Command& command, std::string& page, const char* name = "--page",
                   const char* help = "code page of the files");

// Makes the library read and write in this code page from here on; an empty one changes nothing. Throws
// WrongUse on Windows, where the system decides.
void useCodePage(const std::string& page);

// --out DIR, the folder for what is written.
void addFolderOption(Command& command, std::string& folder);

// FILE..., --as and --page: for subcommands that look into files of any format.
struct FileListOptions {
    std::vector<std::string> names;
    std::string as, page;

    void addTo(Command& command);
    // The format that --as names, else the one that the content shows.
    Format formatFor(const TextFile& file) const;
    // Calls `isFine` with each file and returns true if all are fine. A DataError is printed, and the next
    // file follows.
    bool areAllFine(const std::function<bool(const TextFile&)>& isFine) const;
};

#endif
