// Wrong use that subcommands notice: an option that lacks another, a text that is no number.
#ifndef TOOLS_COMMON_WRONG_USE_H
#define TOOLS_COMMON_WRONG_USE_H

#include <stdexcept>
#include <string>

// The text is for the operator; it is printed like the faults that CLI11 finds.
struct WrongUse : std::runtime_error {
    using std::runtime_error::runtime_error;
    WrongUse(const std::string& option, const std::string& what) : WrongUse(option + ": " + what) {}
};

#endif
