#include "scan_job.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace fs = std::filesystem;

namespace {

constexpr double kDegreesPerRadian = 57.29577951308232;

// What one image covers without the overlap to its neighbours, in degrees.
constexpr double kShotWidth = 16.0;
constexpr double kShotHeight = 15.0;

// An area is wider than this, and a full circle lacks less than this, in degrees.
constexpr double kNarrowest = 0.01;

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

std::string outlineFault(const CScanArea& area) {
    int edge;
    const int code = area.CheckOutline(&edge);
    const int n = area.outlineAngles.GetSize();
    const std::string from = std::to_string(edge + 1), to = std::to_string((edge + 1) % std::max(n, 1) + 1);
    switch (code) {
        case 1:
            return "";
        case -1:
            return "an outline needs three vertices at different places, this one has " + std::to_string(n) +
                   " vertices (360 degrees are 0: a full circle ends at 359.9999)";
        case -2:
            return "vertex " + from + " of the outline is no direction";
        case -3:
            return "the edge from vertex " + from + " to vertex " + to +
                   " of the outline spans half a turn or more, or the outline goes round the full circle; "
                   "give "
                   "long edges vertices between, and outline a full circle from 0 to 359.9999";
        case -4:
            return "the edge from vertex " + from + " to vertex " + to +
                   " of the outline crosses another one";
        default:
            return "the outline cannot be checked: no memory";
    }
}

void measureArea(ScanJob& job) {
    CScanArea& area = job.area;
    const std::string fault = outlineFault(area);
    if (!fault.empty())
        throw std::runtime_error(fault);
    area.CalPolylineTopLeftBottomRight();
    // From 0 to 359.9999 without vertices between is next to nothing, across zero. Who outlines that means
    // the full circle.
    if (area.CheckZeroCross() == 1 && job.width() < kNarrowest &&
        area.SetFullCircle(area.areaAngle1.omega, area.areaAngle2.omega) != 1)
        throw std::runtime_error("the full circle needs two zenith angles");
    job.fullCircle = job.width() > 360.0 - kNarrowest;
    job.crossesZero = area.CheckZeroCross() == 1;
    if (job.crossesZero) {
        CArray<int, int&> after, before;
        area.DivideZeroCross(&after, &before);
        job.verticesAfterZero = after.GetSize();
        job.verticesBeforeZero = before.GetSize();
    }
    area.CalHVPolyline2();
    check(area);
    if (job.width() == 0.0 || job.height() <= 0.0)
        throw std::runtime_error(
            "the outline covers no area: its vertices lie on a line (a full circle ends at 359.9999, not "
            "360)");
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
    double horizontal = sight.direction;
    if (job.fullCircle) {  // what lies in its seam belongs to the right edge
        const double fromLeft = CCalcXYZHV::AngleDifference_Over0(job.left(), horizontal);
        if (fromLeft == 0.0 || fromLeft > job.width())
            horizontal = job.right();
    }
    const int inside = CCalcXYZHV::IsPolyInside(job.area.outlinePolyline, horizontal, sight.elevation);
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
