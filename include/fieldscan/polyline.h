// CVertex, CPolyline: polylines and polygons.
#ifndef FIELDSCAN_POLYLINE_H
#define FIELDSCAN_POLYLINE_H

#include <fieldscan/framework/array.h>
#include <fieldscan/framework/moves_as_bytes.h>
#include <fieldscan/framework/string.h>
#include <fieldscan/points.h>

// A point of a polyline with a word of flag bits. Its point name is at first "0".
class FIELDSCAN_API CVertex : public CXYZ {
public:
    // Bits of the flag word.
    enum Flag {
        kSplineVertex = 0x08,  // inserted by a spline
        kSplineFrame = 0x10,   // a given vertex, which a spline passes through
        kDefault = 0x20        // set on construction, never read
    };

    // Coordinates that are not given are 0.
    CVertex(int flag = kDefault);
    CVertex(double x, double y, double z, int flag);
    CVertex(const CVertex& other);
    CVertex(CVertex&& other) noexcept;
    CVertex& operator=(const CVertex& other);
    CVertex& operator=(CVertex&& other) noexcept;

    int CheckVertexFlag(int mask) const;  // 1 if all bits of `mask` are set, else 0
    int IsSplineFrame() const;            // 1 or 0
    void SetSplineFrame(int on);          // nonzero sets the bit, zero clears it
    void SetSplineVertex(int on);         // likewise

    int flag;  // bits of Flag
};

// An ordered list of vertices with a name. It is open until Close is called. The closed bit counts for the
// total lengths, InterpolateVertex and the splines, not for CheckTurn and PtInPolyline.
//
// An index i is in 0 .. GetVertexSize() - 1, compared as a signed number. Any other is refused: the operation
// returns 0 (GetVertex null, the distances 0.0) and changes nothing.
class FIELDSCAN_API CPolyline {
public:
    // Bits of the flag word.
    enum Flag { kClosed = 0x01, kDefault = 0x08 };  // kDefault: set on construction, never read

    CPolyline(int flags = kDefault, int splineFlag = 0);  // splineFlag is not checked
    CPolyline(const CPolyline& other);
    ~CPolyline();
    CPolyline& operator=(const CPolyline& other);

    // ---- Vertices ----

    // Valid until the number of vertices changes.
    CVertex* GetVertex(unsigned int i);
    const CVertex* GetVertex(unsigned int i) const;
    int SetVertex(unsigned int i, const CVertex& v);  // vertex i becomes a copy of `v`
    // Returns the index of the new last vertex. vertices.Reserve where the number is known.
    int AddVertex(const CVertex& v);
    // Inserts a copy of `v` before vertex i. The number of vertices is not a valid i: AddVertex appends.
    int InsertVertex(unsigned int i, const CVertex& v);
    int DelVertex(unsigned int i);       // the vertices after it move up
    void DelAllVertex();                 // frees the storage too
    int GetVertexSize() const;           // number of vertices
    void SetVertexSize(unsigned int n);  // new ones are default vertices; beyond 2^31 - 1 nothing changes

    // ---- Flags ----

    int CheckPolylineFlag(int mask) const;  // 1 if all bits of `mask` are set, else 0
    void Close();                           // sets the closed bit
    void Open();                            // clears it
    int IsClose() const;                    // 1 or 0
    // Stores the kind of spline, 6 or 1000, and returns 1. For any other kind stores and returns 0.
    int SetSplineFlag(int kind);
    // 6 if all bits of 6 are set, else 1000 if all bits of 1000 are set, else 0.
    int GetSplineFlag() const;

    // ---- Orientation in x and y ----

    // Reverses the order of the vertices, with their flags; the polyline's flags stay.
    void Reverse();
    // The sign, -1, 0 or 1, of the sum over i = 0 .. n - 2 of
    //   (C.x - A.x) (B.y - A.y) - (B.x - A.x) (C.y - A.y),   A, B, C = vertices i, i + 1, i + 2,
    // where C of the last term is vertex 0; 0 for fewer than three vertices. With x to the right and y up, 1
    // is clockwise and -1 counter-clockwise. The triple (n - 1, 0, 1) is not in the sum, so the sign may be
    // wrong for an outline that is not convex: callers rely on it as it is.
    int CheckTurn() const;
    // Reverses the polyline unless CheckTurn gives -1, a degenerate one too.
    void Normalize();

