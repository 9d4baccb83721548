// Each format by the reader that the library has for it.
#include "formats/contents.h"

namespace {

void readCodes(const TextFile& file, CArray<CXYZ, CXYZ&>& points) {
    for (int i = 0; i < points.GetSize(); ++i)
        CutItemInStr(file.line(static_cast<std::size_t>(i)).c_str(), 4, points[i].code);
}

}  // namespace

bool readContents(const TextFile& file, Format format, Contents& c) {
    CString path = file.path();
    double* v = c.values;
    switch (format) {
        case Format::unknown:
            return false;
        case Format::point:
            return ReadCSVFile(&path, c.points, 1) == 1;
        case Format::occupied:
            return ReadOccInfoFile(&path, c.points, 1) == 1;
        case Format::imageCoordinate:
            return ReadImcFile(&path, &c.image, c.size, c.points, 1) == 1;
        case Format::scanResult:
            if (ReadCSVFile(&path, c.points, 1) != 1)
                return false;
            readCodes(file, c.points);
            return true;
        case Format::versionedScan:
            return KVX4NP_ReadCSVFile(path, c.points, c.first, c.second, c.texts) == 1;
        case Format::camera:
            return c.camera.Read(path) == 1;
        case Format::scanArea:
            return c.area.Read(path) == 1;
        case Format::scanArea2:
            return c.area.Read2(path) == 1;
        case Format::panorama:
            return KVX4NP_ReadPanoramaInfo(path, v[0], v[1], v[2], v[3]) == 1;
        case Format::exterior:
            return ReadExtFile(path, v[0], v[1], v[2], v[3], v[4], v[5]) == 1;
        case Format::unitSettings:
            return c.units.Read(path) == 1;
        case Format::range:
            return c.range.Read(path) == 1;
    }
    return false;
}
