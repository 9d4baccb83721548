#include "record.h"

#include <fieldscan/point_files.h>

#include <algorithm>

#include "common/files.h"
#include "common/text.h"

namespace fs = std::filesystem;

namespace {

constexpr double kTenDecimals =
    0.51e-10 + 1e-11;  // as kSixDecimals; 1e-11: the steps of ten thousands of pixels

PointsBack compared(const CArray<CXYZ, CXYZ&>& written, const CArray<CXYZ, CXYZ&>& back, double decimals,
                    const fs::path& path) {
    PointsBack result;
    result.count = back.GetSize();
    if (result.count != written.GetSize())
        fail(path,
             format("the file came back with %d points instead of %d", result.count, written.GetSize()));
    for (int i = 0; i < result.count; ++i) {
        if (back[i].name != written[i].name)
            fail(path, "point " + utf8(written[i].name) + " came back as " + utf8(back[i].name));
        result.coordinates = std::max(result.coordinates, difference(written[i], back[i]));
    }
    if (result.coordinates > decimals)
        fail(path, "the file came back with other coordinates");
    return result;
}

}  // namespace

PointsBack recordPhotoPoints(Measurement& m, const fs::path& path) {
    CString file = libraryPath(path);
    if (WriteCSVFile(&file, m.image.phc, 0) != 1)
        fail(path, "the photo coordinates cannot be written");
    CArray<CXYZ, CXYZ&> back;
    if (ReadCSVFile(&file, back, 1) != 1)
        fail(path, "the photo coordinates cannot be read back");
    return compared(m.image.phc, back, kSixDecimals, path);
}

PointsBack recordProjectedPoints(Measurement& m, const fs::path& path) {
    CArray<CXYZ, CXYZ&> inside, back;
    for (Projection& p : m.projections)
        if (p.place == Place::inside)
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
    return compared(inside, back, kTenDecimals, path);
}
