// Options that several subcommands have: the code page and the format of files.
#ifndef TOOLS_OPTIONS_H
#define TOOLS_OPTIONS_H

#include <CLI/CLI.hpp>
#include <string>

// Adds the option; `page` is then one that useCodePage takes, or empty where it is not given.
CLI::Option* addCodePageOption(CLI::App& command, const std::string& name, std::string& page,
                               const std::string& help);

// Makes the library read and write in the page from here on. Empty: as before. Throws CLI::ValidationError on
// Windows, where the system decides.
void useCodePage(const std::string& page);

// --as: one of kFormats (format.h), or empty where it is not given.
void addFormatOption(CLI::App& command, std::string& format);

#endif
