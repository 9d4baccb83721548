#include "points.h"

#include "line_rules.h"

void readWhole(const TextFile& file, Format format, Contents& contents) {
    const std::vector<Fault> faults = lineFaults(file, format);
    if (!faults.empty())
        file.fail(faults[0].line, faults[0].what);
    if (!readContents(file, format, contents))
        file.fail(0, "cannot be read");
}

Format readPoints(const TextFile& file, CArray<CXYZ, CXYZ&>& points) {
    const Format format = formatOf(file);
    if (format != Format::point && format != Format::occupied && format != Format::scanResult)
        file.fail(1, "expected lines name,x,y,z");
    Contents contents;
    readWhole(file, format, contents);
    points.Swap(contents.points);
    return format;
}

void StationOptions::addTo(CLI::App& command) {
    const auto isNumber = [](const std::string& text) {
        return numberOf(text) ? std::string() : "expected a number, found \"" + text + "\"";
    };
    const auto isTriple = [](const std::string& text) {
        const auto fields = fieldsOf(text);
        const bool good =
            fields.size() == 3 && numberOf(fields[0]) && numberOf(fields[1]) && numberOf(fields[2]);
        return good ? std::string() : "expected three numbers X,Y,Z, found \"" + text + "\"";
    };
    auto* coordinates = command.add_option("--station", m_coordinates, "coordinates of the station")
                            ->type_name("X,Y,Z")
                            ->check(isTriple);
    command.add_option("--station-file", m_file, "an occupied-point file, of which the first point counts")
        ->type_name("FILE")
        ->excludes(coordinates);
    command.add_option("--height", m_height, "of the instrument above the station")
        ->capture_default_str()
        ->type_name("H")
        ->check(isNumber);
}

CXYZ StationOptions::station() const {
    if (!m_coordinates.empty()) {
        const auto fields = fieldsOf(m_coordinates);
        return CXYZ(*numberOf(fields[0]), *numberOf(fields[1]), *numberOf(fields[2]));
    }
    const TextFile file(m_file);
    CArray<CXYZ, CXYZ&> points;
    readPoints(file, points);
    if (points.IsEmpty())
        file.fail(1, "expected the station: name,x,y,z");
    return points[0];
}

double StationOptions::height() const { return *numberOf(m_height); }
