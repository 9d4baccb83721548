// The failure that a subcommand reports to the operator.
#ifndef TOOLS_COMMON_DATA_ERROR_H
#define TOOLS_COMMON_DATA_ERROR_H

#include <stdexcept>
#include <string>
#include <system_error>

// The data are wrong, or a file cannot be read or written; the text is for the operator.
struct DataError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// "NAME:LINE: what"; line 0 is the file as a whole, "NAME: what".
inline std::string messageFor(const std::string& name, int line, const std::string& what) {
    return (line > 0 ? name + ":" + std::to_string(line) : name) + ": " + what;
}

// ": No such file or directory", in the words of the system for a value of errno; empty for 0.
inline std::string reasonFor(int error) {
    return error == 0 ? "" : ": " + std::generic_category().message(error);
}

#endif
