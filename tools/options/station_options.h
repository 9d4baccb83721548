// Options of several subcommands about the station and the instrument's height above it.
#ifndef TOOLS_OPTIONS_STATION_OPTIONS_H
#define TOOLS_OPTIONS_STATION_OPTIONS_H

#include <fieldscan/points.h>

#include <optional>
#include <string>

#include "options/command.h"

// --station X,Y,Z: a station without a name.
Option addStationOption(Command& command, std::optional<CXYZ>& station);

// --height H; what `height` holds before is the default.
Option addHeightOption(Command& command, double& height);

// --station, --station-file and --height, where a subcommand takes points as seen from a station.
class StationOptions {
public:
    void addTo(Command& command);
    bool given() const { return m_coordinates || !m_file.empty(); }
    bool isHeightOnly() const { return !given() && m_heightOption->isGiven(); }
    // Reads the file where it is given. Throws DataError.
    CXYZ station() const;
    double height() const { return m_height; }

private:
    std::optional<CXYZ> m_coordinates;
    std::string m_file;
    double m_height = 0.0;
    std::optional<Option> m_heightOption;
};

#endif
