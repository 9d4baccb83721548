// CDist: lens distortion.
#ifndef FIELDSCAN_DISTORTION_H
#define FIELDSCAN_DISTORTION_H

#include <fieldscan/export.h>
#include <fieldscan/framework/array.h>
#include <fieldscan/framework/types.h>

// The formula in use, and how many parameters it has.
enum DIST_MODEL : int {
    DIST_NONE = 0,                 // no parameters: no distortion
    DIST_RADIAL4 = 1,              // 4: radial polynomial, four terms
    DIST_RADIAL2_TANGENTIAL2 = 2,  // 4: two radial and two decentering terms
    DIST_RADIAL3_TANGENTIAL2 = 3,  // 5: three radial and two decentering terms
    DIST_POLY8 = 4                 // 8: two radial terms, two linear and four quadratic ones
};

// Distortion (dx, dy) that the lens adds at an undistorted photo coordinate (x, y), measured from the
// principal point. The parameters are for its unit, millimetres in CImage. Radial and decentering terms are
// those of Brown, Close-range camera calibration, Photogrammetric Engineering 37, 1971. With r2 = x x + y y:
//
//   RADIAL4               f = ((( p3 r2 + p2) r2 + p1) r2 + p0) r2         dx = f x        dy = f y
//   RADIAL2_TANGENTIAL2   g = p0 r2 + p1 r2^2
//                         dx = g x + p2 (2 x x + r2) + 2 p3 x y
//                         dy = g y + p3 (2 y y + r2) + 2 p2 x y
//   RADIAL3_TANGENTIAL2   g = p0 r2 + p1 r2^2 + p2 r2^3
//                         dx = g x + p3 (2 x x + r2) + 2 p4 x y
//                         dy = g y + p4 (2 y y + r2) + 2 p3 x y
//   POLY8                 g = p0 r2 + p1 r2^2
//                         dx = p4 x y + p5 y y + p2 x + p3 y + g x
//                         dy = g y + p6 x y + p7 x x                       no p2, p3 here
//
// in this order of operations, powers as products from the left. The decentering parameter of (2 x x + r2) is
// the first, as Brown numbers them; many programs of computer vision make it the second.
class FIELDSCAN_API CDist {
public:
    CDist();
    CDist(const CDist& other);
    ~CDist();
    CDist& operator=(const CDist& other);

    void Init();  // DIST_NONE, parameters 0, no table

    // Sets the model and the number of its parameters; an unknown model counts as DIST_NONE. The parameters
    // themselves stay.
    void SetDistModel(DIST_MODEL m);
    // The model in use. Assigning through the reference does not change the number of parameters.
    DIST_MODEL& GetDistModel();
    int GetNumPara() const;  // parameters of the model

    // Distortion at (x, y); 0 for DIST_NONE and unknown models.
    void CalDist(double x, double y, double& dx, double& dy) const;

    // Correction cx = u - x, cy = v - y to the undistorted point (u, v) whose distorted position is (x, y).
    // A point is accepted when e = (v + dy - y)^2 + (u + dx - x)^2 <= tol tol.
    // The search begins at (x, y) minus its own distortion. Each pass looks at a grid of 5 x 5 points around
    // the best one so far, half of s = sqrt(e) apart, from (u - s, v - s) row by row upward. It ends when a
    // point is accepted, a pass finds no better one, or after 100 passes. Returns 1 when a point was
    // accepted, else 0. The outputs hold the best estimate in either case.
    [[nodiscard]] BOOL CalDistInv(double x, double y, double& cx, double& cy, double tol) const;

    // ---- Table of distortion by radius ----

    // Appends an entry; returns the number of radii. When memory runs out nothing is appended.
    int AddDist(double r, double d);
    // Fills the table with n entries: radius i step, dx of CalDist(radius, 0). n below 1 empties it. Returns
    // 1; 0, with the table as it was, when the model is not DIST_RADIAL4 or memory runs out.
    [[nodiscard]] BOOL ParaToDist(double step, int n);
    // Fits p0 q + p1 q^2 + p2 q^3 + p3 q^4, q the squared radius, to the table's distortions by least squares
    // (CLeastSq), and sets the model to DIST_RADIAL4, but not the number of parameters. Returns 1; 0, and
    // nothing changes, when the two columns differ in size, hold fewer than 4 entries, or do not determine
    // the parameters.
    //
    // This is not the inverse of ParaToDist: the fit takes the table for relative distortions (divided by the
    // radius), ParaToDist fills in absolute ones.
    [[nodiscard]] BOOL DistToPara();

    void Trace();  // a hook for debugging, does nothing

    double para[10];                // p0 .. p9, of which the model uses the first
    CArray<double, double> radius;  // table: radii
    CArray<double, double> dist;    // table: distortion at each radius
    DIST_MODEL model;               // in use
    int numPara;                    // parameters of the model
};

#endif