    // ---- Measures ----

    // 1 if (x, y) is inside the polygon, taken as closed, else 0. Crossing-number rule (Shimrat 1962): a
    // point is inside if an odd number of edges crosses its ordinate at x or to the right of it. The lower
    // end of an edge counts, the upper end does not.
    // A point on an edge belongs to the area on the left of the edge: of the unit square (0, 0.5) is outside,
    // (1, 0.5) inside, (0.5, 0) inside, (0.5, 1) outside. On a slanted edge that is true up to the rounding
    // of the crossing, which is computed from the edge's first vertex: of the points on an edge between two
    // areas a few percent belong to both, and fewer to neither.
    [[nodiscard]] int PtInPolyline(double x, double y) const;
    // The same for the points (x[k], y[k]): inside[k] is the answer of the single form. Much faster for many
    // points and vertices. Returns 1; 0 if the lists differ in length or memory runs out, and then `inside`
    // is empty.
    [[nodiscard]] int PtInPolyline(const CArray<double, double>& x, const CArray<double, double>& y,
                                   CArray<int, int>& inside) const;

    double GetDistance(int i, int j) const;    // in space
    double GetDistanceXY(int i, int j) const;  // in plan
    // The sum over the edges, with the closing edge if the closed bit is set.
    double GetTotalLength() const;
    double GetTotalLengthXY() const;

    // The bounding box. Returns 1; 0 for an empty polyline, and all six are 0 then.
    [[nodiscard]] int GetRange(double& xMin, double& xMax, double& yMin, double& yMax, double& zMin,
                               double& zMax) const;

    // Inserts vertices at the distances step, 2 step, ... from the start of every edge, as long as they are
    // less than its length in space; in a closed polyline on the closing edge too. Given vertices stay as
    // they are. New ones have the flag 0x20 and the polyline's name. Returns 1, for an empty polyline too; 0
    // if step <= 0, an edge is infinitely long, the vertices do not fit an array or memory runs out, and then
    // nothing has changed.
    [[nodiscard]] int InterpolateVertex(double step);

    // ---- Splines ----
    //
    // Replace the polyline by a smooth curve through its vertices, `pieces` pieces in every edge; in a closed
    // polyline in the closing edge too. Given vertices (the frame) stay as they are and get the frame bit.
    // New ones have the flag 0x20, the spline bit and the polyline's name. Vertices with the spline bit and
    // without the frame bit are new ones of an earlier run: they are removed first, so a second run smooths
    // the same frame again.
    // Return 1 and record the kind as SetSplineFlag does; 0 if pieces < 1, the frame has fewer than three
    // vertices, neighbours at the same place or a coordinate that is not finite, the vertices do not fit an
    // array, the curve leaves the range of double, or memory runs out, and then nothing has changed.

    // Kind 6: the interpolating cubic spline with a uniform knot sequence, 0 to 1 in every edge, in the basis
    // of cubic B-splines (de Boor, A Practical Guide to Splines). Its second derivative by the parameter is
    // continuous. An open one has natural ends, without curvature; a closed one is periodic.
    [[nodiscard]] int Spline(int pieces);
    // Kind 1000: the centripetal Catmull-Rom curve (Catmull and Rom 1974; Yuksel et al. 2011). It follows the
    // frame more closely and does not loop, even if edges differ much in length. Its tangent is continuous.
    // The end edges of an open one are continued straight.
    [[nodiscard]] int CtmlRomSpline(int pieces);

    void Trace();  // for debugging; does nothing

    CString name;                        // at first "0"
    CArray<CVertex, CVertex&> vertices;  // in order
    double reserved1;                    // at first 0; copied, never read
    int flags;                           // bits of Flag
    int splineFlag;                      // kind of the last spline: 0, 6 or 1000
    double reserved2;                    // as reserved1

private:
    using Coordinates = CArray<double, double>;  // x, y, z of one point after the other
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

template <>
struct fieldscan::MovesAsBytes<CVertex> : std::true_type {};
template <>
struct fieldscan::MovesAsBytes<CPolyline> : std::true_type {};

#endif
