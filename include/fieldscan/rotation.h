// CRot: rotation matrices.
#ifndef FIELDSCAN_ROTATION_H
#define FIELDSCAN_ROTATION_H

#include <fieldscan/attitude.h>
#include <fieldscan/framework/types.h>
#include <fieldscan/points.h>

// The order of the elementary rotations. The vector turns, the axes stay (c, s: cosine and sine):
//
//        | 1  0  0 |         |  c  0  s |         | c -s  0 |
//   Rx = | 0  c -s |    Ry = |  0  1  0 |    Rz = | s  c  0 |
//        | 0  s  c |         | -s  0  c |         | 0  0  1 |
enum ROT_SYSTEM : int {
    ROT_W = 0,    // Rx(omega)
    ROT_P = 1,    // Ry(phi)
    ROT_K = 2,    // Rz(kappa)
    ROT_WPK = 3,  // Rz(kappa) Ry(phi) Rx(omega): omega acts first
    ROT_KPW = 4   // Rx(omega) Ry(phi) Rz(kappa): kappa acts first; the usual one of photogrammetry
};

// A rotation matrix, at first the identity. Angles are in radians; only SetDIMat and SetDIMatInv take
// degrees. The elements as functions of the angles: Kraus, Photogrammetry; Luhmann et al., Close-Range
// Photogrammetry (both for ROT_KPW).
class FIELDSCAN_API CRot {
public:
    CRot();
    CRot(const CRot& other);
    CRot& operator=(const CRot& other);

    // Sets the matrix from the angles that `sys` names. Returns 1; 0 for an unknown order, and the matrix is
    // unchanged then.
    BOOL SetMatrix(ROT_SYSTEM sys, const CWPK& a);
    // Sets the matrix to R * this, where R is what SetMatrix sets: the new rotation acts after the present
    // one. Returns as SetMatrix.
    BOOL AddMatrix(ROT_SYSTEM sys, const CWPK& a);
    void AddMatrix(const CRot& r);  // sets it to r * this

    // The angles of this matrix.
    //   a  in   ROT_WPK and ROT_KPW: angles near the wanted ones. Two sets of angles make the same matrix,
    //           with phi = asin(s) and pi - asin(s) (-pi - asin(s) if the asin is negative), where s is
    //           -m[2][0] or m[0][2]. The set with the smaller sum of |CWPK::SubtractAngle| to `a` is taken;
    //           the first one if the sums are equal.
    //      out  ROT_WPK and ROT_KPW: all three, in -pi .. pi. The one-angle orders: that angle in
    //           -pi .. pi, the other two 0.
    // Where |cos phi| <= 1e-12, omega and kappa turn about the same axis: omega stays that of `a`, kappa gets
    // the rest. Returns 1; 0 for an unknown order, and `a` is unchanged then.
    BOOL CalAngle(ROT_SYSTEM sys, CWPK& a) const;

    // Set the matrix from omega, phi, kappa in degrees (three doubles) in the order ROT_KPW; SetDIMatInv sets
    // its transpose.
    void SetDIMat(const double* deg);
    void SetDIMatInv(const double* deg);

    // (X, Y, Z) = this * (x, y, z), the products of a row summed from the left. Outputs may be the inputs.
    void Rotate(double x, double y, double z, double& X, double& Y, double& Z) const;
    // `out` becomes a copy of `in`, with its name, code and attr, and rotated coordinates.
    void Rotate(const CXYZ& in, CXYZ& out) const;

    void T();  // transposes the matrix, which inverts it
    void I();  // sets the identity

    CRot operator*(const CRot& b) const;  // this * b: b acts first
    CXYZ operator*(const CXYZ& v) const;  // Rotate
    void operator*=(const CRot& b);       // this = this * b

    void Trace();  // for debugging; does nothing

    double m[3][3];  // [row][column]
};

#endif
