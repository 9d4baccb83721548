#include "area.h"

#include "points.h"

void readArea(const TextFile& file, ScanJob& job, bool needsOutline) {
    const Format format = formatOf(file);
    if (format == Format::point) {
        CArray<CXYZ, CXYZ&> vertices;
        readPoints(file, vertices);
        setOutline(vertices, file.name(), job);
    } else {
        if (format != Format::scanArea && format != Format::scanArea2)
            file.fail(
                1, "expected a scan-area file, or an outline of lines name,horizontal angle,zenith angle,0");
        Contents contents;
        readWhole(file, format, contents);
        const std::string fault = areaFault(contents.area);
        if (!fault.empty())
            file.fail(0, fault);
        job.area = contents.area;
    }
    const int vertices = job.area.outlineAngles.GetSize();
    if (vertices == 0 && needsOutline)
        file.fail(0, "expected an outline of three vertices at least, found none");
    job.area.CalHVPolyline1();
    try {
        if (vertices > 0)
            measureArea(job);
    } catch (const std::runtime_error& error) {
        file.fail(0, error.what());
    }
    if (job.width() == 0.0 || job.height() <= 0.0)
        file.fail(0, "expected corners that span an area");
}
