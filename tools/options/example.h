// The example in the help of a subcommand.
#ifndef TOOLS_OPTIONS_EXAMPLE_H
#define TOOLS_OPTIONS_EXAMPLE_H

#include <string>

#include "options/command.h"

// Adds "Example: fieldscan WORDS" to the help. Words that begin with @ are files of the sample data; the help
// has their place on this computer, so that the line runs as it stands.
void addExample(Command& command, const std::string& words);

#endif
