// CVertex, CPolyline: polylines and polygons.
#ifndef FIELDSCAN_POLYLINE_H
#define FIELDSCAN_POLYLINE_H

#include <fieldscan/framework/array.h>
#include <fieldscan/framework/string.h>
#include <fieldscan/points.h>

// A point of a polyline with a word of flag bits. Its point name is "0" until it is given one.
class FIELDSCAN_API CVertex : public CXYZ {
public:
    // Bits of the flag word.
    enum Flag {
        kSplineVertex = 0x08,  // inserted by a spline
        kSplineFrame = 0x10,   // a control point of a spline, as the user gave it
        kDefault = 0x20        // what a vertex made by default carries; nothing reads it
    };

    // Coordinates 0 unless they are given.
    CVertex(int flag = kDefault);
    CVertex(double x, double y, double z, int flag);
    CVertex(const CVertex& other);
    CVertex(CVertex&& other) noexcept;
    CVertex& operator=(const CVertex& other);
    CVertex& operator=(CVertex&& other) noexcept;

    int CheckVertexFlag(int mask) const;  // 1 when all bits of `mask` are set, else 0
    int IsSplineFrame() const;            // 1 or 0
    void SetSplineFrame(int on);          // nonzero sets the bit, zero clears it
    void SetSplineVertex(int on);         // likewise

    int flag;  // bits of Flag
};

// An ordered list of vertices with a name. Open unless Close was called; the closed bit matters to the total
// lengths, InterpolateVertex and the splines, not to CheckTurn and PtInPolyline.
//
// Index i: 0 .. GetVertexSize() - 1, compared as a signed number. Any other is refused: the operation gives 0
// (GetVertex null, the distances 0.0) and changes nothing.
class FIELDSCAN_API CPolyline {
public:
    // Bits of the flag word.
    enum Flag { kClosed = 0x01, kDefault = 0x08 };  // of kDefault, which a new polyline has, nothing is read

    CPolyline(int flags = kDefault, int splineFlag = 0);  // splineFlag is stored without a check
    CPolyline(const CPolyline& other);
    ~CPolyline();
    CPolyline& operator=(const CPolyline& other);

    // ---- Vertices ----

    // Valid until the number of vertices changes.
    CVertex* GetVertex(unsigned int i);
    const CVertex* GetVertex(unsigned int i) const;
    int SetVertex(unsigned int i, const CVertex& v);  // vertex i becomes a copy of `v`
    int AddVertex(const CVertex& v);                  // returns the index of the new last vertex
    // Puts a copy of `v` before vertex i. The count is no valid i: only AddVertex appends.
    int InsertVertex(unsigned int i, const CVertex& v);
    int DelVertex(unsigned int i);       // those behind it move up
    void DelAllVertex();                 // frees the storage too
    int GetVertexSize() const;           // the count
    void SetVertexSize(unsigned int n);  // new ones are default vertices; a count beyond int changes nothing

    // ---- Flags ----

    int CheckPolylineFlag(int mask) const;  // 1 when all bits of `mask` are set, else 0
    void Close();                           // sets the closed bit
    void Open();                            // clears it
    int IsClose() const;                    // 1 or 0
    // 6 and 1000 are the kinds of splines: stored, 1. Any other: 0 is stored, 0.
    int SetSplineFlag(int kind);
    // 6 when its bits are all set, else 1000 when its are, else 0.
    int GetSplineFlag() const;

    // ---- Orientation; z does not count ----

    // Last vertex first; vertex flags go along, the polyline's flags stay.
    void Reverse();
    // The sign, -1, 0 or 1, of the sum over i = 0 .. n - 2 of
    //   (C.x - A.x) (B.y - A.y) - (B.x - A.x) (C.y - A.y),   A, B, C = vertices i, i + 1, i + 2,
    // C of the last term being vertex 0; 0 for fewer than three vertices. The triple (n - 1, 0, 1) is not in
    // the sum, which decides the sign for some outlines that are not convex: callers rely on it as it is.
    // With x to the right and y up, 1 is clockwise and -1 counter-clockwise.
    int CheckTurn() const;
    // Reverses unless CheckTurn gives -1: degenerate outlines too.
    void Normalize();

    // ---- Measures ----

