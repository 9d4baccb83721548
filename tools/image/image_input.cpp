// The rules for lines, then the same steps as for an image measurement.
#include "image/image_input.h"

#include "common/files.h"
#include "formats/checked_files.h"

void readCheckedCamera(const TextFile& file, Measurement& m) {
    Contents contents;
    if (formatOf(file) != Format::camera)
        file.fail(1, "expected a camera file: focal length, principal point, distortion, pixel pitch, marks");
    readChecked(file, Format::camera, contents);
    setCamera(contents.camera, pathOf(file.name()), m);
}

void readCheckedImagePoints(const TextFile& file, Measurement& m) {
    Contents contents;
    const Format format = formatOf(file);
    if (format != Format::imageCoordinate && format != Format::point)
        file.fail(1, "expected an image-coordinate file, or lines name,x,y,z in pixels");
    readChecked(file, format, contents);
    for (int i = 0; i < contents.points.GetSize(); ++i)
        contents.points[i].z = 0.0;
    sortMarks(contents.points, m);
}

void readCheckedOrientation(const TextFile& file, Measurement& m) {
    const char expected[] =
        "expected an exterior orientation file, or two lines: name,x,y,z of the projection "
        "centre in metres and name,omega,phi,kappa in degrees";
    Contents contents;
    const Format format = formatOf(file);
    if (format != Format::exterior && format != Format::point)
        file.fail(1, expected);
    readChecked(file, format, contents);
    const double* v = contents.values;
    if (format == Format::exterior)
        setOrientation(CXYZ(v[0], v[1], v[2]), CXYZ(v[3], v[4], v[5]), m);
    else if (contents.points.GetSize() == 2)
        setOrientation(contents.points[0], contents.points[1], m);
    else
        file.fail(0, expected);
}
