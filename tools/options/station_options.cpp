// Options about the station. Numbers are read as those in files are: "nan", "inf" and hexadecimal ones, which
// CLI11 would take, are wrong use.
#include "options/station_options.h"

#include "common/text.h"
#include "common/wrong_use.h"
#include "formats/checked_files.h"

Option addStationOption(Command& command, std::optional<CXYZ>& station) {
    const auto take = [&station](const std::string& text) {
        const auto fields = fieldsOf(text);
        if (fields.size() != 3 || !numberOf(fields[0]) || !numberOf(fields[1]) || !numberOf(fields[2]))
            throw WrongUse("--station", "expected three numbers X,Y,Z, found \"" + text + "\"");
        station = CXYZ(*numberOf(fields[0]), *numberOf(fields[1]), *numberOf(fields[2]));
    };
    return command.option("--station", take, "coordinates of the station").valueName("X,Y,Z");
}

Option addHeightOption(Command& command, double& height) {
    const auto take = [&height](const std::string& text) {
        const auto number = numberOf(text);
        if (!number)
            throw WrongUse("--height", "expected a number, found \"" + text + "\"");
        height = *number;
    };
    return command.option("--height", take, "of the instrument above the station")
        .valueName("H")
        .showsDefault(format("%g", height));
}

void StationOptions::addTo(Command& command) {
    const Option coordinates = addStationOption(command, m_coordinates);
    command.option("--station-file", m_file, "an occupied-point file, of which the first point counts")
        .valueName("FILE")
        .excludes(coordinates);
    m_heightOption = addHeightOption(command, m_height);
}

CXYZ StationOptions::station() const {
    if (m_coordinates)
        return *m_coordinates;
    const TextFile file(m_file);
    Contents contents;
    // Read as an occupied-point file even where it looks like a point file: blank lines do not end it.
    readChecked(file, Format::occupied, contents);
    if (contents.points.IsEmpty())
        file.fail(1, "expected the station: name,x,y,z");
    return contents.points[0];
}
