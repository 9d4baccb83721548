// Reads a camera, what was measured in an image, points of the object and the orientation of the image;
// computes the inner orientation and photo coordinates, projects the object into the image and compares;
// records the results, and draws them.
#include <cstdio>
#include <string>

#include "common/command_line.h"
#include "common/files.h"
#include "common/text.h"
#include "measurement.h"
#include "options.h"
#include "picture.h"
#include "record.h"

namespace {

constexpr double kDegreesPerRadian = 57.29577951308232;
constexpr double kMicrometres = 1000.0;  // in a millimetre
constexpr int kName = 10;                // letters of the column of names

// A line of a table.
void printRow(const CString& name, const std::string& columns) {
    std::printf("  %s%s\n", padded(utf8(name), kName).c_str(), columns.c_str());
}

void printInput(const Options& options, const Measurement& m) {
    const CImage& image = m.image;
    const CCamera& camera = image.camera;
    std::printf("Input\n");
    print("camera", format("%s: focal length %.3f, principal point %.3f %.3f, pixel pitch %g x %g mm",
                           options.camera.u8string().c_str(), camera.focal, camera.pp.x, camera.pp.y,
                           camera.res.x, camera.res.y));
    print("", format("distortion model %d with %d parameters, %d fiducial marks", camera.dist.model,
                     camera.dist.GetNumPara(), camera.marks.GetSize()));
    print("image points", format("%s: image %s, %d x %d pixels, %d marks and %d points measured",
                                 options.imagePoints.u8string().c_str(), utf8(image.identifier1).c_str(),
                                 image.width, image.height, image.markImc.GetSize(), image.imc.GetSize()));
    print("object points",
          format("%s: %d points", options.objectPoints.u8string().c_str(), m.objectPoints.GetSize()));
    print("orientation", format("%s: centre %.3f %.3f %.3f, omega %.4f, phi %.4f, kappa %.4f degrees",
                                options.orientation.u8string().c_str(), image.center.x, image.center.y,
                                image.center.z, image.wpk.omega * kDegreesPerRadian,
                                image.wpk.phi * kDegreesPerRadian, image.wpk.kappa * kDegreesPerRadian));
}

// The columns of a transformation, in micrometres.
std::string markColumns(bool known, const CXYZ& residual) {
    return known ? format("%11.2f %9.2f", residual.x * kMicrometres, residual.y * kMicrometres)
                 : format("%11s %9s", "-", "-");
}

std::string markColumns(const CArray<CXYZ, CXYZ&>& residuals, const CString& mark) {
    for (int i = 0; i < residuals.GetSize(); ++i)
        if (residuals[i].name == mark)
            return markColumns(true, residuals[i]);
    return markColumns(false, CXYZ());
}

void printInnerOrientation(const Measurement& m) {
    const CStringArray& marks = m.image.camera.markNames;
    if (m.image.camera.innType == 0) {
        std::printf("Inner orientation\n");
        print("used", "pixel pitch and principal point: the camera has no fiducial marks");
        return;
    }
    std::printf("Inner orientation (residuals in µm, transformed minus calibrated)\n");
    printRow(u"mark", format("%11s %9s %11s %9s", "affine x", "y", "Helmert x", "y"));
    for (int i = 0; i < marks.GetSize(); ++i)
        printRow(marks[i],
                 markColumns(m.affine.residuals, marks[i]) + markColumns(m.helmert.residuals, marks[i]));
    const bool affine = !m.affine.parameters.IsEmpty(), helmert = !m.helmert.parameters.IsEmpty();
    printRow(u"RMS", markColumns(affine, m.affine.RMS) + markColumns(helmert, m.helmert.RMS));
    printRow(u"largest", markColumns(affine, m.affine.maximum) + markColumns(helmert, m.helmert.maximum));
    if (m.image.innOri == INNORI_FIDUCIAL_LSQ)
        print("used", format("affine: six parameters from %d marks", m.affine.residuals.GetSize()));
    else
        print("used", format("Helmert: four parameters from %d marks; the affine one takes three marks that "
                             "are not on a line",
                             m.helmert.residuals.GetSize()));
}

void printControlPoints(const Measurement& m) {
    std::printf("Control points (pixels, residuals measured minus projected)\n");
    const Comparison& c = m.comparison;
    if (c.count == 0) {
        print("none", "no object point before the camera is measured in the image");
        return;
    }
    printRow(u"point", format("%10s %9s %12s %9s %9s %8s %8s", "measured x", "y", "projected x", "y", "dx",
                              "dy", "length"));
    for (const Projection& p : m.projections) {
        if (!p.isCompared())
            continue;
        const CXYZ& measured = m.image.imc[p.measured];
        printRow(measured.name, format("%10.2f %9.2f %12.2f %9.2f %9.2f %8.2f %8.2f", measured.x, measured.y,
                                       p.pixel.x, p.pixel.y, p.dx, p.dy, p.length()) +
                                    (p.marked ? format("  more than %g times the RMS", kMarkedFrom) : "") +
                                    (p.place == Place::outside ? "  projected outside the image" : ""));
    }
    printRow(u"RMS", format("%52.2f %8.2f %8.2f", c.rms.x, c.rms.y, c.length));
    printRow(u"largest", format("%52.2f %8.2f", c.largest.x, c.largest.y));
    if (c.markedCount > 0)
        print("the others", format("RMS %.2f without %d of %d points", c.others, c.markedCount, c.count));
    print("in the photo", format("RMS %.2f µm", c.inPhoto * kMicrometres));
}

void printNewPoints(const Measurement& m) {
    std::printf("New points (pixels)\n");
    if (m.comparison.count == m.objectPoints.GetSize()) {
        print("none", "all object points are measured");
        return;
    }
    printRow(u"point", format("%10s %9s", "x", "y"));
    for (int i = 0; i < m.objectPoints.GetSize(); ++i) {
        const Projection& p = m.projections[static_cast<std::size_t>(i)];
        if (p.isCompared())
            continue;
        printRow(m.objectPoints[i].name,
                 p.place == Place::unseen
                     ? format("%10s %9s  cannot be seen: behind the camera, or far aside", "-", "-")
                     : format("%10.2f %9.2f  %s the image", p.pixel.x, p.pixel.y,
                              p.place == Place::inside ? "in" : "outside"));
    }
}

void run(const Options& options) {
    Measurement m;
    readCamera(options.camera, m);
    readImagePoints(options.imagePoints, m);
    readPoints(options.objectPoints, m.objectPoints, "x east, y north, z up, in metres");
    readOrientation(options.orientation, m);
    printInput(options, m);

    measurePhoto(m);
    printInnerOrientation(m);
    projectPoints(m);
    printControlPoints(m);
    printNewPoints(m);

    makeFolder(options.out);
    std::printf("Written to %s and read back\n", options.out.u8string().c_str());
    const PointsBack photo = recordPhotoPoints(m, options.out / "photo_coordinates.csv");
    print("photo_coordinates.csv", format("%d points; within %.2g mm", photo.count, photo.coordinates));
    const PointsBack projected = recordProjectedPoints(m, options.out / "projected_points.txt");
    print("projected_points.txt",
          format("%d points; within %.2g pixels", projected.count, projected.coordinates));
    const int unnamed = drawPicture(m, options.out / "image_measurement.svg");
    print("image_measurement.svg", format("the picture; %d names have no room in it", unnamed));
}

}  // namespace

int main(int argc, char** argv) {
    return exitCodeOf("image_measurement", kUsage, [&] {
        const Options options = readOptions(argc, argv);
        if (options.help)
            std::fputs(kUsage, stdout);
        else
            run(options);
    });
}
