#include "scan_job.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace fs = std::filesystem;

namespace {

constexpr double kDegreesPerRadian = 57.29577951308232;
constexpr double kRadiansPerDegree = 0.017453292519943295;

// What one image covers without the overlap to its neighbours, in degrees.
constexpr double kShotWidth = 16.0;
constexpr double kShotHeight = 15.0;

const char* meaningOf(int code) {
    switch (code) {
        case -1:
            return "the number of image names is not columns times rows";
        case -2:
            return "the number of shots is not columns times rows";
        case -3:
            return "a corner of the area is no direction within the full circle";
        default:
            return "the shots do not form a grid";
    }
}

void check(const CScanArea& area) {
    const int code = area.CheckParameter();
    if (code != 1)
        throw std::runtime_error("the scan area fails its check with " + std::to_string(code) + ": " +
                                 meaningOf(code));
}

}  // namespace

double ScanJob::left() const { return area.areaAngle1.kappa * kDegreesPerRadian; }
double ScanJob::right() const { return area.areaAngle2.kappa * kDegreesPerRadian; }
double ScanJob::top() const { return 90.0 - area.areaAngle1.omega * kDegreesPerRadian; }
double ScanJob::bottom() const { return 90.0 - area.areaAngle2.omega * kDegreesPerRadian; }
double ScanJob::height() const { return top() - bottom(); }

// From left to right also where left > right, across the zero direction.
double ScanJob::width() const { return CCalcXYZHV::AngleDifference_Over0(left(), right()); }

int ScanJob::count(Place place) const {
    return static_cast<int>(std::count_if(sights.begin(), sights.end(),
                                          [&](const Sight& sight) { return sight.place == place; }));
}

double ScanJob::fromMiddle(double horizontalAngle) const {
    return CCalcXYZHV::AngleDifference(left() + width() / 2.0, horizontalAngle);
}

double signedElevation(double elevation) { return CCalcXYZHV::AngleDifference(0.0, elevation); }

void readOutline(const fs::path& path, ScanJob& job) {
    CString file = libraryPath(path);
    CArray<CXYZ, CXYZ&> vertices;
    if (ReadCSVFile(&file, vertices, 1) != 1)
        fail(path, "the outline file cannot be opened");
    setOutline(vertices, path, job);
}

void setOutline(const CArray<CXYZ, CXYZ&>& vertices, const fs::path& path, ScanJob& job) {
    const std::string expected =
        "; expected are lines \"name,horizontal angle,zenith angle,0\" in degrees, the horizontal angle from "
        "-360 to 360, the zenith angle between 0 and 180";
    if (vertices.GetSize() < 3)
        fail(path, "an outline needs three vertices, this file has " + std::to_string(vertices.GetSize()) +
                       expected);
    job.area.Init();
    for (int i = 0; i < vertices.GetSize(); ++i) {
        const CXYZ& vertex = vertices[i];
        if (!isFinite(vertex) || std::fabs(vertex.x) > 360.0 || vertex.y <= 0.0 || vertex.y >= 180.0 ||
            vertex.z != 0.0)
            fail(fs::path(path) += ":" + std::to_string(i + 1), "no direction" + expected);
        CWPK angles(vertex.y / kDegreesPerRadian, 0.0, vertex.x / kDegreesPerRadian);
        job.area.NormalizeAngle(angles.kappa);
        job.area.outlineAngles.Add(angles);
    }
}

CXYZ readStation(const fs::path& path) {
    CString file = libraryPath(path);
    CArray<CXYZ, CXYZ&> occupied;
    if (ReadOccInfoFile(&file, occupied, 1) != 1)
        fail(path, "the station file cannot be opened");
    if (occupied.IsEmpty() || !isFinite(occupied[0]))
        fail(path, "the station file has no point; expected is a line \"name,x,y,z\"");
    return occupied[0];
}

void measureArea(ScanJob& job) {
    CScanArea& area = job.area;
    area.CalHVPolyline2();
    // IsPolyInside takes the left edge through radians, where one angle in ten comes back a rounding step
    // high; those that went that way once come back unchanged.
    for (int i = 0; i < area.outlinePolyline.GetVertexSize(); ++i)
        area.outlinePolyline.vertices[i].x =
            area.outlinePolyline.vertices[i].x * kRadiansPerDegree * kDegreesPerRadian;
    job.crossesZero = area.CheckZeroCross() == 1;
    if (job.crossesZero) {
        CArray<int, int&> behind, before;
        area.DivideZeroCross(&behind, &before);
        job.verticesBehindZero = behind.GetSize();
        job.verticesBeforeZero = before.GetSize();
        if (behind.IsEmpty() || before.IsEmpty())
            throw std::runtime_error("the outline goes round the full circle; it must span less");
    }
    area.CalPolylineTopLeftBottomRight();
    check(area);
    if (job.width() == 0.0 || job.height() <= 0.0)
        throw std::runtime_error("the outline covers no area: its vertices lie on a line");
}

// A shot at each corner and others between them, so that images overlap a little. Degrees of horizontal angle
// grow narrow toward the zenith, so an area high up gets more columns than it needs.
void planShots(ScanJob& job) {
    CScanArea& area = job.area;
    area.columnCount = static_cast<int>(std::ceil(job.width() / kShotWidth)) + 1;
    area.rowCount = static_cast<int>(std::ceil(job.height() / kShotHeight)) + 1;
    if (area.CalShootAng(area.areaAngle1, area.areaAngle2) != 1)
        throw std::runtime_error("the shots cannot be planned");
    area.CalHVPolyline1();
    check(area);
}

void placeSight(const ScanJob& job, Sight& sight) {
    sight.elevation = CCalcXYZHV::AngleZ0toH0(sight.zenith);
    const int inside = CCalcXYZHV::IsPolyInside(job.area.outlinePolyline, sight.direction, sight.elevation);
    sight.place = inside == 1 ? Place::inside : Place::outside;
}

void sightPoints(ScanJob& job, const Progress& progress) {
    job.sights.clear();
    const int total = job.points.GetSize();
    for (int i = 0; i < total; ++i) {
        Sight sight = {0.0, 0.0, 0.0, Place::atStation};
        if (CCalcXYZHV::XYZToHV(job.station, job.points[i], job.instrumentHeight, sight.zenith,
                                sight.direction) == 1)
            placeSight(job, sight);
        job.sights.push_back(sight);
        progress(i + 1, total);
    }
}