    // 1 when (x, y) lies inside the polygon, always taken as closed, else 0. Counts the edges that pass y,
    // lower end included, upper end not, at or to the right of x. So a point on an edge belongs to the area
    // on the left of it: of the unit square (0, 0.5) is outside, (1, 0.5) inside, (0.5, 0) inside, (0.5, 1)
    // outside. On a slanted edge that holds to the rounding of the crossing, which runs from the edge's first
    // vertex: a few percent of the points on an edge between two areas belong to both, fewer to none.
    int PtInPolyline(double x, double y) const;
    // The same for the points (x[k], y[k]): inside[k] is 1 or 0, the figure of the single form to the last
    // bit. Much faster for many points and vertices. Returns 1; 0 when the lists differ in length or memory
    // runs out, and then `inside` is empty.
    int PtInPolyline(const CArray<double, double>& x, const CArray<double, double>& y,
                     CArray<int, int>& inside) const;

    double GetDistance(int i, int j) const;    // in space
    double GetDistanceXY(int i, int j) const;  // in the plane
    // The sum over the edges, with the closing edge when the closed bit is set.
    double GetTotalLength() const;
    double GetTotalLengthXY() const;

    // The bounding box. Returns 1; for an empty polyline 0, and all six are 0.
    int GetRange(double& xMin, double& xMax, double& yMin, double& yMax, double& zMin, double& zMax) const;

    // Inserts vertices at the distances step, 2 step, ... from the start of every edge while they are less
    // than its length in space, the closing edge of a closed polyline included. Given vertices stay as they
    // are; new ones have the flag 0x20 and the polyline's name. Returns 1; 0 when step <= 0, when the
    // vertices would not fit an array (an infinite edge among them) or memory runs out, and then nothing has
    // changed.
    int InterpolateVertex(double step);

    // ---- Splines ----
    //
    // Replace the polyline by a smooth curve through its vertices, `pieces` pieces an edge, the closing edge
    // of a closed polyline included. Given vertices stay as they are and gain the frame bit; the new ones
    // have the flags 0x20 and the spline bit, and the polyline's name. Vertices that carry the spline bit
    // without the frame bit count as new ones of an earlier run and are taken out first, so a second run
    // smooths the same frame again. Returns 1, and the kind is recorded as SetSplineFlag does; 0 when pieces
    // < 1, when the frame has fewer than three vertices, neighbours at the same place, or a coordinate that
    // is not finite, when the vertices would not fit an array, the curve leaves the range of double or
    // memory runs out, and then nothing has changed.

    // Kind 6: a cubic in each edge, with the second derivative by the piece's parameter, which runs from 0 to
    // 1 in every edge, continuous across the vertices. Open: no curvature at the ends; closed: none special.
    int Spline(int pieces);
    // Kind 1000: a centripetal Catmull-Rom curve, which follows the frame more closely and does not loop,
    // also where edges differ much in length; its tangent is continuous. Open: the end edges are continued
    // straight.
    int CtmlRomSpline(int pieces);

    void Trace();  // a hook for debugging, does nothing

    CString name;                        // "0" when made
    CArray<CVertex, CVertex&> vertices;  // in order
    double reserved1;                    // 0 when made, copied, read by nothing here
    int flags;                           // bits of Flag
    int splineFlag;                      // kind of the last spline, 0, 6 or 1000
    double reserved2;                    // as reserved1

private:
    using Coordinates = CArray<double, double>;  // x, y, z of one point behind the other
    using InnerPoints = void(const Coordinates& frame, bool closed, int pieces, Coordinates& inner);

    int smooth(int pieces, int kind, InnerPoints innerPoints);
    static void SplineSub(const Coordinates& frame, bool closed, int pieces, Coordinates& inner);
    static void SplineOpen(const Coordinates& frame, Coordinates& control);
    static void SplineClose(const Coordinates& frame, Coordinates& control);
    static void CubicBSpline(const double* control, double t, double* point);
    static void CtmlRomSub(const Coordinates& frame, bool closed, int pieces, Coordinates& inner);
    static void CtmlRomOpen(const Coordinates& frame, Coordinates& control);
    static void CtmlRomClose(const Coordinates& frame, Coordinates& control);
};

#endif
