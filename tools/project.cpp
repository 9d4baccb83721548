// project: points of the object to pixels of an image, by the collinearity equations and the lens distortion.
#include <cstdio>
#include <string>

#include "common/data_error.h"
#include "common/point_output.h"
#include "common/text.h"
#include "common/wrong_use.h"
#include "formats/checked_files.h"
#include "image/image_input.h"
#include "options/example.h"
#include "options/file_options.h"
#include "subcommands.h"

namespace {

struct Options {
    std::string camera, orientation, objectPoints, marks, out = "-", page;
};

// A camera with fiducial marks needs them measured; without marks pixel pitch and principal point do.
void orientInside(const Options& options, Measurement& m) {
    if (m.image.camera.innType == 0)
        return;
    if (options.marks.empty())
        throw WrongUse("--marks (the camera has fiducial marks) is required");
    const TextFile file(options.marks);
    readCheckedImagePoints(file, m);
    try {
        measurePhoto(m);
    } catch (const DataError& error) {
        file.fail(0, error.what());
    }
}

ExitCode run(const Options& options) {
    useCodePage(options.page);
    Measurement m;
    readCheckedCamera(TextFile(options.camera), m);
    orientInside(options, m);
    readCheckedOrientation(TextFile(options.orientation), m);
    const TextFile file(options.objectPoints);
    readCheckedPoints(file, m.objectPoints);
    projectPoints(m);

    CArray<CXYZ, CXYZ&> pixels;
    bool allSeen = true;
    for (int i = 0; i < m.objectPoints.GetSize(); ++i) {
        Projection& p = m.projections[static_cast<std::size_t>(i)];
        if (p.place == PixelPlace::unseen) {
            allSeen = false;
            std::fprintf(stderr, "%s\n",
                         file.message(0, "point " + toUtf8(m.objectPoints[i].name) +
                                             ": expected one before the camera, not behind it or far aside")
                             .c_str());
        } else {
            p.pixel.name = m.objectPoints[i].name;
            p.pixel.z = 0.0;
            pixels.Add(p.pixel);
        }
    }
    writePoints(pixels, options.out);
    return allSeen ? kFine : kDataAreWrong;
}

}  // namespace

void addProject(Program& program, ExitCode& exitCode) {
    auto [command, options] = addSubcommand(
        program, exitCode, "project", "Projects points of the object into an image",
        "Standard output: lines name,x,y,0 in pixels, y downward, also beyond the edges of the image. Points "
        "that\n"
        "cannot be seen are left out and named on standard error.",
        run);
    addExample(command,
               "project @image_camera.txt @image_orientation.csv @image_object_points.csv --marks "
               "@image_points.txt");
    command.option("CAMERA", options->camera, "a camera file").required();
    command
        .option("ORIENTATION", options->orientation,
                "an exterior orientation file, or two lines: name,x,y,z, the projection centre, and\n"
                "name,omega,phi,kappa in degrees; kappa is the first rotation")
        .required();
    command.option("OBJECT_POINTS", options->objectPoints, "a point file in metres: x east, y north, z up")
        .required();
    command
        .option("--marks", options->marks,
                "the measured fiducial marks, as IMAGE_POINTS of photo; required where the camera has any")
        .valueName("FILE");
    command.option("--out", options->out, "the point file to write, \"-\" for standard output")
        .valueName("FILE")
        .showsDefault();
    addPageOption(command, options->page);
}
