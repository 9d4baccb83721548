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

Format formatOfPoints(const TextFile& file) {
    bool more = false, onlyNumbers = true, gap = false, blank = false;
    for (const std::string& line : file.lines()) {
        if (line.find('\r') != std::string::npos)
            return Format::occupied;
        const auto fields = fieldsOf(line);
        if (fields.size() == 1 && fields[0].empty()) {
            blank = true;
            continue;
        }
        gap = gap || blank;
        more = more || fields.size() > 4;
        for (std::size_t i = 4; i < fields.size(); ++i)
            onlyNumbers = onlyNumbers && numberOf(fields[i]);
    }
    if (more)
        return onlyNumbers ? Format::occupied : Format::scanResult;
    return gap ? Format::occupied : Format::point;
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

Format formatOf(const TextFile& file) {
    const auto& lines = file.lines();
    const std::string_view first = trimmed(file.line(0));
    for (const Version& version : kVersions)
        if (first == version.line)
            return version.format;
    if (std::all_of(lines.begin(), lines.end(),
                    [](const std::string& line) { return trimmed(line).empty(); }))
        return Format::point;
    if (beginsWith(file.line(0), 2, integerOf) && beginsWith(file.line(1), 2, numberOf) &&
        beginsWith(file.line(2), 2, numberOf))
        return Format::scanArea;
    if (lines.size() >= 5 && std::all_of(lines.begin(), lines.begin() + 5, [](const std::string& line) {
            return line.find(',') == std::string::npos && beginsWith(line, 1, numberOf);
        }))
        return Format::camera;
    if (lines.size() >= 3 && beginsWith(file.line(1), 2, integerOf) && beginsWith(file.line(2), 1, integerOf))
        return Format::imageCoordinate;
    // Also with a header or a damaged first line: the rules for points then name the fault.
    if (std::any_of(lines.begin(), lines.end(), [](const std::string& line) {
            return isPoint(fieldsOf(line.substr(0, line.find('\r'))));
        }))
        return formatOfPoints(file);
    return Format::unknown;
}
