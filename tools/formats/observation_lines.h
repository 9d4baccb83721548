// Lines of observations: a name, then fields that each subcommand defines, separated by commas.
#ifndef TOOLS_FORMATS_OBSERVATION_LINES_H
#define TOOLS_FORMATS_OBSERVATION_LINES_H

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "formats/text_file.h"

// A line of `file`, which must live as long.
class ObservationLine {
public:
    ObservationLine(const TextFile& file, int number, const char* expected);

    int number() const { return m_number; }
    std::string name() const { return std::string(m_fields[0]); }  // in the code page of the file
    std::size_t fieldCount() const { return m_fields.size(); }
    // Field k as an angle in degrees, and as a number; nothing where it is empty or missing. They throw
    // DataError for something else.
    std::optional<double> angle(std::size_t k, const std::string& unit) const;
    std::optional<double> number(std::size_t k) const;
    [[noreturn]] void fail(const std::string& what) const { m_file.fail(m_number, what); }

private:
    const TextFile& m_file;
    int m_number;  // from 1
    std::vector<std::string_view> m_fields;
};

// All lines but blank ones. Throws DataError when there is none, or one has no name or a name that the code
// page does not hold. `expected`: the fields, for messages.
std::vector<ObservationLine> observationLines(const TextFile& file, const char* expected);

#endif
