#include "options.h"

#include <cstdlib>
#include <map>

#include "format.h"

CLI::Option* addCodePageOption(CLI::App& command, const std::string& name, std::string& page,
                               const std::string& help) {
    // The library takes a name it does not know for UTF-8, so only these come through.
    static const std::map<std::string, std::string> pages = {
        {"932", "CP932"},      {"cp932", "CP932"},   {"1252", "CP1252"},
        {"cp1252", "CP1252"},  {"utf-8", "UTF-8"},   {"utf8", "UTF-8"},
        {"latin-1", "LATIN1"}, {"latin1", "LATIN1"}, {"iso-8859-1", "LATIN1"}};
    return command
        .add_option_function<std::string>(
            name,
            [&page](const std::string& text) {
                const auto known = pages.find(CLI::detail::to_lower(text));
                if (known == pages.end())
                    throw CLI::ValidationError("\"" + text + "\"", "expected 932, 1252, UTF-8 or Latin-1");
                page = known->second;
            },
            help)
        ->type_name("932|1252|UTF-8|Latin-1");
}

void useCodePage(const std::string& page) {
    if (page.empty())
        return;
#if defined(_WIN32)
    throw CLI::ValidationError("code page", "on Windows it is that of the system");
#else
    setenv("FIELDSCAN_ANSI_CODEPAGE", page.c_str(), 1);
#endif
}

void addFormatOption(CLI::App& command, std::string& format) {
    std::string names;
    for (const auto& [name, each] : kFormats)
        names += (names.empty() ? "" : ", ") + name;
    command.add_option("--as", format, "the format, where the content does not tell:\n" + names)
        ->type_name("FORMAT")
        ->check(CLI::IsMember(&kFormats).description(""));
}
