// The program's command line: subcommands and their options. CLI11 reads it. Only command.cpp includes CLI11,
// whose headers take 6 s to compile with -O3.
#ifndef TOOLS_OPTIONS_COMMAND_H
#define TOOLS_OPTIONS_COMMAND_H

#include <functional>
#include <initializer_list>
#include <memory>
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

// A subcommand. Copies are of the same one.
class Command {
public:
    explicit Command(CLI::App* app) : m_app(app) {}

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

// `details` end a help.
class Program {
public:
    Program(const char* name, const char* version, const char* summary, const char* details);
    ~Program();

    Command subcommand(const char* name, const char* summary, const char* details, std::function<void()> run);
    // Takes the words after the name of the program and calls `run` of the subcommand that they name, or
    // prints the help or the version that they ask for. False for wrong use, after printing what is wrong.
    bool run(std::vector<std::string> words);

private:
    std::unique_ptr<CLI::App> m_app;
};

#endif
