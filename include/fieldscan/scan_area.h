// CScanArea: one scan job, its outline and its camera shots.
#ifndef FIELDSCAN_SCAN_AREA_H
#define FIELDSCAN_SCAN_AREA_H

#include <fieldscan/attitude.h>
#include <fieldscan/framework/array.h>
#include <fieldscan/framework/file.h>
#include <fieldscan/framework/string.h>
#include <fieldscan/polyline.h>

// A grid of camera shots over an area that the operator has outlined. Directions are CWPK in radians: omega
// the zenith angle, kappa the horizontal angle in [0, 2 pi), phi 0. The grid is stored row by row: index =
// row * columnCount + column. The outline is a closed ring. Its horizontal angles wrap at the zero direction:
// neighbours that differ by pi or more are taken to be on different sides of it.
class FIELDSCAN_API CScanArea {
public:
    CScanArea();
    CScanArea(const CScanArea& other);
    virtual ~CScanArea();
    // Copies counts, corners, shots, image names, header line and outline. The work tables and both polylines
    // stay as they are; they can be rebuilt from the rest.
    CScanArea& operator=(const CScanArea& other);

    // Sets everything except the two polylines to 0 or empty.
    void Init();
    void Trace();  // for debugging; does nothing

    // ---- Checks and queries ----

    // 1 if the record is consistent, else the first of these that applies:
    //   -1  imageNames does not have columnCount * rowCount elements
    //   -2  shootAngles does not
    //   -3  omega or kappa of a corner is outside [0, 2 pi)
    //   -4  a shot's zenith angle is more than one degree larger than that of the first shot of its row, or
    //       its horizontal angle than that of the top shot of its column; a smaller one is not checked
    // An empty grid is consistent.
    [[nodiscard]] int CheckParameter() const;

    // 1 if outlineAngles is an outline that CCalcXYZHV::IsPolyInside can use, else the first of these that
    // applies:
    //   -1  it has fewer than three vertices; one that repeats the vertex before it does not count
    //   -2  a direction is not finite
    //   -3  an edge spans pi or more, so that it would be read the other way round. Neighbours differ by
    //       exactly pi (within 1e-12 radians), or the edges, each taken the short way, do not close but go
    //       round the full circle (like a ring about the zenith), or they span it.
    //   -4  two edges cross
    //    0  memory runs out
    // Sets *edge to an index; edge i runs from vertex i to the next one:
    //   -2  the vertex that is not finite
    //   -3  the edge; if the edges do not close, the last one that wraps
    //   -4  the first edge that crosses another
    //   else -1
    // Touching, within 1e-12 radians, is no crossing. A vertex may repeat the one before it (also the first
    // one at the end). It may lie on another vertex or edge, even if the outline changes sides there. Edges
    // may run along one another, so an outline may lead to a hole and back. The time grows with the square of
    // the number of vertices: 0.1 s for 5000.
    //
    // An outline with too long edges may look like another one that is good: horizontal angles 0, 359.9999,
    // 359.9999, 0 degrees outline 0.0001 degrees across zero. Put vertices into long edges.
    [[nodiscard]] int CheckOutline(int* edge = nullptr) const;

    // 1 if there is a first image name and it is not empty, else 0.
    int IsWithImage() const;

    // The name of the exterior orientation file of shot `index`: its image name with ".ext" in place of the
    // last "." and what follows, without blanks at both ends of the stem. A name without "." and a shot
    // without a name give just ".ext". Returns 1; 0 if index is outside the grid or memory runs out, and then
    // `name` is unchanged.
    [[nodiscard]] int GetExtFileName(int index, CString& name) const;

    // Brings an angle in radians into [0, 2 pi). One that rounding leaves outside becomes 0, and so does one
    // of 2^31 full circles or more.
    void NormalizeAngle(double& angle) const;

    // ---- The shooting grid ----

    // Plans the shots over the area between two directions, `first` at its left and `second` at its right
    // end. The horizontal angle grows from the first to the second, through zero if the second is smaller.
    // Either of them may be the upper one. Both are normalised to [0, 2 pi).
    // The shots are in rows from the top, each row from the left, at equal steps. The outermost are exactly
    // at the angles of the two directions; a single column or row is in the middle. workTable1 receives the
    // horizontal angles of the columns, workTable2 the zenith angles of the rows, in radians.
    //
    // columnCount and rowCount are kept if both are greater than 0: set them to 0 before another area is
    // planned. Else they are computed so that neighbours are at most 10 degrees apart. A side shorter than
    // 1e-12 radians counts as 0 and gets one column or row; so does a width within 1e-12 of the full circle.
    // So coincident directions give a single shot. A full circle ends just below 360 degrees: SetFullCircle.
    //
    // imageNames continue from the last name of the record: IMG0012.jpg is followed by IMG0013.jpg. Without
    // one they begin with IMG0001.jpg.
    //
    // The corners and polylines of the record stay. Returns 1, and CheckParameter then returns 1 too. Returns
    // 0 if the corners of the record are out of range (CheckParameter -3), a direction is not finite, the
    // shots do not fit an array or memory runs out. Then the counts are as before, and shots, names and
    // tables are empty.
    [[nodiscard]] int CalShootAng(CWPK first, CWPK second);

    // ---- Polylines in degrees, rebuilt at each call ----

