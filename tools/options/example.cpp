// The place of the sample data is looked for only when the help is printed.
#include "options/example.h"

#include <string_view>

#include "common/data_error.h"
#include "common/files.h"
#include "formats/fields.h"

namespace {

std::string sample(const std::string& name) {
    try {
        const std::string path = fileOrSample("", name.c_str()).generic_u8string();
        return path.find(' ') == std::string::npos ? path : "\"" + path + "\"";
    } catch (const DataError&) {  // the help is printed without them too
        return name;
    }
}

}  // namespace

void addExample(Command& command, const std::string& words) {
    command.addToHelp([words] {
        std::string line = "Example: fieldscan";
        for (const std::string_view word : wordsOf(words))
            line += " " + (word[0] == '@' ? sample(std::string(word.substr(1))) : std::string(word));
        return line + "\n";
    });
}
