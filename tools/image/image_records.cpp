// Photo coordinates by WriteCSVFile, projected points by WriteImcFile.
#include "image/image_records.h"

#include <fieldscan/point_files.h>

#include "common/files.h"

namespace fs = std::filesystem;

namespace {

// Of an image-coordinate file; 1e-11: a rounding step of coordinates of some ten thousand pixels.
constexpr double kTenDecimals = 0.51e-10 + 1e-11;

}  // namespace

PointsBack recordPhotoPoints(Measurement& m, const fs::path& path) {
    CString file = libraryPath(path);
    if (WriteCSVFile(&file, m.image.phc, 0) != 1)
        fail(path, "the photo coordinates cannot be written");
    CArray<CXYZ, CXYZ&> back;
    if (ReadCSVFile(&file, back, 1) != 1)
        fail(path, "the photo coordinates cannot be read back");
    return comparePoints(m.image.phc, back, kSixDecimals, path);
}

PointsBack recordProjectedPoints(Measurement& m, const fs::path& path) {
    CArray<CXYZ, CXYZ&> inside, back;
    for (Projection& p : m.projections)
        if (p.place == PixelPlace::inside)
            inside.Add(p.pixel);
    CString file = libraryPath(path);
    CString name;
    CSize size(m.image.width, m.image.height), sizeBack;
    if (WriteImcFile(&file, &m.image.identifier1, size, inside) != 1)
        fail(path, "the projected points cannot be written");
    if (ReadImcFile(&file, &name, sizeBack, back, 1) != 1)
        fail(path, "the projected points cannot be read back");
    if (name != m.image.identifier1 || sizeBack != size)
        fail(path, "the file came back with another image");
    return comparePoints(inside, back, kTenDecimals, path);
}
