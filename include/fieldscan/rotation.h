// CRot: rotation matrices.
#ifndef FIELDSCAN_ROTATION_H
#define FIELDSCAN_ROTATION_H

#include <fieldscan/attitude.h>
#include <fieldscan/framework/types.h>
#include <fieldscan/points.h>

// The order of the elementary rotations, which turn the vector about the fixed axes (c, s: cosine and sine):
//
//        | 1  0  0 |         |  c  0  s |         | c -s  0 |
//   Rx = | 0  c -s |    Ry = |  0  1  0 |    Rz = | s  c  0 |
//        | 0  s  c |         | -s  0  c |         | 0  0  1 |
enum ROT_SYSTEM : int {
    ROT_W = 0,    // Rx(omega)
    ROT_P = 1,    // Ry(phi)
    ROT_K = 2,    // Rz(kappa)
    ROT_WPK = 3,  // Rz(kappa) Ry(phi) Rx(omega): omega acts first
    ROT_KPW = 4   // Rx(omega) Ry(phi) Rz(kappa): kappa acts first
};

// A rotation matrix, row by row; the identity when made. Angles are radians but for SetDIMat.
class FIELDSCAN_API CRot {
public:
    CRot();
    CRot(const CRot& other);
    CRot& operator=(const CRot& other);

    // The matrix of the angles that the order names. Returns 1; 0 for an unknown order, and then the matrix
    // is unchanged.
    BOOL SetMatrix(ROT_SYSTEM sys, const CWPK& a);
    // R * this, R as SetMatrix makes it: the new rotation acts after the present one. Results as above.
    BOOL AddMatrix(ROT_SYSTEM sys, const CWPK& a);
    void AddMatrix(const CRot& r);  // r * this

    // The angles of this matrix.
    //   a  in   for ROT_WPK and ROT_KPW the angles to stay close to: of the two solutions (phi = asin(s) and
    //           pi - asin(s), or -pi - asin(s) for a negative asin) the one with the smaller sum of
    //           |CWPK::SubtractAngle| to them is taken, the first on a tie
    //      out  the three-angle orders: normalised to -pi .. pi; the one-angle orders: the named angle
    //           -pi .. pi, the other two 0
    // Where |cos phi| <= 1e-12 omega and kappa turn about the same axis: omega is then taken over from `a`
    // and kappa holds the rest. Returns 1; 0 for an unknown order, and then `a` is unchanged.
    BOOL CalAngle(ROT_SYSTEM sys, CWPK& a) const;

    // From omega, phi, kappa in degrees (three doubles), order ROT_KPW; SetDIMatInv gives its transpose.
    void SetDIMat(const double* deg);
    void SetDIMatInv(const double* deg);

    // (X, Y, Z) = this * (x, y, z), products of a row summed from the left. The outputs may be the inputs.
    void Rotate(double x, double y, double z, double& X, double& Y, double& Z) const;
    // `out` = `in` with rotated coordinates; name, code and attr are taken over.
    void Rotate(const CXYZ& in, CXYZ& out) const;

    void T();  // transposes, which inverts
    void I();  // the identity

    CRot operator*(const CRot& b) const;  // this * b: b acts first
    CXYZ operator*(const CXYZ& v) const;  // as Rotate
    void operator*=(const CRot& b);       // this = this * b

    void Trace();  // a hook for debugging, does nothing

    double m[3][3];  // [row][column]
};

#endif