    // Sets shootPolyline: x = horizontal angle, y = 0, z = zenith angle of each shot.
    void CalHVPolyline1();
    // Sets outlinePolyline: x = horizontal angle, y = elevation in [0, 360] of each outline vertex, z = 0. A
    // vertex just below the horizon has an elevation just below 360.
    void CalHVPolyline2();

    // ---- The outline ----

    // 1 if the outline crosses the zero direction: two neighbours, or the last and the first vertex, differ
    // by pi or more in kappa. Else 0.
    int CheckZeroCross() const;
    // Splits the indices of the outline at the zero direction: those after a wrap from 2 pi to 0 go to
    // afterWrap, those after a wrap back to beforeWrap. They are in ring order from the first vertex after a
    // wrap to 0 on, from index 0 on if there is none. To be called if CheckZeroCross is 1. Both lists are
    // emptied first; either pointer may be null.
    void DivideZeroCross(CArray<int, int&>* afterWrap, CArray<int, int&>* beforeWrap) const;
    // The index of the vertex with the smallest zenith angle, the last one of several; -1 for an empty
    // outline.
    int GetMinmumHAngleIndex() const;
    // Sets areaAngle1 to the top-left direction (smallest zenith angle, left horizontal angle) and areaAngle2
    // to the bottom-right one; phi stays. If the outline crosses the zero direction, left is the smallest
    // angle before the wrap and right the largest after it, so left > right. Always returns 1.
    //
    // The searches start at 360 for the smallest and at -1 for the largest angle. An empty outline leaves
    // these values in the corners. So does one that goes round the full circle (CheckOutline -3): 360 as left
    // or -1 as right. For a full circle call SetFullCircle.
    int CalPolylineTopLeftBottomRight();
    // Outlines the full circle (a panorama) between two zenith angles in radians. Sets an outline of eight
    // vertices, a third of the circle apart, and both corners: left at 0, right at 359.9999 degrees. Much
    // closer to 360 the first version of the file would write 360, and CalShootAng would take both ends for
    // one. In the second version the corners have 359.999. The rest of the record stays. Returns 1; 0 unless
    // 0 <= top < bottom <= pi, or if memory runs out, and then nothing has changed.
    //
    // CalShootAng plans its last column at the right end, so it repeats the first one. Directions in the
    // seam, from 359.9999 to 360 degrees and 0 itself, are not inside: ask IsPolyInside about 359.9999.
    [[nodiscard]] int SetFullCircle(double top, double bottom);

    // ---- Scan-area file, first version: docs/file_formats.md ----

    // Makes the file or replaces it as a whole; if that fails, the old one stays. Angles are in degrees with
    // six decimals, phi is left out. Each image name makes a line, with the direction of the same index (0, 0
    // if there is none). Returns 1; 0 if an image name contains a line end or a NUL (the file is not touched
    // then), the path is empty, the file cannot be opened, another writer keeps it, or writing fails.
    [[nodiscard]] int Write(CString path) const;
    // Calls Init and reads the file. Shots are read to the end of the file, whatever the counts are. A line
    // that does not begin with two numbers is skipped. An image name ends at its first blank. Returns 1; 0 if
    // the path is empty, the file cannot be opened or read to its end, the first line does not begin with two
    // integers or the second or third with two numbers; what was read before that stays.
    //
    // Both show a message (CKTImgMsg) if the file cannot be opened because access is denied or another
    // program has it open.
    [[nodiscard]] int Read(CString path);

    // ---- Scan-area file, second version: docs/file_formats.md ----

    // Makes the file or replaces it as a whole; if that fails, the old one stays. The file also has the
    // outline, phi of the shots, and image names with blanks and commas. Angles are in degrees: three
    // decimals for the corners, four for the outline, five for the shots. Horizontal and zenith angles below
    // 360 that would round to 360 are written as 359.999, 359.9999 or 359.99999, so that they do not come
    // back as 0 and a full circle keeps its width. Work tables, polylines and headerLine are not in the file.
    // Returns 1; 0 if an image name contains a line end or a direction is not finite (the file is not touched
    // then), the path is empty, the file cannot be opened, or writing or closing fails.
    [[nodiscard]] int Write2(CString path) const;
    // Calls Init and reads the file, as many shots and vertices as its counts give. headerLine becomes the
    // first line, trimmed. Horizontal angles, and the zenith angles of corners and outline, are brought into
    // [0, 2 pi), so 360.00000 comes back as 0. Returns 1; 0 if the path is empty, the file cannot be opened
    // or read to its end, the first line is another one, or a line is missing, cut off or not as Write2
    // writes it; what was read before that stays. What follows the last line is ignored.
    //
    // Both show the message of Write and Read. Each reader refuses the other's version: Read needs two
    // integers first, Read2 its first line.
    [[nodiscard]] int Read2(CString path);

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
    // Reads one line of `file`, with its line feed, into a buffer of at least kLineSize bytes, and ends it
    // with a zero byte. What does not fit is lost; Read has no such limit. Returns the number of bytes
    // stored, 0 at the end of the file.
    int GetImgCsvLine(CFile* file, char* buffer);
    // Appends the text as it is, in 8-bit characters, to "\Internal Disk\FIELD_SCAN\log.txt". Does nothing if
    // the file cannot be opened.
    void WriteLogFile(CString text);
};

#endif
