// A scan job: the area that the operator outlined, the shots over it, and the points that lie inside it.
#ifndef EXAMPLES_SCAN_JOB_SCAN_JOB_H
#define EXAMPLES_SCAN_JOB_SCAN_JOB_H

#include <fieldscan/fieldscan.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "common/files.h"

enum class Place { inside, outside, atStation };  // atStation: straight above or below it, no direction

// A point as seen from the station, in degrees. The elevation is in [0, 360], as the outline has it.
struct Sight {
    double direction;
    double zenith;
    double elevation;
    Place place;
};

struct ScanJob {
    CXYZ station;
    double instrumentHeight = 0.0;
    CScanArea area;
    CArray<CXYZ, CXYZ&> points;
    std::vector<Sight> sights;  // one for each point

    bool fullCircle = false;
    bool crossesZero = false;
    int verticesBeforeZero = 0;  // where the outline crosses the zero direction
    int verticesAfterZero = 0;

    // The area in degrees. Top and bottom are elevations, less than 0 below the horizon.
    double left() const;
    double right() const;
    double top() const;
    double bottom() const;
    double width() const;
    double height() const;
    // How far right of the middle of the area the horizontal angle lies, in [-180, 180]: continuous across
    // the zero direction.
    double fromMiddle(double horizontalAngle) const;

    int count(Place place) const;
};

// Called with what is done and what there is to do.
using Progress = std::function<void(int done, int total)>;

// An elevation of the library, [0, 360], as a number that is less than 0 below the horizon.
double signedElevation(double elevation);

// A failure of one of these is a std::runtime_error with a text for the operator.
void readOutline(const std::filesystem::path& path, ScanJob& job);
// The same from what was read: vertex i stands on line i + 1 of the file, which messages name.
void setOutline(const CArray<CXYZ, CXYZ&>& vertices, const std::filesystem::path& path, ScanJob& job);
CXYZ readStation(const std::filesystem::path& path);
// What is wrong with the outline of an area, or empty. Vertices count from 1.
std::string outlineFault(const CScanArea& area);
// The corners and the polyline of the outline. One from 0 to 359.9999 without vertices between becomes the
// full circle.
void measureArea(ScanJob& job);
void planShots(ScanJob& job);
// The place of a direction with a zenith angle, which sets the sight's elevation too.
void placeSight(const ScanJob& job, Sight& sight);
void sightPoints(ScanJob& job, const Progress& progress);

#endif
