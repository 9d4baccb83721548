// Each function passes on to that of CLI11 with the same task.
#include "options/command.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <utility>

#include "common/wrong_use.h"

namespace {

void addSet(CLI::Option& option, CLI::IsMember set, const char* name) {
    if (name)
        option.type_name(name)->check(set.description(""));
    else
        option.check(set);
}

}  // namespace

Option& Option::required() {
    m_option->required();
    return *this;
}

Option& Option::excludes(const Option& other) {
    m_option->excludes(other.m_option);
    return *this;
}

Option& Option::needs(const Option& other) {
    m_option->needs(other.m_option);
    return *this;
}

Option& Option::valueName(const char* name) {
    m_option->type_name(name);
    return *this;
}

Option& Option::showsDefault() {
    m_option->capture_default_str();
    return *this;
}

Option& Option::showsDefault(const std::string& text) {
    m_option->default_str(text);
    return *this;
}

Option& Option::oneOf(const std::vector<std::string>& values, const char* name) {
    addSet(*m_option, CLI::IsMember(values), name);
    return *this;
}

Option& Option::oneOf(std::initializer_list<int> values, const char* name) {
    addSet(*m_option, CLI::IsMember(values), name);
    return *this;
}

Option& Option::between(int least, int most) {
    m_option->check(CLI::Range(least, most));
    return *this;
}

Option& Option::check(std::function<std::string(const std::string&)> faultOf) {
    m_option->check(std::move(faultOf));
    return *this;
}

bool Option::isGiven() const { return m_option->count() > 0; }

Option Command::option(const char* name, std::string& value, const std::string& help) {
    return Option(m_app->add_option(name, value, help));
}

Option Command::option(const char* name, std::vector<std::string>& values, const std::string& help) {
    return Option(m_app->add_option(name, values, help));
}

Option Command::option(const char* name, int& value, const std::string& help) {
    return Option(m_app->add_option(name, value, help));
}

Option Command::option(const char* name, std::function<void(const std::string&)> take,
                       const std::string& help) {
    return Option(m_app->add_option_function<std::string>(name, take, help));
}

Option Command::flag(const char* name, bool& isGiven, const std::string& help) {
    return Option(m_app->add_flag(name, isGiven, help));
}

void Command::addToHelp(std::function<std::string()> paragraph) { m_app->footer(std::move(paragraph)); }

Program::Program(const char* name, const char* version, const char* summary, const char* details)
    : m_app(std::make_unique<CLI::App>(summary, name)) {
    m_app->set_version_flag("--version", version);
    m_app->footer(details);
}

Program::~Program() = default;

Command Program::subcommand(const char* name, const char* summary, const char* details,
                            std::function<void()> run) {
    CLI::App* const command = m_app->add_subcommand(name, summary);
    command->footer(details);
    command->callback(std::move(run));
    return Command(command);
}

bool Program::run(std::vector<std::string> words) {
    std::reverse(words.begin(), words.end());  // CLI11 takes them from the end
    try {
        m_app->parse(words);
        if (m_app->get_subcommands().empty())  // require_subcommand would not name a misspelt one
            throw CLI::RequiredError("SUBCOMMAND");
    } catch (const CLI::ParseError& error) {  // asking for the help is one too
        return m_app->exit(error) == 0;
    } catch (const WrongUse& error) {
        m_app->exit(CLI::ValidationError(error.what()));
        return false;
    }
    return true;
}
