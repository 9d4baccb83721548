// CScanArea: one scan job.
#ifndef FIELDSCAN_SCAN_AREA_H
#define FIELDSCAN_SCAN_AREA_H

#include <fieldscan/attitude.h>
#include <fieldscan/framework/array.h>
#include <fieldscan/framework/file.h>
#include <fieldscan/framework/string.h>
#include <fieldscan/polyline.h>

// A grid of camera shots over an area that the operator outlined. Directions are CWPK in radians: omega the
// zenith angle, kappa the horizontal angle in [0, 2 pi), phi 0. The grid is stored row by row: index = row *
// columnCount + column. The outline is a closed ring; its horizontal angles wrap at the zero direction, and a
// jump of half a turn or more between neighbours is taken for that wrap.
class FIELDSCAN_API CScanArea {
public:
    CScanArea();
    CScanArea(const CScanArea& other);
    virtual ~CScanArea();
    // Copies counts, corners, shots, image names, header line and outline. The work tables and both polylines
    // of the target stay as they are: they are rebuilt from the rest.
    CScanArea& operator=(const CScanArea& other);

    // Everything to 0 or empty, the two polylines excepted.
    void Init();
    void Trace();  // a hook for debugging, does nothing

    // ---- Checks and queries ----

    // 1 when the record is consistent, else the first of these that holds:
    //   -1  imageNames does not hold columnCount * rowCount elements
    //   -2  shootAngles does not
    //   -3  an omega or kappa of the two corners lies outside [0, 2 pi)
    //   -4  a shot's zenith angle exceeds that of its row's first shot by more than one degree, or its
    //       horizontal angle that of its column's top shot; one that is smaller passes
    // An empty grid passes.
    int CheckParameter() const;

    // 1 when outlineAngles is an outline that IsPolyInside can judge, else the first of these that holds:
    //   -1  fewer than three vertices; one that repeats the vertex before it does not count
    //   -2  a direction is not finite
    //   -3  an edge spans half a turn or more, so that the wrap rule reads it the other way round: neighbours
    //       differ by half a turn exactly, to 1e-12 radians, or the edges, each taken the short way, go round
    //       the full circle instead of closing (as a ring about the zenith does), or span it
    //   -4  two edges cross
    //    0  memory runs out
    // Sets *edge to the index i of the edge from vertex i to the next one:
    //   -2  i is the vertex that is not finite
    //   -3  the edge; of edges that do not close, the last one that wraps
    //   -4  the first edge that crosses another
    //   else -1
    // Touching is no crossing, to 1e-12 radians: a vertex may repeat the one before it (the first one at the
    // end, too) or lie on another vertex or edge, even where the outline changes sides there, and edges may
    // run along one another. So an outline may lead to a hole in it and back. Takes time with the square of
    // the vertices: 0.1 s for 5000.
    //
    // An outline whose edges are too long may look like another one that is fine. Horizontal angles 0,
    // 359.9999, 359.9999, 0 outline 0.0001 degrees across zero. Give long edges vertices between.
    int CheckOutline(int* edge = nullptr) const;

    // 1 when the first image name is not empty; 0 when it is, or when there is none.
    int IsWithImage() const;

    // The exterior orientation file of shot `index`: its image name with ".ext" for all from the last "." on;
    // a name without "." gives ".ext" alone; blanks at both ends of the stem go. Returns 1; 0 when index lies
    // outside the grid, and then `name` is unchanged. A shot without a name counts as an empty one.
    int GetExtFileName(int index, CString& name) const;

    // Brings an angle in radians into [0, 2 pi). Angles of 2^31 turns and more give 0.
    void NormalizeAngle(double& angle) const;

    // ---- The shooting grid ----

    // Plans the shots over the area between two directions: `first` its left, `second` its right end, so the
    // horizontal angle grows from the first to the second, through zero when that is smaller (a full turn
    // counts as none); which of them is the upper one does not matter. Zenith angles count from 0, below 2
    // pi. Shots stand row by row from the top, each row from the left, at equal steps, the outermost exactly
    // at the corners' angles (normalised); a single column or row stands in the middle. workTable1 holds the
    // horizontal angles of the columns, workTable2 the zenith angles of the rows, in radians.
    //
    // columnCount and rowCount are kept when both are greater than 0, so set them to 0 before another area is
    // planned; else they become such that neighbours are at most 10 degrees apart. A side shorter than 1e-12
    // radians counts as none and gets one column or row, coincident corners a single shot; so does a width
    // that lacks less than 1e-12 of a full turn. A full circle ends just below a turn: SetFullCircle.
    //
    // imageNames count on from the last name of the record, before its extension: IMG0012.jpg is followed by
    // IMG0013.jpg. Without one they begin with IMG0001.jpg.
    //
    // The corners and polylines of the record stay. Returns 1, and CheckParameter then gives 1; 0 when the
    // corners of the record are out of range (CheckParameter -3), a direction is not finite, the shots would
    // not fit an array or memory runs out: the counts are then as before, shots, names and tables empty.
    int CalShootAng(CWPK first, CWPK second);

    // ---- Polylines, in degrees; rebuilt from the angle arrays at each call ----

    // shootPolyline: x = horizontal angle, y = 0, z = zenith angle of each shot.
    void CalHVPolyline1();
    // outlinePolyline: x = horizontal angle, y = elevation in [0, 360] of each outline direction, z = 0. A
    // direction below the horizon has an elevation just under 360.
    void CalHVPolyline2();

