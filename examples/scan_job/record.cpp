#include "record.h"

#include <algorithm>
#include <cmath>

#include "common/text.h"

namespace fs = std::filesystem;

namespace {

// Every call opens the file, appends, and has the medium confirm before it returns. That is the promise a job
// in the field wants, but a call for each point would spend its time on thousands of confirmations. A batch
// is what may be lost when the power fails: small enough to measure again.
constexpr int kBatch = 500;

constexpr double kFourDecimals = 0.51e-4;  // the angles of the scan file, as kSixDecimals

constexpr double kDegreesPerRadian = 180.0 / 3.141592653589793;

// Around the circle, because six decimals of 359.9999999 read 360, which is 0 again.
double difference(double a, double b) { return std::fabs(CCalcXYZHV::AngleDifference(a, b)); }

double difference(const CWPK& a, const CWPK& b) {
    return std::max(difference(a.omega * kDegreesPerRadian, b.omega * kDegreesPerRadian),
                    difference(a.kappa * kDegreesPerRadian, b.kappa * kDegreesPerRadian));
}

// The shot that the direction lies nearest to.
const CString& imageOf(const ScanJob& job, const Sight& sight) {
    const auto nearest = [](double part, int shots) {
        return static_cast<int>(std::clamp(part * (shots - 1) + 0.5, 0.0, shots - 1.0));
    };
    const CScanArea& area = job.area;
    const double part = 0.5 + job.fromMiddle(sight.direction) / job.width();
    const int column = nearest(part, area.columnCount);
    const int row = nearest((job.top() - signedElevation(sight.elevation)) / job.height(), area.rowCount);
    return area.imageNames[row * area.columnCount + column];
}

struct Records {
    CArray<CXYZ, CXYZ&> points;
    CArray<double, double> directions, zeniths;
    CStringArray images;

    void add(const CXYZ& point, double direction, double zenith, const CString& image) {
        CXYZ copy(point);
        points.Add(copy);
        directions.Add(direction);
        zeniths.Add(zenith);
        images.Add(image);
    }
    void clear() {
        points.RemoveAll();
        directions.RemoveAll();
        zeniths.RemoveAll();
        images.RemoveAll();
    }
};

PointsBack readBack(const Records& written, const fs::path& path) {
    Records back;
    if (KVX4NP_ReadCSVFile(libraryPath(path), back.points, back.directions, back.zeniths, back.images) != 1)
        fail(path, "the scan file cannot be read back");
    PointsBack result;
    result.count = back.points.GetSize();
    if (result.count != written.points.GetSize())
        fail(path, "the scan file came back with " + std::to_string(result.count) + " points instead of " +
                       std::to_string(written.points.GetSize()));
    for (int i = 0; i < result.count; ++i) {
        if (back.points[i].name != written.points[i].name || back.images[i] != written.images[i])
            fail(path, "point " + utf8(written.points[i].name) + " came back with another name or image");
        result.coordinates = std::max(result.coordinates, difference(written.points[i], back.points[i]));
        result.angles = std::max({result.angles, difference(written.directions[i], back.directions[i]),
                                  difference(written.zeniths[i], back.zeniths[i])});
    }
    if (result.coordinates > kSixDecimals || result.angles > kFourDecimals)
        fail(path, "the scan file came back with other coordinates or angles");
    return result;
}

}  // namespace

double recordArea(const CScanArea& area, const fs::path& path) {
    if (area.Write(libraryPath(path)) != 1)
        fail(path, "the scan-area file cannot be written");
    CScanArea back;
    if (back.Read(libraryPath(path)) != 1)
        fail(path, "the scan-area file cannot be read back");
    if (back.columnCount != area.columnCount || back.rowCount != area.rowCount ||
        back.shootAngles.GetSize() != area.shootAngles.GetSize())
        fail(path, "the scan-area file came back with another grid");
    double largest =
        std::max(difference(area.areaAngle1, back.areaAngle1), difference(area.areaAngle2, back.areaAngle2));
    for (int i = 0; i < area.shootAngles.GetSize(); ++i) {
        if (back.imageNames[i] != area.imageNames[i])
            fail(path, "image name " + std::to_string(i + 1) + " came back changed");
        largest = std::max(largest, difference(area.shootAngles[i], back.shootAngles[i]));
    }
    if (largest > kSixDecimals)
        fail(path, "the scan-area file came back with other angles");
    return largest;
}

PointsBack recordPointsInside(const ScanJob& job, const fs::path& path, const Progress& progress) {
    const CString file = libraryPath(path);
    Records all, batch;
    int append = 0;  // the first batch makes the file, the others add to it
    const auto put = [&] {
        if (KVX4NP_CSVFileWrite(file, batch.points, batch.directions, batch.zeniths, batch.images, append) !=
            1)
            fail(path, "the scan file cannot be written");
        append = 1;
        batch.clear();
    };
    const int total = job.points.GetSize();
    for (int i = 0; i < total; ++i) {
        const Sight& sight = job.sights[static_cast<std::size_t>(i)];
        if (sight.place != Place::inside)
            continue;
        const CString& image = imageOf(job, sight);
        all.add(job.points[i], sight.direction, sight.zenith, image);
        batch.add(job.points[i], sight.direction, sight.zenith, image);
        if (batch.points.GetSize() == kBatch) {
            put();
            progress(i + 1, total);
        }
    }
    if (batch.points.GetSize() > 0 || append == 0)
        put();
    return readBack(all, path);
}
