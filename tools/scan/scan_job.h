// A scan job: the area that the operator outlined, the shots over it, and the points that lie inside it.
#ifndef TOOLS_SCAN_SCAN_JOB_H
#define TOOLS_SCAN_SCAN_JOB_H

#include <fieldscan/fieldscan.h>

#include <functional>
#include <vector>

enum class SightPlace { inside, outside, atStation };  // atStation: straight above or below it, no direction

// A point as seen from the station, in degrees.
struct Sight {
    double direction;
    double zenith;
    double elevation;  // in [0, 360], as CalHVPolyline2 has that of the outline
    SightPlace place;
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
    double width() const;  // from left to right, also across the zero direction, where left > right
    double height() const;
    // How far right of the middle of the area a horizontal angle is, in [-180, 180]: continuous across the
    // zero direction.
    double fromMiddle(double horizontalAngle) const;

    int pointsAt(SightPlace place) const;
};

// An elevation of the library, [0, 360], as a number that is less than 0 below the horizon.
double signedElevation(double elevation);

// The corners and the outline in degrees, from the vertices of the area. An outline from 0 to 359.9999
// without vertices between becomes the full circle. Throws DataError when the outline is faulty or covers no
// area.
void measureArea(ScanJob& job);

struct Grid {
    int columns, rows;
};

// A grid for images that overlap a little.
Grid imageGrid(const ScanJob& job);

// The shots over the area: the outermost at its corners; as a ring the last column is a step before the
// first. Throws DataError.
void planShots(ScanJob& job, const Grid& grid, bool isRing);

// A point as seen from the station; inside or outside is left to placeSights.
Sight sightOf(const ScanJob& job, const CXYZ& point);

// Sets elevation and place of sights from their direction and zenith angle; those at the station stay.
void placeSights(const ScanJob& job, std::vector<Sight>& sights);

// Called with how much is done and how much there is to do.
using Progress = std::function<void(int done, int total)>;

// The sights of all points from the station.
void sightPoints(ScanJob& job, const Progress& progress);

#endif
