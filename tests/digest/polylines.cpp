// Polylines, splines, scan areas, key sort.
#include <fieldscan/key_sort.h>
#include <fieldscan/scan_area.h>
#include <fieldscan/survey.h>

#include "tests/digest/digest.h"

namespace {

// Coarse enough to meet vertices and edges, and not exact.
CVertex vertexOf(Random& random) {
    const double x[] = {random.below(50) * 0.1, random.below(50) * 0.1, random.below(50) * 0.1};
    return CVertex(x[0], x[1], x[2], random.below(64));
}

CPolyline polylineOf(Random& random, int vertices) {
    CPolyline polyline(random.below(2) ? CPolyline::kClosed : 0);
    for (int i = 0; i < vertices; ++i)
        polyline.AddVertex(vertexOf(random));
    return polyline;
}

CWPK directionOf(Random& random, double kappa, double width) {
    kappa += random.around(width);
    CScanArea().NormalizeAngle(kappa);
    return CWPK(1.2 + random.around(0.5), 0.0, kappa);
}

const Family polylines("polylines", 200, kExact, [](Results& out, Random& random, int i) {
    CPolyline polyline = polylineOf(random, i % 23);
    out << polyline.GetTotalLength() << polyline.GetTotalLengthXY() << polyline.CheckTurn();
    for (int k = 0; k < 50; ++k) {
        const CVertex p = vertexOf(random);
        out << polyline.PtInPolyline(p.x, p.y);
    }
    double range[6];
    out << polyline.GetRange(range[0], range[1], range[2], range[3], range[4], range[5]);
    for (const double limit : range)
        out << limit;
    polyline.Normalize();
    out << polyline << polyline.InterpolateVertex(0.1 + i % 40 * 0.1) << polyline;
});

const Family splines("splines", 100, kExact, [](Results& out, Random& random, int i) {
    CPolyline polyline = polylineOf(random, i % 17);
    out << polyline.Spline(i % 9) << polyline << polyline.CtmlRomSpline(i % 8) << polyline;
});

const Family scanAreas("scan_areas", 100, kExact, [](Results& out, Random& random, int i) {
    CScanArea area;
    const double middle = i % 3 ? random.around(3.0) : 0.0;
    for (int k = 0; k < i % 19; ++k) {
        CWPK direction = directionOf(random, middle, i % 5 ? 0.7 : 4.0);
        area.outlineAngles.Add(direction);
    }
    CArray<int, int&> after, before;
    area.DivideZeroCross(&after, &before);
    area.CalPolylineTopLeftBottomRight();
    area.CalHVPolyline2();
    const CPolyline& outline = area.outlinePolyline;
    out << area.CheckZeroCross() << area.GetMinmumHAngleIndex() << after << before << area.areaAngle1
        << area.areaAngle2 << outline;
    double range[4] = {};
    (void)CCalcXYZHV::GetAngleRange(outline, range[0], range[1], range[2], range[3]);
    for (int k = 0; k < 50; ++k) {
        const double h = range[0] + random.around(60.0), v = 20.0 + random.around(40.0);
        const CVertex* vertex = outline.GetVertex(static_cast<unsigned>(k));
        out << CCalcXYZHV::IsPolyInside(outline, h, vertex ? vertex->y : v) << range[k % 4];
    }
    area.columnCount = i % 4;
    area.rowCount = i % 6;
    const CWPK first = directionOf(random, middle, 1.0), second = directionOf(random, middle, 1.0);
    out << area.CalShootAng(first, second) << area.CheckParameter() << area.imageNames << area.shootAngles;
    area.CalHVPolyline1();
    out << area.shootPolyline << area.workTable1 << area.workTable2;
});

const Family keySort("key_sort", 60, kExact, [](Results& out, Random& random, int i) {
    CArray<double, double> keys;
    CArray<int, int> order;
    for (int k = 0; k < i * 9; ++k) {
        const double key = random.around(4.0);
        keys.Add(k % 31 == 7 ? std::nan("") : i % 2 ? key : std::trunc(key));  // also 0 and -0
    }
    QuickSortKey(keys, order, i % 4 < 2);
    out << keys << order;
});

}  // namespace
