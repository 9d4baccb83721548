// Subcommands and their options. CLI11 reads the command line; only command.cpp and main.cpp include it,
// since a file that does takes ten times as long to compile.
#ifndef TOOLS_OPTIONS_COMMAND_H
#define TOOLS_OPTIONS_COMMAND_H

#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
}  // namespace CLI

// An option or a positional of a subcommand. Copies are of the same one.
class Option {
public:
    explicit Option(CLI::Option* option) : m_option(option) {}

    Option& required();
    Option& excludes(const Option& other);
    Option& needs(const Option& other);
    Option& valueName(const char* name);  // in the help, where else the type is
    // The default in the help: what the variable holds now, or this text.
    Option& showsDefault();
    Option& showsDefault(const std::string& text);
    // The help lists the values, or has this name for them.
    Option& oneOf(const std::vector<std::string>& values, const char* name = nullptr);
    Option& oneOf(std::initializer_list<int> values, const char* name);
    Option& between(int least, int most);
    // `faultOf` returns what is wrong with a value; empty where nothing is.
    Option& check(std::function<std::string(const std::string&)> faultOf);

    bool isGiven() const;

private:
    CLI::Option* m_option;
};

// A subcommand; the program owns it, and copies are of the same one.
class Command {
public:
    // `details` end the help. `run` is called when the command line names the subcommand and is right.
    Command(CLI::App& program, const char* name, const char* summary, const char* details,
            std::function<void()> run);

    // A name without dashes is a positional. The variable must live as long as the program.
    Option option(const char* name, std::string& value, const std::string& help);
    Option option(const char* name, std::vector<std::string>& values, const std::string& help);
    Option option(const char* name, int& value, const std::string& help);
    // `take` gets the value, and throws WrongUse for one that it refuses.
    Option option(const char* name, std::function<void(const std::string&)> take, const std::string& help);
    Option flag(const char* name, bool& isGiven, const std::string& help);

    // A paragraph of the help before the details, made when the help is printed.
    void addToHelp(std::function<std::string()> paragraph);

private:
    CLI::App* m_app;
};

#endif
