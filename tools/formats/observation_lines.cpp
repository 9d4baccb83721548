// A name must come back from the library as it is, since results are written with it.
#include "formats/observation_lines.h"

#include "common/angle_units.h"

ObservationLine::ObservationLine(const TextFile& file, int number, const char* expected)
    : m_file(file), m_number(number), m_fields(fieldsOf(file.line(static_cast<std::size_t>(number) - 1))) {
    if (m_fields[0].empty())
        fail(std::string("expected ") + expected + ", found no name");
    if (!isInCodePage(name()))
        fail("expected a name in the code page (--page)");
}

std::optional<double> ObservationLine::angle(std::size_t k, const std::string& unit) const {
    if (k >= m_fields.size() || m_fields[k].empty())
        return std::nullopt;
    const auto degrees = degreesOf(m_fields[k], unit);
    if (!degrees)
        fail("expected " + expectedAngle(unit) + " as field " + std::to_string(k + 1) + ", found \"" +
             std::string(m_fields[k]) + "\"");
    return degrees;
}

std::optional<double> ObservationLine::number(std::size_t k) const {
    if (k >= m_fields.size() || m_fields[k].empty())
        return std::nullopt;
    const auto value = numberOf(m_fields[k]);
    if (!value)
        fail("expected a number as field " + std::to_string(k + 1) + ", found \"" + std::string(m_fields[k]) +
             "\"");
    return value;
}

std::vector<ObservationLine> observationLines(const TextFile& file, const char* expected) {
    std::vector<ObservationLine> lines;
    for (std::size_t i = 0; i < file.lines().size(); ++i)
        if (!trimmed(file.line(i)).empty())
            lines.emplace_back(file, static_cast<int>(i) + 1, expected);
    if (lines.empty())
        file.fail(0, std::string("expected lines ") + expected);
    return lines;
}
