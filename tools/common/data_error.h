// The failure that a subcommand reports to the operator.
#ifndef TOOLS_COMMON_DATA_ERROR_H
#define TOOLS_COMMON_DATA_ERROR_H

#include <stdexcept>

// The data are wrong, or a file cannot be read or written; the text is for the operator.
struct DataError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

#endif
