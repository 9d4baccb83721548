// Scan areas for the tests.
#ifndef FIELDSCAN_TESTS_SCANAREA_SCAN_AREAS_H
#define FIELDSCAN_TESTS_SCANAREA_SCAN_AREAS_H

#include <fieldscan/scan_area.h>

#include <string>

#include "tests/print_text.h"

constexpr double kPi = 3.141592653589793;
constexpr double kRadian = 0.017453292519943295;

inline void addDirection(CArray<CWPK, CWPK&>& list, double horizontalDegrees, double zenithDegrees) {
    CWPK direction(zenithDegrees * kRadian, 0, horizontalDegrees * kRadian);
    list.Add(direction);
}

// A grid of shots one degree apart, consistent.
inline void fillGrid(CScanArea& area, int columns, int rows) {
    area.columnCount = columns;
    area.rowCount = rows;
    for (int i = 0; i < columns * rows; ++i) {
        const int row = i / columns;
        addDirection(area.shootAngles, 10 + i % columns, 80 + row);
        area.imageNames.Add(CString(u"IMG") + CString(std::to_string(i).c_str()) + u".jpg");
    }
}

// The message to the operator, ended by "|".
inline CString accessDenied(const CString& path) {
    return CString(u"ﾌｧｲﾙ名：") + path +
           u"\n\n\nﾌｧｲﾙｱｸｾｽが拒否されました。他のｱﾌﾟﾘｹｰｼｮﾝで使用している可能性があります。|";
}

#endif
