// image: an image measurement. Reads a camera, measured image points, object points and the orientation of
// the image, computes photo coordinates, projects the object into the image and compares, records and draws.
#include <cstdio>
#include <filesystem>
#include <string>

#include "common/angles.h"
#include "common/files.h"
#include "common/points.h"
#include "common/text.h"
#include "image/image_records.h"
#include "image/measurement.h"
#include "options/file_options.h"
#include "pictures/image_picture.h"
#include "subcommands.h"

namespace fs = std::filesystem;

namespace {

struct Options {
    std::string camera, imagePoints, objectPoints, orientation, out = "out";
};

// The files that the command line names, and the sample for the others.
struct InputFiles {
    explicit InputFiles(const Options& options)
        : camera(fileOrSample(options.camera, "image_camera.txt")),
          imagePoints(fileOrSample(options.imagePoints, "image_points.txt")),
          objectPoints(fileOrSample(options.objectPoints, "image_object_points.csv")),
          orientation(fileOrSample(options.orientation, "image_orientation.csv")) {}
    fs::path camera, imagePoints, objectPoints, orientation;
};

constexpr double kMicrometres = 1000.0;  // in a millimetre
constexpr int kName = 10;                // letters of the first column, the names

// A line of a table.
void printRow(const CString& name, const std::string& columns) {
    std::printf("  %s%s\n", padded(toUtf8(name), kName).c_str(), columns.c_str());
}

void printInput(const InputFiles& files, const Measurement& m) {
    const CImage& image = m.image;
    const CCamera& camera = image.camera;
    std::printf("Input\n");
    printEntry("camera", format("%s: focal length %.3f, principal point %.3f %.3f, pixel pitch %g x %g mm",
                                files.camera.u8string().c_str(), camera.focal, camera.pp.x, camera.pp.y,
                                camera.res.x, camera.res.y));
    printEntry("", format("distortion model %d with %d parameters, %d fiducial marks", camera.dist.model,
                          camera.dist.GetNumPara(), camera.marks.GetSize()));
    printEntry("image points",
               format("%s: image %s, %d x %d pixels, %d marks and %d points measured",
                      files.imagePoints.u8string().c_str(), toUtf8(image.identifier1).c_str(), image.width,
                      image.height, image.markImc.GetSize(), image.imc.GetSize()));
    printEntry("object points",
               format("%s: %d points", files.objectPoints.u8string().c_str(), m.objectPoints.GetSize()));
    printEntry("orientation", format("%s: centre %.3f %.3f %.3f, omega %.4f, phi %.4f, kappa %.4f degrees",
                                     files.orientation.u8string().c_str(), image.center.x, image.center.y,
                                     image.center.z, image.wpk.omega * kDegreesPerRadian,
                                     image.wpk.phi * kDegreesPerRadian, image.wpk.kappa * kDegreesPerRadian));
}

// The two columns of a transformation, in micrometres; dashes where the mark takes no part.
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
        printEntry("used", "pixel pitch and principal point: the camera has no fiducial marks");
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
        printEntry("used", format("affine: six parameters from %d marks", m.affine.residuals.GetSize()));
    else
        printEntry("used",
                   format("Helmert: four parameters from %d marks; the affine one takes three marks that "
                          "are not on a line",
                          m.helmert.residuals.GetSize()));
}

void printControlPoints(const Measurement& m) {
    std::printf("Control points (pixels, residuals measured minus projected)\n");
    const Comparison& c = m.comparison;
    if (c.count == 0) {
        printEntry("none", "no object point before the camera is measured in the image");
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
                                    (p.place == PixelPlace::outside ? "  projected outside the image" : ""));
    }
    printRow(u"RMS", format("%52.2f %8.2f %8.2f", c.rms.x, c.rms.y, c.length));
    printRow(u"largest", format("%52.2f %8.2f", c.largest.x, c.largest.y));
    if (c.markedCount > 0)
        printEntry("the others",
                   format("RMS %.2f without %d of %d points", c.others, c.markedCount, c.count));
    printEntry("in the photo", format("RMS %.2f µm", c.inPhoto * kMicrometres));
}

void printNewPoints(const Measurement& m) {
    std::printf("New points (pixels)\n");
    if (m.comparison.count == m.objectPoints.GetSize()) {
        printEntry("none", "all object points are measured");
        return;
    }
    printRow(u"point", format("%10s %9s", "x", "y"));
    for (int i = 0; i < m.objectPoints.GetSize(); ++i) {
        const Projection& p = m.projections[static_cast<std::size_t>(i)];
        if (p.isCompared())
            continue;
        printRow(m.objectPoints[i].name,
                 p.place == PixelPlace::unseen
                     ? format("%10s %9s  cannot be seen: behind the camera, or far aside", "-", "-")
                     : format("%10.2f %9.2f  %s the image", p.pixel.x, p.pixel.y,
                              p.place == PixelPlace::inside ? "in" : "outside"));
    }
}

void recordMeasurement(Measurement& m, const fs::path& folder) {
    makeFolder(folder);
    std::printf("Written to %s and read back\n", folder.u8string().c_str());
    const PointsBack photo = recordPhotoPoints(m, folder / "photo_coordinates.csv");
    printEntry("photo_coordinates.csv", format("%d points; within %.2g mm", photo.count, photo.coordinates));
    const PointsBack projected = recordProjectedPoints(m, folder / "projected_points.txt");
    printEntry("projected_points.txt",
               format("%d points; within %.2g pixels", projected.count, projected.coordinates));
    const int unnamed = drawImageMeasurement(m, folder / "image_measurement.svg");
    printEntry("image_measurement.svg", format("the picture; %d names have no room in it", unnamed));
}

ExitCode run(const Options& options) {
    const InputFiles files(options);
    Measurement m;
    readCamera(files.camera, m);
    readImagePoints(files.imagePoints, m);
    readPointFile(files.objectPoints, m.objectPoints, "x east, y north, z up, in metres");
    readOrientation(files.orientation, m);
    printInput(files, m);

    measurePhoto(m);
    printInnerOrientation(m);
    projectPoints(m);
    printControlPoints(m);
    printNewPoints(m);
    recordMeasurement(m, pathOf(options.out));
    return kFine;
}

}  // namespace

void addImage(Program& program, ExitCode& exitCode) {
    auto [command, options] = addSubcommand(
        program, exitCode, "image", "Compares points measured in an image with the projected object",
        "Files that are not named are those of the sample. Standard output: what was read, found and "
        "written.\n"
        "DIR gets photo_coordinates.csv, projected_points.txt and image_measurement.svg.",
        run);
    command.option("CAMERA", options->camera,
                   "a camera file: focal length, principal point, distortion, pixel pitch, fiducial marks");
    command.option("IMAGE_POINTS", options->imagePoints,
                   "an image-coordinate file: image name, width and height, count, lines \"name x y\" in\n"
                   "pixels; a point with the name of a fiducial mark is that mark");
    command.option("OBJECT_POINTS", options->objectPoints,
                   "lines \"name,x,y,z\" in metres: x east, y north, z up. Those that are measured too are\n"
                   "control points, the others new points");
    command.option("ORIENTATION", options->orientation,
                   "an exterior orientation file, or two lines: \"name,x,y,z\", the projection centre, and\n"
                   "\"name,omega,phi,kappa\" in degrees; kappa is the first rotation");
    addFolderOption(command, options->out);
}
