// Options about files: code pages by their usual names, the formats of kFormats, files one after another.
#include "options/file_options.h"

#include <cstdio>
#include <cstdlib>
#include <map>

#include "common/data_error.h"
#include "common/text.h"
#include "common/wrong_use.h"

void addPageOption(Command& command, std::string& page, const char* name, const char* help) {
    // The library takes a name it does not know for UTF-8, so only these are passed on.
    static const std::map<std::string, std::string> pages = {
        {"932", "CP932"},           {"cp932", "CP932"},       {"shift_jis", "CP932"},
        {"shift-jis", "CP932"},     {"sjis", "CP932"},        {"ms932", "CP932"},
        {"windows-31j", "CP932"},   {"1252", "CP1252"},       {"cp1252", "CP1252"},
        {"windows-1252", "CP1252"}, {"utf-8", "UTF-8"},       {"utf8", "UTF-8"},
        {"cp65001", "UTF-8"},       {"65001", "UTF-8"},       {"latin-1", "LATIN1"},
        {"latin1", "LATIN1"},       {"iso-8859-1", "LATIN1"}, {"cp28591", "LATIN1"},
        {"28591", "LATIN1"}};
    command
        .option(
            name,
            [&page](const std::string& text) {
                const auto known = pages.find(lowered(text));
                if (known == pages.end())
                    throw WrongUse("\"" + text + "\"", "expected 932, 1252, UTF-8 or Latin-1");
                page = known->second;
            },
            help)
        .valueName("932|1252|UTF-8|Latin-1");
}

void useCodePage(const std::string& page) {
    if (page.empty())
        return;
#if defined(_WIN32)
    throw WrongUse("code page", "on Windows it is that of the system");
#else
    setenv("FIELDSCAN_ANSI_CODEPAGE", page.c_str(), 1);
#endif
}

void addFolderOption(Command& command, std::string& folder) {
    command.option("--out", folder, "the folder for what is written").valueName("DIR").showsDefault();
}

void FileListOptions::addTo(Command& command) {
    command.option("FILE", names, "files of the application").required();
    std::vector<std::string> formats;
    std::string list;
    for (const auto& [name, format] : kFormats) {
        formats.push_back(name);
        list += (list.empty() ? "" : ", ") + name;
    }
    command.option("--as", as, "the format, where the content does not show it:\n" + list)
        .oneOf(formats, "FORMAT");
    addPageOption(command, page);
}

Format FileListOptions::formatFor(const TextFile& file) const {
    return as.empty() ? formatOf(file) : kFormats.at(as);
}

bool FileListOptions::areAllFine(const std::function<bool(const TextFile&)>& isFine) const {
    useCodePage(page);
    bool allFine = true;
    for (const std::string& name : names) {
        try {
            allFine = isFine(TextFile(name)) && allFine;
        } catch (const DataError& error) {
            std::fprintf(stderr, "%s\n", error.what());
            allFine = false;
        }
    }
    return allFine;
}
