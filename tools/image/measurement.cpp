// An image measurement by CImage: inner orientation from the fiducial marks, collinearity equations with lens
// distortion for the projection.
#include "image/measurement.h"

#include <fieldscan/panorama_files.h>
#include <fieldscan/point_files.h>

#include <cmath>
#include <map>
#include <set>
#include <string>

#include "common/angles.h"
#include "common/data_error.h"
#include "common/files.h"
#include "common/points.h"

namespace fs = std::filesystem;

namespace {

void keepLargest(double value, double& largest) {
    if (std::fabs(value) > std::fabs(largest))
        largest = value;
}

void compareWithMeasured(Measurement& m) {
    Comparison& c = m.comparison;
    for (Projection& p : m.projections) {
        if (!p.isCompared())
            continue;
        const CXYZ pixel = m.image.imc[p.measured] - p.pixel;
        const CXYZ photo = m.image.phc[p.measured] - p.photo;
        p.dx = pixel.x;
        p.dy = pixel.y;
        ++c.count;
        c.rms += pixel * pixel;
        c.inPhoto += photo.x * photo.x + photo.y * photo.y;
        keepLargest(p.dx, c.largest.x);
        keepLargest(p.dy, c.largest.y);
    }
    if (c.count == 0)
        return;
    c.length = std::sqrt((c.rms.x + c.rms.y) / c.count);
    c.inPhoto = std::sqrt(c.inPhoto / c.count);
    c.rms.SetXYZ(std::sqrt(c.rms.x / c.count), std::sqrt(c.rms.y / c.count), 0.0);
    for (Projection& p : m.projections) {
        p.marked = p.length() > kMarkedFrom * c.length;
        c.markedCount += p.marked ? 1 : 0;
        c.others += p.marked ? 0.0 : p.dx * p.dx + p.dy * p.dy;
    }
    c.others = std::sqrt(c.others / (c.count - c.markedCount));  // less than one in nine can be marked
}

}  // namespace

double Projection::length() const { return std::sqrt(dx * dx + dy * dy); }

void setCamera(const CCamera& camera, const fs::path& name, Measurement& m) {
    // A value that is no number reads as 0, so a file of another format gives zeros.
    const auto isLength = [](double value) { return std::isfinite(value) && value > 0.0; };
    if (!isLength(camera.focal) || !isLength(camera.res.x) || !isLength(camera.res.y))
        fail(name, "no camera: focal length and pixel pitch must be greater than 0");
    m.image.camera = camera;
    m.image.SetRes(camera.res.x, camera.res.y);
}

void sortMarks(CArray<CXYZ, CXYZ&>& measured, Measurement& m) {
    CImage& image = m.image;
    std::set<CString> marks;
    for (int i = 0; i < image.camera.markNames.GetSize(); ++i)
        marks.insert(image.camera.markNames[i]);
    for (int i = 0; i < measured.GetSize(); ++i)
        (marks.count(measured[i].name) > 0 ? image.markImc : image.imc).Add(measured[i]);
}

void setOrientation(const CXYZ& center, const CXYZ& angles, Measurement& m) {
    m.image.center = center;
    m.image.wpk.SetWPK(angles.x * kRadiansPerDegree, angles.y * kRadiansPerDegree,
                       angles.z * kRadiansPerDegree);
}

void readCamera(const fs::path& path, Measurement& m) {
    CCamera camera;
    if (camera.Read(libraryPath(path)) != 1)
        fail(path, "the camera file cannot be opened, or lines of it are missing");
    setCamera(camera, path, m);
}

void readImagePoints(const fs::path& path, Measurement& m) {
    CString file = libraryPath(path);
    CImage& image = m.image;
    CArray<CXYZ, CXYZ&> measured;
    CSize size;
    if (ReadImcFile(&file, &image.identifier1, size, measured, 1) != 1)
        fail(path,
             "the image-coordinate file cannot be opened, or lines of it are missing; expected are image "
             "name, width and height, count, and so many lines \"name x y\"");
    if (size.cx < 1 || size.cy < 1)
        fail(path, "the image has no size; expected are width and height in pixels on the second line");
    image.width = size.cx;
    image.height = size.cy;
    for (int i = 0; i < measured.GetSize(); ++i)
        if (image.PtInImage(measured[i]) != 1)
            fail(path, "line " + std::to_string(i + 4) + " holds a point that is not in the image");
    sortMarks(measured, m);
    if (image.imc.IsEmpty())
        fail(path, "no point is measured in the image" +
                       std::string(image.markImc.IsEmpty() ? "" : " besides the fiducial marks"));
}

void readOrientation(const fs::path& path, Measurement& m) {
    const char expected[] = "the projection centre in metres, then \"name,omega,phi,kappa\" in degrees";
    CXYZ center, angles;
    if (ReadExtFile(libraryPath(path), center.x, center.y, center.z, angles.x, angles.y, angles.z) != 1) {
        CArray<CXYZ, CXYZ&> lines;
        readPointFile(path, lines, expected);
        if (lines.GetSize() != 2)
            fail(path, "an orientation has two lines, this file has " + std::to_string(lines.GetSize()) +
                           "; expected are \"name,x,y,z\", " + expected);
        center = lines[0];
        angles = lines[1];
    }
    setOrientation(center, angles, m);
}

void measurePhoto(Measurement& m) {
    CImage& image = m.image;
    if (image.camera.innType == 1) {
        if (image.CalInnOri(INNORI_FIDUCIAL_HELMERT) == 1)
            m.helmert = image.helmert;
        if (image.CalInnOri(INNORI_FIDUCIAL_LSQ) == 1)
            m.affine = image.planeTrans;
        if (m.helmert.parameters.IsEmpty() && m.affine.parameters.IsEmpty())
            throw DataError(
                "no inner orientation: it takes two fiducial marks at different places; the camera has " +
                std::to_string(image.camera.marks.GetSize()) + ", of which " +
                std::to_string(image.markImc.GetSize()) + " are measured");
    }
    if (image.ImcToPhc(1) != 1)
        throw DataError("the measured points give no photo coordinates");
}

void projectPoints(Measurement& m) {
    CImage& image = m.image;
    std::map<CString, int> measured;
    for (int i = 0; i < image.imc.GetSize(); ++i)
        measured.emplace(image.imc[i].name, i);  // of points with the same name the first counts
    for (int i = 0; i < m.objectPoints.GetSize(); ++i) {
        const CXYZ& object = m.objectPoints[i];
        Projection p;
        const bool projected = image.ObjToImc(object, p.photo, p.pixel) == 1 && isFinite(p.pixel);
        // The lens looks along -z. A point behind it is projected as if in front.
        if (projected && (image.rot * (object - image.center)).z < 0.0)
            p.place = image.PtInImage(p.pixel) == 1 ? PixelPlace::inside : PixelPlace::outside;
        const auto found = measured.find(object.name);
        if (found != measured.end())
            p.measured = found->second;
        m.projections.push_back(p);
    }
    compareWithMeasured(m);
}
