// CHelmert: plane similarity transformation (Helmert); CPlaneAffine: plane affine transformation.
#ifndef FIELDSCAN_HELMERT_H
#define FIELDSCAN_HELMERT_H

#include <fieldscan/framework/array.h>
#include <fieldscan/points.h>

// Both estimate the transformation of source points (x, y) to target points (x', y') from pairs of points of
// the same name, by least squares with equal weights (CLeastSq), and keep the residuals of the pairs. Heights
// z are ignored. Use: SetPoints, CalPara, then Transform. Operations return 1 for success and 0 for failure.

// Plane similarity transformation (Helmert), four parameters: rotation with scale, and translation.
//
//   x' = a x - b y + tx
//   y' = b x + a y + ty
class FIELDSCAN_API CHelmert {
public:
    CHelmert();
    CHelmert(const CHelmert& other);
    ~CHelmert();
    CHelmert& operator=(const CHelmert& other);

    void Init();  // no pairs, no parameters, no residuals; RMS (-1, -1, 0): not computed

    // Pairs the points by name, compared exactly: each point of `first`, in order, becomes the target of the
    // first point of `second` that has its name. Points without a partner are left out. Returns the number of
    // pairs; 0, without pairs, when memory runs out. Parameters and residuals stay until the next CalPara.
    [[nodiscard]] int SetPoints(const CArray<CXYZ, CXYZ&>& first, const CArray<CXYZ, CXYZ&>& second);

    // Adjusts the parameters and computes the residuals. Returns 1; 0 with fewer than 2 pairs, or when the
    // source points coincide or a coordinate is not finite (as CLeastSq::Solve decides), and parameters and
    // residuals are then as before.
    [[nodiscard]] int CalPara();

    // Why CalPara solves the pairs or does not. Returns the first of these that holds:
    //   -1  fewer than 2 pairs, or the numbers of source and target points differ
    //    0  a coordinate is not finite or beyond 1e140, or memory runs out
    //   -2  the source points coincide
    //    3  they lie on one line: solved, but no pair controls the direction across it
    //    1  they spread over the plane
    // Greater than 0 when CalPara returns 1, except for coordinates beyond 1e140. It is decided by the rank
    // of the equations (CPrecision::CalDefect). Its limit is another than that of CalPara: the two may differ
    // where points are off one place, or off one line, by some 1e-13 of their coordinates.
    [[nodiscard]] int CheckPairs() const;

    // Transforms in.x, in.y to out.x, out.y: from source to target, or back when `forward` is 0. Nothing else
    // of `out` changes; it may be `in`. Returns 1; 0, with `out` unchanged, when there are no parameters, or
    // for the way back when a a + b b is 0.
    [[nodiscard]] int Transform(const CXYZ& in, CXYZ& out, int forward) const;

    void Trace();  // a hook for debugging, does nothing

    CArray<CXYZ, CXYZ&> targetPoints;   // the matched points of the first set
    CArray<CXYZ, CXYZ&> sourcePoints;   // and of the second, in the same order
    CArray<double, double> parameters;  // a, b, tx, ty; or none
    CArray<CXYZ, CXYZ&> residuals;      // transformed source minus target, z 0, with the target's name
    CXYZ RMS;                           // root mean square of the residuals, over the number of pairs
    CXYZ maximum;                       // the residual of largest magnitude in x and in y, with its sign

private:
    int CalResiduals();
};

// Plane affine transformation, six parameters: each axis has its own direction and scale.
//
//   x' = a x + b y + tx
//   y' = c x + d y + ty
//
// The members are those of CHelmert. At least three pairs, not on one line.
class FIELDSCAN_API CPlaneAffine {
public:
    CPlaneAffine();
    CPlaneAffine(const CPlaneAffine& other);
    ~CPlaneAffine();
    CPlaneAffine& operator=(const CPlaneAffine& other);

    // As of CHelmert.
    void Init();
    [[nodiscard]] int SetPoints(const CArray<CXYZ, CXYZ&>& first, const CArray<CXYZ, CXYZ&>& second);
    [[nodiscard]] int CalPara();  // 0 with fewer than 3 pairs, or when the source points lie on one line
    [[nodiscard]] int CheckPairs()
        const;  // -1 with fewer than 3 pairs; -3 instead of 3: points on one line are not solved
    [[nodiscard]] int Transform(const CXYZ& in, CXYZ& out,
                                int forward) const;  // no way back when a d - b c is 0
    void Trace();                                    // a hook for debugging, does nothing

    // As of CHelmert.
    CArray<CXYZ, CXYZ&> targetPoints;
    CArray<CXYZ, CXYZ&> sourcePoints;
    CArray<double, double> parameters;  // a, b, c, d, tx, ty; or none
    CArray<CXYZ, CXYZ&> residuals;
    CXYZ RMS;
    CXYZ maximum;

private:
    int CalResiduals();
};

#endif
