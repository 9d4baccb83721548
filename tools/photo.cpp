// photo: pixels of an image to photo coordinates, by the inner orientation and the lens distortion.
#include <string>

#include "common/data_error.h"
#include "common/point_output.h"
#include "image/image_input.h"
#include "options/example.h"
#include "options/file_options.h"
#include "subcommands.h"

namespace {

struct Options {
    std::string camera, imagePoints, out = "-", page;
};

ExitCode run(const Options& options) {
    useCodePage(options.page);
    Measurement m;
    readCheckedCamera(TextFile(options.camera), m);
    const TextFile file(options.imagePoints);
    readCheckedImagePoints(file, m);
    try {
        measurePhoto(m);
    } catch (const DataError& error) {
        file.fail(0, error.what());
    }
    writePoints(m.image.phc, options.out);
    return kFine;
}

}  // namespace

void addPhoto(Program& program, ExitCode& exitCode) {
    auto [command, options] =
        addSubcommand(program, exitCode, "photo", "Converts pixels of an image to photo coordinates",
                      "Standard output: lines name,x,y,0 in millimetres from the principal point, x to the "
                      "right, y upward,\n"
                      "without lens distortion.",
                      run);
    addExample(command, "photo @image_camera.txt @image_points.txt");
    command.option("CAMERA", options->camera, "a camera file").required();
    command
        .option("IMAGE_POINTS", options->imagePoints,
                "an image-coordinate file, or lines name,x,y,0 in pixels; points with the name of a\n"
                "fiducial mark of the camera are these marks")
        .required();
    command.option("--out", options->out, "the point file to write, \"-\" for standard output")
        .valueName("FILE")
        .showsDefault();
    addPageOption(command, options->page);
}
