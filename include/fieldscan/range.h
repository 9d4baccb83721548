// CRange: the box that points span, and its file.
#ifndef FIELDSCAN_RANGE_H
#define FIELDSCAN_RANGE_H

#include <fieldscan/export.h>
#include <fieldscan/framework/string.h>
#include <fieldscan/points.h>

// How a range file holds its coordinates. The record itself always has surveying axes and metres.
enum RANGE_AXES : int {
    RANGE_SURVEY = 0,  // x north, y east
    RANGE_MATH = 1     // x and y exchanged: x east, y north
};

// The unit of a range file.
enum RANGE_UNIT : int {
    RANGE_METRE = 0,
    RANGE_INTFEET = 1,  // international feet
    RANGE_USFEET = 2    // US survey feet
};

// A box with edges parallel to the axes, in surveying coordinates, metres. Names, codes and attr of its
// corners mean nothing; they are copied with the record and not written.
class FIELDSCAN_API CRange {
public:
    CRange();
    CRange(const CRange& other);
    CRange& operator=(const CRange& other);

    void Init();   // an empty range: corners 0, no points
    void Trace();  // a hook for debugging, does nothing

    // Takes a point in: the first one sets both corners, further ones let the box grow. Returns 1; 0 when a
    // coordinate is NaN, and then the range is as it was.
    int AddPoint(const CXYZ& point);

    // 1 when the point lies in the box or on its border, else 0; an empty range holds no point.
    int IsInside(const CXYZ& point) const;

    // ---- Range file: docs/file_formats.md ----

    // Makes the file or replaces it as a whole: a failure keeps the old one. Ten decimals of the unit;
    // corners that the application has set the wrong way round are written and not read again. CCalcXYZHV
    // gives the feet. Returns 1; 0 when the axes or the unit are none of the above (the file is then
    // untouched), when the file cannot be opened, another writer keeps it, or writing fails.
    int Write(CString path, RANGE_AXES axes, RANGE_UNIT unit) const;

    // Reads a file whatever its axes and unit. Returns 1; 0, and the range empty, when the file cannot be
    // opened or read to its end, when its first line, trimmed at both ends, is not the version line, when
    // axes, unit or count are missing or none that Write knows, or when a corner is not three numbers or the
    // lower one exceeds the upper.
    int Read(CString path);

    CXYZ lower;  // the smallest x, y and z of the points
    CXYZ upper;  // the largest
    int count;   // points taken in; 0: the range is empty
};

#endif
