// The readers of camera, scan-area, panorama, orientation, unit, range and registry files on any bytes. What
// a file gave is written and read again without loss beyond its decimals.
#include <fieldscan/camera.h>
#include <fieldscan/panorama_files.h>
#include <fieldscan/range.h>
#include <fieldscan/scan_area.h>
#include <fieldscan/unit_settings.h>

#include "fuzz/input.h"
#include "platform/framework/line_text.h"
#include "platform/system.h"

namespace {

template <class Read, class Write>
void readAndWrite(Read read, Write write) {
    if (read())
        comesBack(read, write);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    FuzzedDataProvider input(data, size);
    chooseCodePage(input);
    const int which = input.ConsumeIntegralInRange(0, 7);
    const std::string bytes = input.ConsumeRemainingBytesAsString();
    file().put(bytes);
    const CString path = file().path();
    double v[6] = {};
    if (which == 0) {
        CCamera camera;
        (void)camera.Read(path);
        require(static_cast<std::size_t>(camera.marks.GetSize() + camera.dist.radius.GetSize()) <=
                bytes.size());
        const auto fits = [&](int i) { return fieldscan::fitsWord(camera.marks[i].name); };
        require(camera.Write(path) == allFit(camera.marks.GetSize(), fits));
    } else if (which == 1) {
        CScanArea area;
        (void)area.Read(path);
        require(static_cast<std::size_t>(area.shootAngles.GetSize()) <= bytes.size());
        const auto fits = [&](int i) { return fieldscan::fitsLine(area.imageNames[i]); };
        require(area.Write(path) == allFit(area.imageNames.GetSize(), fits));
    } else if (which == 2) {
        CScanArea area;
        readAndWrite([&] { return area.Read2(path); }, [&] { return area.Write2(path); });
    } else if (which == 3) {
        readAndWrite([&] { return KVX4NP_ReadPanoramaInfo(path, v[0], v[1], v[2], v[3]); },
                     [&] { return KVX4NP_WritePanoramaInfo(path, v[0], v[1], v[2], v[3]); });
    } else if (which == 4) {
        readAndWrite([&] { return ReadExtFile(path, v[0], v[1], v[2], v[3], v[4], v[5]); },
                     [&] { return WriteExtFile(path, v[0], v[1], v[2], v[3], v[4], v[5]); });
    } else if (which == 5) {
        CTSUnit units;
        readAndWrite([&] { return units.Read(path); }, [&] { return units.Write(path); });
    } else if (which == 6) {
        CRange range;
        readAndWrite([&] { return range.Read(path); },
                     [&] { return range.Write(path, RANGE_MATH, RANGE_METRE); });
    } else {
        setenv("FIELDSCAN_REGISTRY", file().hostPath().c_str(), 1);
        CString text(u"untouched");
        if (!fieldscan::system::registryText(u"System\\StorageManager\\Profiles\\SDMMC", u"Folder", text))
            require(text == CString(u"untouched"));
    }
    return 0;
}
