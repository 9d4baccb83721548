// A scan job by CScanArea: corners, shots at equal steps, and points in the polygon of the outline, in the
// plane of horizontal angle and elevation.
#include "scan/scan_job.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <string>

#include "common/angles.h"
#include "common/data_error.h"
#include "scan/area_faults.h"

namespace {

// What one image covers without the overlap with its neighbours, in degrees.
constexpr double kShotWidth = 16.0;
constexpr double kShotHeight = 15.0;

// An area is wider than this, and a full circle lacks less than this, in degrees.
constexpr double kNarrowest = 0.01;

void requireSoundArea(const CScanArea& area) {
    const std::string fault = areaFault(area);
    if (!fault.empty())
        throw DataError("the scan area fails its check: " + fault);
}

}  // namespace

double ScanJob::left() const { return area.areaAngle1.kappa * kDegreesPerRadian; }
double ScanJob::right() const { return area.areaAngle2.kappa * kDegreesPerRadian; }
double ScanJob::top() const { return 90.0 - area.areaAngle1.omega * kDegreesPerRadian; }
double ScanJob::bottom() const { return 90.0 - area.areaAngle2.omega * kDegreesPerRadian; }
double ScanJob::width() const { return CCalcXYZHV::AngleDifference_Over0(left(), right()); }
double ScanJob::height() const { return top() - bottom(); }

double ScanJob::fromMiddle(double horizontalAngle) const {
    return CCalcXYZHV::AngleDifference(left() + width() / 2.0, horizontalAngle);
}

int ScanJob::pointsAt(SightPlace place) const {
    return static_cast<int>(std::count_if(sights.begin(), sights.end(),
                                          [&](const Sight& sight) { return sight.place == place; }));
}

double signedElevation(double elevation) { return CCalcXYZHV::AngleDifference(0.0, elevation); }

void measureArea(ScanJob& job) {
    CScanArea& area = job.area;
    const std::string fault = outlineFault(area);
    if (!fault.empty())
        throw DataError(fault);
    area.CalPolylineTopLeftBottomRight();
    // An outline from 0 to 359.9999 without vertices between reads as a strip of 0.0001 degrees across zero.
    if (area.CheckZeroCross() == 1 && job.width() < kNarrowest &&
        area.SetFullCircle(area.areaAngle1.omega, area.areaAngle2.omega) != 1)
        throw DataError("the full circle needs two zenith angles");
    job.fullCircle = job.width() > 360.0 - kNarrowest;
    job.crossesZero = area.CheckZeroCross() == 1;
    if (job.crossesZero) {
        CArray<int, int&> after, before;
        area.DivideZeroCross(&after, &before);
        job.verticesAfterZero = after.GetSize();
        job.verticesBeforeZero = before.GetSize();
    }
    area.CalHVPolyline2();
    requireSoundArea(area);
    if (job.width() == 0.0 || job.height() <= 0.0)
        throw DataError(
            "the outline covers no area: its vertices lie on a line (a full circle ends at 359.9999, not "
            "360)");
}

// A degree of horizontal angle narrows toward the zenith, so an area high up gets more columns than it needs.
Grid imageGrid(const ScanJob& job) {
    return {static_cast<int>(std::ceil(job.width() / kShotWidth)) + 1,
            static_cast<int>(std::ceil(job.height() / kShotHeight)) + 1};
}

void planShots(ScanJob& job, const Grid& grid, bool isRing) {
    CScanArea& area = job.area;
    area.columnCount = grid.columns;
    area.rowCount = grid.rows;
    CWPK last = area.areaAngle2;
    if (isRing)
        last.kappa = area.areaAngle1.kappa + (360.0 - 360.0 / grid.columns) * kRadiansPerDegree;
    if (area.CalShootAng(area.areaAngle1, last) != 1)
        throw DataError("the shots cannot be planned");
    area.CalHVPolyline1();
    requireSoundArea(area);
}

Sight sightOf(const ScanJob& job, const CXYZ& point) {
    Sight sight = {0.0, 0.0, 0.0, SightPlace::atStation};
    if (CCalcXYZHV::XYZToHV(job.station, point, job.instrumentHeight, sight.zenith, sight.direction) == 1)
        sight.place = SightPlace::outside;
    return sight;
}

void placeSights(const ScanJob& job, std::vector<Sight>& sights) {
    CArray<double, double> horizontal, elevation;
    CArray<int, int> inside;
    const int count = static_cast<int>(sights.size());
    horizontal.SetSize(count);
    elevation.SetSize(count);
    for (int i = 0; i < count; ++i) {
        Sight& sight = sights[static_cast<std::size_t>(i)];
        if (sight.place != SightPlace::atStation)
            sight.elevation = CCalcXYZHV::AngleZ0toH0(sight.zenith);
        horizontal[i] = sight.direction;
        elevation[i] = sight.elevation;
        if (job.fullCircle) {  // its seam belongs to the right edge
            const double fromLeft = CCalcXYZHV::AngleDifference_Over0(job.left(), sight.direction);
            if (fromLeft == 0.0 || fromLeft > job.width())
                horizontal[i] = job.right();
        }
    }
    if (CCalcXYZHV::IsPolyInside(job.area.outlinePolyline, horizontal, elevation, inside) != 1)
        throw std::bad_alloc();
    for (int i = 0; i < count; ++i) {
        Sight& sight = sights[static_cast<std::size_t>(i)];
        if (sight.place != SightPlace::atStation)
            sight.place = inside[i] == 1 ? SightPlace::inside : SightPlace::outside;
    }
}

void sightPoints(ScanJob& job, const Progress& progress) {
    job.sights.clear();
    const int total = job.points.GetSize();
    for (int i = 0; i < total; ++i) {
        job.sights.push_back(sightOf(job, job.points[i]));
        progress(i + 1, total);
    }
    placeSights(job, job.sights);
}
