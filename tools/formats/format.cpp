// Version lines first, then the formats whose first lines are strict, then lines of points.
#include "formats/format.h"

#include <algorithm>

namespace {

struct Version {
    const char* line;
    Format format;
};

constexpr Version kVersions[] = {
    {"FIELD_SCAN_MPT_FILEVER1.0", Format::versionedScan}, {"WQ_FSCAN_AREA_FORMAT_V2", Format::scanArea2},
    {"KVX4NP_PANORAMAINFO_FILEVER1.0", Format::panorama}, {"KZ5_EXT_FILEVER1.0", Format::exterior},
    {"FIELD_SCAN_UNI_FILEVER1.0", Format::unitSettings},  {"FIELD_SCAN_UNI_FILEVER1.1", Format::unitSettings},
    {"FIELD_SCAN_RNG_FILEVER1.0", Format::range},
};

constexpr std::size_t kFirstLines = 5;  // that a camera file is known by

// True if the first `count` words of the line pass the test.
template <class Test>
bool beginsWith(const std::string& line, std::size_t count, Test test) {
    const auto words = wordsOf(line);
    return words.size() >= count &&
           std::all_of(words.begin(), words.begin() + static_cast<int>(count),
                       [&](std::string_view word) { return test(word).has_value(); });
}

bool isPoint(const std::vector<std::string_view>& fields) {
    return fields.size() >= 4 && numberOf(fields[1]) && numberOf(fields[2]) && numberOf(fields[3]);
}

}  // namespace

const std::map<std::string, Format> kFormats = {
    {"point", Format::point},
    {"occupied-point", Format::occupied},
    {"image-coordinate", Format::imageCoordinate},
    {"scan-result", Format::scanResult},
    {"versioned-scan", Format::versionedScan},
    {"camera", Format::camera},
    {"scan-area", Format::scanArea},
    {"scan-area-2", Format::scanArea2},
    {"panorama", Format::panorama},
    {"exterior-orientation", Format::exterior},
    {"unit-settings", Format::unitSettings},
    {"range", Format::range},
};

const char* nameOf(Format format) {
    for (const auto& [name, each] : kFormats)
        if (each == format)
            return name.c_str();
    return "unknown";
}

void FormatFinder::keepFirst(std::string_view line) {
    if (m_first.size() == kFirstLines)
        return;
    m_first.emplace_back(line);
    m_formatOfFirst = formatOfFirst();
}

void FormatFinder::takePoint(std::string_view line) {
    keepFirst(line);
    m_allBlank = false;
    m_hasPoint = true;
}

void FormatFinder::take(std::string_view line) {
    keepFirst(line);
    m_allBlank = m_allBlank && isBlank(line);
    fieldsOf(line, m_fields);
    for (std::size_t i = 4; i < m_fields.size(); ++i)
        m_onlyNumbers = m_onlyNumbers && numberOf(m_fields[i]);
    m_hasMore = m_hasMore || m_fields.size() > 4;
    const std::size_t end = line.find('\r');
    if (end != std::string_view::npos) {
        m_hasReturn = true;
        fieldsOf(line.substr(0, end), m_fields);
    }
    m_hasPoint = m_hasPoint || isPoint(m_fields);
}

Format FormatFinder::formatOfFirst() const {
    const auto line = [this](std::size_t i) { return i < m_first.size() ? m_first[i] : std::string(); };
    const std::string first(trimmed(line(0)));
    for (const Version& version : kVersions)
        if (first == version.line)
            return version.format;
    if (beginsWith(line(0), 2, integerOf) && beginsWith(line(1), 2, numberOf) &&
        beginsWith(line(2), 2, numberOf))
        return Format::scanArea;
    if (m_first.size() == kFirstLines &&
        std::all_of(m_first.begin(), m_first.end(), [](const std::string& each) {
            return each.find(',') == std::string::npos && beginsWith(each, 1, numberOf);
        }))
        return Format::camera;
    if (beginsWith(line(1), 2, integerOf) && beginsWith(line(2), 1, integerOf))
        return Format::imageCoordinate;
    return Format::unknown;
}

Format FormatFinder::format() const {
    if (m_formatOfFirst != Format::unknown)
        return m_formatOfFirst;
    if (m_allBlank)
        return Format::point;
    if (!m_hasPoint)
        return Format::unknown;
    // Also with a header or a damaged first line: the rules for points then name the fault.
    if (m_hasReturn || (m_hasMore && m_onlyNumbers))
        return Format::occupied;
    return m_hasMore ? Format::scanResult : Format::point;
}

Format formatOf(const TextFile& file) {
    FormatFinder finder;
    for (const std::string& line : file.lines())
        finder.take(line);
    return finder.format();
}

bool hasPointLines(Format format) {
    return format == Format::point || format == Format::occupied || format == Format::scanResult;
}
