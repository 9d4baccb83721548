// The shooting grid: directions at equal steps over an area, row by row from the top left, and the image
// names of the shots.
#include <fieldscan/scan_area.h>
#include <fieldscan/string_utilities.h>

#include <cmath>
#include <limits>
#include <utility>

#include "geometry/angle_constants.h"
#include "platform/framework/out_of_memory.h"
#include "scanarea/coincidence.h"

using namespace fieldscan;

namespace {

constexpr double kLargestStep = 10.0 * kRadiansPerDegree;

// The number of shots along a side of the area, `length` in radians.
int shotsAlong(double length) {
    constexpr double kRounding = 1e-9;  // 30 degrees in radians may be a rounding step more than three steps
    return static_cast<int>(std::ceil(length / kLargestStep - kRounding)) + 1;
}

// Sets `shots` angles at equal steps from `first` over `length`, the last one exactly to `last`; a single one
// is in the middle.
void setEqualSteps(double first, double length, double last, int shots, CArray<double, double>& angles) {
    angles.SetSize(shots);
    for (int i = 0; i < shots; ++i)
        angles[i] = first + length * (shots == 1 ? 0.5 : static_cast<double>(i) / (shots - 1));
    if (shots > 1)
        angles[shots - 1] = last;
}

// Changes `name` to the next one of its series, IMG0012.jpg to IMG0013.jpg; false if memory runs out.
bool advanceImageName(CString& name) {
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
    // Without shots, only the corners of the record are checked.
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
        if (width < kCoincident || width > kFullTurn - kCoincident)  // coincident, or a full circle
            width = 0.0;
        double height = second.omega - first.omega;
        if (height < kCoincident)
            height = 0.0;
        const bool given = columns > 0 && rows > 0;
        columnCount = width == 0.0 ? 1 : given ? columns : shotsAlong(width);
        rowCount = height == 0.0 ? 1 : given ? rows : shotsAlong(height);
        const long long shots = static_cast<long long>(columnCount) * rowCount;
        if (shots > std::numeric_limits<int>::max())
            return 0;
        setEqualSteps(first.kappa, width, second.kappa, columnCount, workTable1);
        setEqualSteps(first.omega, height, second.omega, rowCount, workTable2);
        for (int column = 0; column < columnCount; ++column)
            NormalizeAngle(workTable1[column]);
        shootAngles.Reserve(static_cast<int>(shots));
        imageNames.Reserve(static_cast<int>(shots));
        for (int row = 0; row < rowCount; ++row) {
            for (int column = 0; column < columnCount; ++column) {
                CWPK shot(workTable2[row], 0.0, workTable1[column]);
                shootAngles.Add(shot);
                if (!advanceImageName(name))
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
