// Points and the station, as the subcommands that compute take them.
#ifndef TOOLS_POINTS_H
#define TOOLS_POINTS_H

#include <CLI/CLI.hpp>
#include <string>

#include "contents.h"

// Reads a file of `format` whole; throws DataError with the first fault of its lines.
void readWhole(const TextFile& file, Format format, Contents& contents);

// The points of a point, occupied-point or scan result file. Throws DataError with the first fault of its
// lines.
Format readPoints(const TextFile& file, CArray<CXYZ, CXYZ&>& points);

// --station, --station-file, --height
class StationOptions {
public:
    void addTo(CLI::App& command);
    bool given() const { return !m_coordinates.empty() || !m_file.empty(); }
    bool isHalfGiven() const { return !given() && m_height != kNoHeight; }
    CXYZ station() const;
    double height() const;

private:
    static constexpr char kNoHeight[] = "0";
    std::string m_coordinates, m_file, m_height = kNoHeight;
};

#endif
