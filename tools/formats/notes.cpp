// Names are compared as the library reads them.
#include "formats/notes.h"

#include <algorithm>
#include <map>

#include "common/text.h"

namespace {

void addName(std::string_view field, int number, std::map<CString, int>& lines, std::vector<Fault>& notes) {
    const auto [first, isNew] = lines.emplace(pointName(field), number);
    if (!isNew)
        notes.push_back({number, "note: the name \"" + toUtf8(first->first) + "\" is also on line " +
                                     std::to_string(first->second)});
}

// Digits only, after a sign or without.
bool isWhole(std::string_view field) {
    if (!field.empty() && (field[0] == '-' || field[0] == '+'))
        field.remove_prefix(1);
    return !field.empty() &&
           std::all_of(field.begin(), field.end(), [](char c) { return c >= '0' && c <= '9'; });
}

}  // namespace

std::vector<Fault> notesOn(const TextFile& file, Format format) {
    std::vector<Fault> notes;
    const auto& lines = file.lines();
    if (std::all_of(lines.begin(), lines.end(), [](const std::string& line) { return isBlank(line); }))
        notes.push_back({0, "note: the file is empty"});
    const bool isImage = format == Format::imageCoordinate, isVersioned = format == Format::versionedScan;
    if (!isImage && !isVersioned && !hasPointLines(format))
        return notes;
    std::map<CString, int> firstLines;
    for (std::size_t i = isImage ? 3 : isVersioned ? 1 : 0; i < lines.size(); ++i) {
        const int number = static_cast<int>(i) + 1;
        for (std::string_view rest = lines[i]; !isBlank(rest);) {
            const std::size_t end = std::min(rest.find('\r'), rest.size());
            const std::string_view part = rest.substr(0, end);
            if (!isBlank(part))
                addName(isImage ? wordsOf(part)[0] : fieldsOf(part)[0], number, firstLines, notes);
            rest.remove_prefix(std::min(end + 1, rest.size()));
        }
    }
    return notes;
}

bool seemsToHaveDecimalCommas(const TextFile& file) {
    const auto& lines = file.lines();
    return std::all_of(lines.begin(), lines.end(), [](const std::string& line) {
        const auto fields = fieldsOf(line);
        return isBlank(line) ||
               (fields.size() == 7 && std::all_of(fields.begin() + 1, fields.end(), isWhole));
    });
}
