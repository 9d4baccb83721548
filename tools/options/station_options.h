// Options of several subcommands about the station and the instrument's height above it.
#ifndef TOOLS_OPTIONS_STATION_OPTIONS_H
#define TOOLS_OPTIONS_STATION_OPTIONS_H

#include <fieldscan/points.h>

#include <CLI/CLI.hpp>
#include <optional>
#include <string>

// --station X,Y,Z: a station without a name.
CLI::Option* addStationOption(CLI::App& command, std::optional<CXYZ>& station);

// --height H; what `height` holds before is the default.
CLI::Option* addHeightOption(CLI::App& command, double& height);

// --station, --station-file and --height, where a subcommand takes points as seen from a station.
class StationOptions {
public:
    void addTo(CLI::App& command);
    bool given() const { return m_coordinates || !m_file.empty(); }
    bool isHeightOnly() const { return !given() && m_heightOption->count() > 0; }
    // Reads the file where it is given. Throws DataError.
    CXYZ station() const;
    double height() const { return m_height; }

private:
    std::optional<CXYZ> m_coordinates;
    std::string m_file;
    double m_height = 0.0;
    CLI::Option* m_heightOption = nullptr;
};

#endif