    // ---- The outline ----

    // 1 when the outline crosses the zero direction: neighbours, the last and the first included, differ by
    // pi or more in kappa. Else 0.
    int CheckZeroCross() const;
    // Distributes the indices of the outline, in ring order from the first vertex behind a wrap from 2 pi to
    // 0: those behind such a wrap into afterWrap, those behind a wrap back into beforeWrap. To be called when
    // CheckZeroCross gives 1. Both are emptied first; null pointers are passed over.
    void DivideZeroCross(CArray<int, int&>* afterWrap, CArray<int, int&>* beforeWrap) const;
    // Index of the vertex with the smallest zenith angle, the last of several; -1 for an empty outline.
    int GetMinmumHAngleIndex() const;
    // Sets areaAngle1 to the top-left direction (smallest zenith angle, left horizontal angle) and areaAngle2
    // to the bottom-right one; phi stays. Across the zero direction left is the smallest angle before the
    // wrap and right the largest behind it, so left > right. Always 1. Searches begin at 360 for the smallest
    // and -1 for the largest figure, which is what an empty outline leaves.
    //
    // An outline that goes round the full circle, as CheckOutline finds with -3, leaves them too: 360 as left
    // or -1 as right. For a full circle call SetFullCircle.
    int CalPolylineTopLeftBottomRight();
    // Outlines the full circle (a panorama) between two zenith angles in radians: an outline of eight
    // vertices, a third of the circle apart, and both corners, from left 0 to right just below a turn:
    // 359.9999 degrees, which all files keep but for the corners of the second version (359.999). The rest
    // stays. Returns 1; 0 unless 0 <= top < bottom <= pi, or when memory runs out, and then nothing has
    // changed.
    //
    // CalShootAng plans its last column at the right end, so it repeats the first. Directions in the seam,
    // from 359.9999 to 360 and 0 itself, are not inside: ask IsPolyInside about 359.9999 for them.
    int SetFullCircle(double top, double bottom);

    // ---- Scan-area file, first version: docs/file_formats.md ----

    // Makes the file or replaces it as a whole: a failure keeps the old one. Six decimals of a degree are
    // kept, phi is not. One line per image name, with the direction of the same index (0, 0 where there is
    // none). Returns 1; 0 when an image name holds a line end or a NUL (the file is then untouched), the path
    // is empty, the file cannot be opened, another writer keeps it, or writing fails.
    int Write(CString path) const;
    // Init, then what the file holds. The shots are read to the end of the file, whatever the counts say; a
    // line that does not begin with two numbers is passed over; an image name ends at its first blank.
    // Returns 1; 0 when the path is empty, the file cannot be opened or read to its end, or the first line
    // does not hold two integers or the second or third not two numbers; what was read before that stays.
    //
    // Both show a message (CKTImgMsg) when the file cannot be opened because access is denied or another
    // program holds it.
    int Read(CString path);

    // ---- Scan-area file, second version: docs/file_formats.md ----

    // Makes the file or replaces it as a whole: a failure keeps the old one. It holds the outline too, phi of
    // the shots, and image names with blanks and commas; three decimals of a degree for the corners, four for
    // the outline, five for the shots. Horizontal and zenith angles that would round to 360 are written as
    // the last figure below it (359.999, 359.9999, 359.99999), so that they do not come back as 0. Not in it:
    // work tables, polylines, headerLine. Returns 1; 0 when a name holds a line end or a direction is not
    // finite (the file is then untouched), the path is empty, the file cannot be opened, or writing or
    // closing fails.
    int Write2(CString path) const;
    // Init, then what the file holds; headerLine is its first line, trimmed. Horizontal angles and those of
    // corners and outline come back in [0, 2 pi). Returns 1; 0 when the path is empty, the file cannot be
    // opened or read to its end, the first line is another, or a line is missing, cut off or not as Write2
    // writes it; what was read before that stays. What follows the last line does not count.
    //
    // The message of Write and Read is shown here too. Neither reader takes the other's version: Read wants
    // two integers first, Read2 its first line.
    int Read2(CString path);

    // ---- Data ----

    int columnCount;                    // shots per row
    int rowCount;                       // rows of shots
    CWPK areaAngle1;                    // top-left direction of the area
    CWPK areaAngle2;                    // bottom-right direction
    CStringArray imageNames;            // of the shots, row by row
    CArray<CWPK, CWPK&> shootAngles;    // their directions
    CArray<double, double> workTable1;  // columns of CalShootAng, radians
    CArray<double, double> workTable2;  // rows of CalShootAng, radians
    CPolyline shootPolyline;            // of CalHVPolyline1
    CPolyline outlinePolyline;          // of CalHVPolyline2
    CString headerLine;                 // first line of the last file read in the second version
    CArray<CWPK, CWPK&> outlineAngles;  // the outline, a closed ring

protected:
    enum { kLineSize = 512 };
    // One line of `file`, its line feed included, into a buffer of at least kLineSize bytes, closed by a zero
    // byte; what does not fit is left out. Returns the bytes stored, 0 at the end of the file.
    int GetImgCsvLine(CFile* file, char* buffer);
    // Appends the text, in 8-bit characters, to "\Internal Disk\FIELD_SCAN\log.txt". Does nothing when that
    // cannot be opened.
    void WriteLogFile(CString text);
};

#endif
