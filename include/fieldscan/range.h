// CRange: the box around points, and its file.
#ifndef FIELDSCAN_RANGE_H
#define FIELDSCAN_RANGE_H

#include <fieldscan/export.h>
#include <fieldscan/framework/string.h>
#include <fieldscan/points.h>

// The axes of a range file; the record itself always has surveying axes and metres.
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

// A box with edges parallel to the axes, in surveying coordinates and metres. Names, codes and attr of its
// corners have no meaning; they are copied with the record and not written.
class FIELDSCAN_API CRange {
public:
    CRange();
    CRange(const CRange& other);
    CRange& operator=(const CRange& other);

    void Init();   // an empty range: corners 0, no points
    void Trace();  // a hook for debugging, does nothing

    // Adds a point: the first one sets both corners, further ones extend the box. Returns 1; 0, with the
    // range unchanged, when a coordinate is NaN.
    [[nodiscard]] int AddPoint(const CXYZ& point);

    // 1 when the point lies in the box or on its border, else 0; 0 for an empty range.
    int IsInside(const CXYZ& point) const;

    // ---- Range file: docs/file_formats.md ----

    // Makes the file or replaces it as a whole, with ten decimals of the unit; feet as CCalcXYZHV converts
    // them. Swapped corners are written, but Read refuses the file. Returns 1; 0, with the file unchanged,
    // when axes or unit are none of the above, when the file cannot be opened, another writer has it, or
    // writing fails.
    [[nodiscard]] int Write(CString path, RANGE_AXES axes, RANGE_UNIT unit) const;

    // Reads a file with any of the axes and units. Returns 1; 0, with an empty range, when the file cannot be
    // opened or read to its end, when its first line (ReadHeader) is not the version line, when axes or unit
    // are missing or none of the above, when the count is missing or negative, or when a corner is not three
    // numbers or the lower one exceeds the upper.
    [[nodiscard]] int Read(CString path);

    CXYZ lower;  // the smallest x, y and z of the points
    CXYZ upper;  // the largest
    int count;   // number of points added; 0: the range is empty
};

#endif
