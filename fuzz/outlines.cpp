// Polylines, scan areas, key sort and the image classes on any numbers. The forms for lists are compared with
// those for a single point, the key sort with std::stable_sort.
#include <fieldscan/image.h>
#include <fieldscan/key_sort.h>
#include <fieldscan/scan_area.h>
#include <fieldscan/survey.h>

#include <algorithm>
#include <iterator>
#include <vector>

#include "fuzz/input.h"

namespace {

CPolyline polyline(FuzzedDataProvider& input, int most) {
    CPolyline line;
    for (int left = input.ConsumeIntegralInRange(0, most); left > 0; --left) {
        const double v[] = {number(input), number(input), number(input)};
        line.AddVertex(CVertex(v[0], v[1], v[2], input.ConsumeIntegral<int>()));
    }
    if (input.ConsumeBool())
        line.Close();
    return line;
}

void polylines(FuzzedDataProvider& input) {
    CPolyline line = polyline(input, 40);
    double range[6];
    (void)line.GetRange(range[0], range[1], range[2], range[3], range[4], range[5]);
    line.GetTotalLength();
    line.CheckTurn();
    line.Reverse();
    line.Reverse();
    const double x = number(input), y = number(input);
    const int inside = line.PtInPolyline(x, y);
    require(inside >= -1 && inside <= 1);
    const int insideInAngles = CCalcXYZHV::IsPolyInside(line, x, y);
    CArray<double, double> manyX, manyY;
    for (int k = 0; k < 200; ++k) {  // enough for a grid of the edges
        manyX.Add(x);
        manyY.Add(y);
    }
    CArray<int, int> all;
    require(line.PtInPolyline(manyX, manyY, all) == 1 && all[199] == inside);
    require(CCalcXYZHV::IsPolyInside(line, manyX, manyY, all) == 1 && all[199] == insideInAngles);
    double angles[4];
    (void)CCalcXYZHV::GetAngleRange(line, angles[0], angles[1], angles[2], angles[3]);
    CPolyline smooth = line, dense = line;
    (void)(input.ConsumeBool() ? smooth.Spline(input.ConsumeIntegralInRange(-1, 9))
                               : smooth.CtmlRomSpline(input.ConsumeIntegralInRange(-1, 9)));
    const double step = input.ConsumeFloatingPointInRange(-1.0, 10.0);
    if (line.GetTotalLength() < 1e4)
        (void)dense.InterpolateVertex(step < 0.01 ? 0.01 : step);
    line.Normalize();
    line.DelVertex(input.ConsumeIntegral<unsigned>());
    line.SetVertexSize(input.ConsumeIntegralInRange(0u, 50u));
}

void scanAreas(FuzzedDataProvider& input) {
    CScanArea area;
    const auto direction = [&] {
        const double v[] = {number(input), number(input)};
        return CWPK(v[0], 0, v[1]);
    };
    for (int left = input.ConsumeIntegralInRange(0, 24); left > 0; --left) {
        CWPK angles = direction();
        area.outlineAngles.Add(angles);
    }
    area.areaAngle1 = direction();
    area.areaAngle2 = direction();
    area.columnCount = input.ConsumeIntegralInRange(-2, 50);
    area.rowCount = input.ConsumeIntegralInRange(-2, 50);
    (void)area.CheckParameter();
    int edge;
    const int code = area.CheckOutline(&edge);
    require(code >= -4 && code <= 1 && edge < area.outlineAngles.GetSize() && (edge >= 0) == (code < -1));
    area.CalHVPolyline1();
    area.CalHVPolyline2();
    const CWPK first = direction(), second = direction();
    if (area.CalShootAng(first, second))
        require(area.CheckParameter() == 1);
}

// Ascending, NaN last, equal keys in their old order: as std::stable_sort gives it.
void keySort(FuzzedDataProvider& input) {
    CArray<double, double> keys;
    CArray<int, int> order;
    std::vector<double> plain;
    for (int i = 0; input.remaining_bytes() > 0 && i < 3000; ++i) {
        plain.push_back(number(input));
        keys.Add(plain.back());
    }
    std::vector<int> expected(plain.size());
    for (std::size_t i = 0; i < expected.size(); ++i)
        expected[i] = static_cast<int>(i);
    std::stable_sort(expected.begin(), expected.end(), [&](int a, int b) {
        const double x = plain[static_cast<std::size_t>(a)], y = plain[static_cast<std::size_t>(b)];
        return x < y || (!std::isnan(x) && std::isnan(y));
    });
    QuickSortKey(keys, order, 1);
    require(order.GetSize() == keys.GetSize());
    for (int i = 0; i < order.GetSize(); ++i)
        require(order[i] == expected[static_cast<std::size_t>(i)]);
}

void images(FuzzedDataProvider& input) {
    CImage image;
    image.camera.dist.SetDistModel(static_cast<DIST_MODEL>(input.ConsumeIntegralInRange(-1, 5)));
    for (double& p : image.camera.dist.para)
        p = number(input);
    image.camera.focal = number(input);
    const double pitch = number(input);
    image.SetRes(pitch, pitch);
    const double v[] = {number(input), number(input), number(input)};
    CXYZ in(v[0], v[1], v[2]), out, again;
    double cx, cy;
    (void)image.camera.dist.CalDistInv(in.x, in.y, cx, cy, number(input));
    (void)image.CalInnOri(static_cast<INNORI_TYPE>(input.ConsumeIntegralInRange(-1, 4)));
    (void)image.ImcToPhc(in, out, 1);
    (void)image.PhcToImc(in, out, 1, 1e-6);
    (void)image.ObjToImc(in, out, again);
    image.PtInImage(in);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    FuzzedDataProvider input(data, size);
    void (*const families[])(FuzzedDataProvider&) = {polylines, scanAreas, keySort, images};
    families[input.ConsumeIntegralInRange<std::size_t>(0, std::size(families) - 1)](input);
    return 0;
}
