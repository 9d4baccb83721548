// Planning of the shooting grid.
#include <fieldscan/scan_area.h>
#include <fieldscan/string_utilities.h>

#include <cmath>
#include <limits>
#include <utility>

#include "geometry/angle_constants.h"
#include "platform/framework/line_text.h"
#include "scanarea/coincidence.h"

using namespace fieldscan;

namespace {

constexpr double kWidestStep = 10.0 * kRadiansPerDegree;

// How many shots a side of the area takes; degrees have been through radians, 30 of them may be a rounding
// step more than three steps.
int shotsOver(double length) {
    constexpr double kRounding = 1e-9;
    return static_cast<int>(std::ceil(length / kWidestStep - kRounding)) + 1;
}

// `count` angles at equal steps from `first` over `length`, the last exactly at `last`.
void divide(double first, double length, double last, int count, CArray<double, double>& angles) {
    angles.SetSize(count);
    for (int i = 0; i < count; ++i)
        angles[i] = first + length * (count == 1 ? 0.5 : static_cast<double>(i) / (count - 1));
    if (count > 1)
        angles[count - 1] = last;
}

// `name` becomes the next one of its series; false when memory runs out.
bool countOn(CString& name) {
    if (name.IsEmpty()) {
        name = u"IMG0001.jpg";
        return true;
    }
    const int point = name.ReverseFind('.');
    CString stem = name.Left(point < 0 ? name.GetLength() : point);
    const CString extension = name.Mid(stem.GetLength());
    if (StrPlusOne(stem) != 1)
        return false;
    name = stem + extension;
    return true;
}

}  // namespace

int CScanArea::CalShootAng(CWPK first, CWPK second) {
    const int columns = columnCount, rows = rowCount;
    CString name;
    if (!imageNames.IsEmpty())
        name = std::move(imageNames[imageNames.GetUpperBound()]);
    const auto clear = [&] {
        imageNames.RemoveAll();
        shootAngles.RemoveAll();
        workTable1.RemoveAll();
        workTable2.RemoveAll();
    };
    clear();
    // The record without shots, since it is to get others: its corners are what is left to be checked.
    columnCount = rowCount = 0;
    const int planned = zeroIfOutOfMemory([&] {
        if (CheckParameter() != 1)
            return 0;
        for (double* angle : {&first.omega, &first.kappa, &second.omega, &second.kappa}) {
            if (!std::isfinite(*angle))
                return 0;
            NormalizeAngle(*angle);
        }
        if (first.omega > second.omega)
            std::swap(first.omega, second.omega);
        double width = second.kappa - first.kappa;
        if (width < 0.0)
            width += kFullTurn;
        if (width < kCoincident || width > kFullTurn - kCoincident)  // a rounding step to either side
            width = 0.0;
        double height = second.omega - first.omega;
        if (height < kCoincident)
            height = 0.0;
        const bool given = columns > 0 && rows > 0;
        columnCount = width == 0.0 ? 1 : given ? columns : shotsOver(width);
        rowCount = height == 0.0 ? 1 : given ? rows : shotsOver(height);
        const long long shots = static_cast<long long>(columnCount) * rowCount;
        if (shots > std::numeric_limits<int>::max())
            return 0;
        divide(first.kappa, width, second.kappa, columnCount, workTable1);
        divide(first.omega, height, second.omega, rowCount, workTable2);
        for (int column = 0; column < columnCount; ++column)
            NormalizeAngle(workTable1[column]);
        shootAngles.Reserve(static_cast<int>(shots));
        imageNames.Reserve(static_cast<int>(shots));
        for (int row = 0; row < rowCount; ++row) {
            for (int column = 0; column < columnCount; ++column) {
                CWPK shot(workTable2[row], 0.0, workTable1[column]);
                shootAngles.Add(shot);
                if (!countOn(name))
                    return 0;
                imageNames.Add(name);
            }
        }
        return 1;
    });
    if (!planned) {
        clear();
        columnCount = columns;
        rowCount = rows;
    }
    return planned;
}
