#include "options.h"

#include "common/command_line.h"

const char kUsage[] =
    "Usage: image_measurement [camera] [image points] [object points] [orientation] [options]\n"
    "\n"
    "Turns what was measured in an image into photo coordinates, projects points of the\n"
    "object into the image, compares both, and draws them. Without arguments it takes the\n"
    "sample.\n"
    "\n"
    "  camera          the camera file: focal length, principal point, distortion, pixel\n"
    "                  pitch and fiducial marks\n"
    "  image points    the image-coordinate file: image name, its width and height, count,\n"
    "                  lines \"name x y\" in pixels; a point with the name of a fiducial mark\n"
    "                  is that mark\n"
    "  object points   lines \"name,x,y,z\" in metres: x east, y north, z up. Those that are\n"
    "                  measured too are control points, the others new points\n"
    "  orientation     an exterior orientation file, or two lines: \"name,x,y,z\", the\n"
    "                  projection centre, and \"name,omega,phi,kappa\" in degrees; kappa is\n"
    "                  the first rotation\n"
    "\n"
    "  --out DIR       the folder for what is written (out)\n"
    "  --help          this text\n";

Options readOptions(int argc, char** argv) {
    const CommandLine line = readCommandLine(argc, argv, [](const auto&, const auto&) { return false; });
    Options options;
    options.out = line.out;
    options.help = line.help;
    options.camera = sampleFile("image_camera.txt");
    options.imagePoints = sampleFile("image_points.txt");
    options.objectPoints = sampleFile("image_object_points.csv");
    options.orientation = sampleFile("image_orientation.csv");
    takeFiles(line.files,
              {&options.camera, &options.imagePoints, &options.objectPoints, &options.orientation});
    return options;
}
