// Points are appended in batches; both files are compared with what was written, each to its own decimals.
#include "scan/scan_records.h"

#include <algorithm>
#include <cmath>

#include "common/angles.h"
#include "common/files.h"
#include "common/text.h"

namespace fs = std::filesystem;

namespace {

// Points of a call. Each call opens the file, appends, and returns when the points are on the medium; one
// call a point would spend its time waiting for the medium. A batch is what a power failure may cost: few
// enough points to measure again.
constexpr int kBatch = 500;

constexpr double kFourDecimals = 0.51e-4;  // of the angles of the scan file; see kSixDecimals

// Round the circle: 359.9999999 is written as 360.000000, which reads as 0.
double angleDifference(double a, double b) { return std::fabs(CCalcXYZHV::AngleDifference(a, b)); }

double angleDifference(const CWPK& a, const CWPK& b) {
    return std::max(angleDifference(a.omega * kDegreesPerRadian, b.omega * kDegreesPerRadian),
                    angleDifference(a.kappa * kDegreesPerRadian, b.kappa * kDegreesPerRadian));
}

// The image of the shot nearest to the direction.
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

SightsBack readBack(const Records& written, const fs::path& path) {
    Records back;
    if (KVX4NP_ReadCSVFile(libraryPath(path), back.points, back.directions, back.zeniths, back.images) != 1)
        fail(path, "the scan file cannot be read back");
    SightsBack result{comparePoints(written.points, back.points, kSixDecimals, path)};
    for (int i = 0; i < result.count; ++i) {
        if (back.images[i] != written.images[i])
            fail(path, "point " + toUtf8(written.points[i].name) + " came back with another image");
        result.angles = std::max({result.angles, angleDifference(written.directions[i], back.directions[i]),
                                  angleDifference(written.zeniths[i], back.zeniths[i])});
    }
    if (result.angles > kFourDecimals)
        fail(path, "the scan file came back with other angles");
    return result;
}

}  // namespace

double recordArea(const CScanArea& area, const fs::path& path, int version) {
    const bool second = version == 2;
    const CString file = libraryPath(path);
    if ((second ? area.Write2(file) : area.Write(file)) != 1)
        fail(path, "the scan-area file cannot be written");
    CScanArea back;
    if ((second ? back.Read2(file) : back.Read(file)) != 1)
        fail(path, "the scan-area file cannot be read back");
    if (back.columnCount != area.columnCount || back.rowCount != area.rowCount ||
        back.shootAngles.GetSize() != area.shootAngles.GetSize())
        fail(path, "the scan-area file came back with another grid");
    if (second && back.outlineAngles.GetSize() != area.outlineAngles.GetSize())
        fail(path, "the scan-area file came back with another outline");
    double largest = 0.0;
    // The second version keeps fewer decimals; next to 360 it is off by up to a unit of the last.
    const auto compare = [&](const CWPK& a, const CWPK& b, double unit) {
        const double difference = angleDifference(a, b);
        if (difference > (second ? 1.01 * unit : kSixDecimals))
            fail(path, "the scan-area file came back with other angles");
        largest = std::max(largest, difference);
    };
    compare(area.areaAngle1, back.areaAngle1, 1e-3);
    compare(area.areaAngle2, back.areaAngle2, 1e-3);
    for (int i = 0; i < area.shootAngles.GetSize(); ++i) {
        if (back.imageNames[i] != area.imageNames[i])
            fail(path, "image name " + std::to_string(i + 1) + " came back changed");
        compare(area.shootAngles[i], back.shootAngles[i], 1e-5);
    }
    for (int i = 0; i < back.outlineAngles.GetSize(); ++i)
        compare(area.outlineAngles[i], back.outlineAngles[i], 1e-4);
    return largest;
}

SightsBack recordPointsInside(const ScanJob& job, const fs::path& path, const Progress& progress) {
    const CString file = libraryPath(path);
    Records all, batch;
    int append = 0;  // the first batch makes the file, the others add to it
    const auto writeBatch = [&] {
        if (KVX4NP_CSVFileWrite(file, batch.points, batch.directions, batch.zeniths, batch.images, append) !=
            1)
            fail(path, "the scan file cannot be written");
        append = 1;
        batch.clear();
    };
    const int total = job.points.GetSize();
    for (int i = 0; i < total; ++i) {
        const Sight& sight = job.sights[static_cast<std::size_t>(i)];
        if (sight.place != SightPlace::inside)
            continue;
        const CString& image = imageOf(job, sight);
        all.add(job.points[i], sight.direction, sight.zenith, image);
        batch.add(job.points[i], sight.direction, sight.zenith, image);
        if (batch.points.GetSize() == kBatch) {
            writeBatch();
            progress(i + 1, total);
        }
    }
    if (batch.points.GetSize() > 0 || append == 0)
        writeBatch();
    return readBack(all, path);
}
