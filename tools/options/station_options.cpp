// Options about the station. Numbers are read as those in files are: "nan", "inf" and hexadecimal ones, which
// CLI11 would take, are wrong use.
#include "options/station_options.h"

#include "common/text.h"
#include "formats/checked_files.h"

CLI::Option* addStationOption(CLI::App& command, std::optional<CXYZ>& station) {
    const auto take = [&station](const std::string& text) {
        const auto fields = fieldsOf(text);
        if (fields.size() != 3 || !numberOf(fields[0]) || !numberOf(fields[1]) || !numberOf(fields[2]))
            throw CLI::ValidationError("--station", "expected three numbers X,Y,Z, found \"" + text + "\"");
        station = CXYZ(*numberOf(fields[0]), *numberOf(fields[1]), *numberOf(fields[2]));
    };
    return command.add_option_function<std::string>("--station", take, "coordinates of the station")
        ->type_name("X,Y,Z");
}

CLI::Option* addHeightOption(CLI::App& command, double& height) {
    const auto take = [&height](const std::string& text) {
        const auto number = numberOf(text);
        if (!number)
            throw CLI::ValidationError("--height", "expected a number, found \"" + text + "\"");
        height = *number;
    };
    return command.add_option_function<std::string>("--height", take, "of the instrument above the station")
        ->type_name("H")
        ->default_str(format("%g", height));
}

void StationOptions::addTo(CLI::App& command) {
    CLI::Option* coordinates = addStationOption(command, m_coordinates);
    command.add_option("--station-file", m_file, "an occupied-point file, of which the first point counts")
        ->type_name("FILE")
        ->excludes(coordinates);
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
