// CWPK: three attitude angles, or a direction.
#ifndef FIELDSCAN_ATTITUDE_H
#define FIELDSCAN_ATTITUDE_H

#include <fieldscan/export.h>

// Omega, phi, kappa: rotations about the first, second and third axis, in radians. Scan areas use one as a
// direction: omega the zenith angle, kappa the horizontal angle, phi 0.
//
// + - += -= normalise their result; SetWPK, unary - and Subtract do not. pi is 3.141592653589793 and the full
// turn T = pi * 2.0.
class FIELDSCAN_API CWPK {
public:
    CWPK();
    CWPK(const CWPK& other);
    CWPK(double omega, double phi, double kappa);  // as they are

    CWPK& operator=(const CWPK& other);

    void Init();                                          // all three 0
    void SetWPK(double omega, double phi, double kappa);  // as they are

    void Normalize();  // NormalizeAngle of omega, phi, kappa
    // Wraps `a` into the closed range -pi .. pi; -pi and pi both stay as they are, NaN stays NaN, infinity
    // gives NaN.
    static void NormalizeAngle(double& a);
    // Difference of two angles by the rule that callers rely on, not the signed shortest difference: with
    // both normalised, d = a - b and alt = T - d, the one of smaller magnitude (d on a tie). So a d above pi
    // gives T - d, which is positive, and a negative d, down to -T, is returned unchanged.
    static double SubtractAngle(double a, double b);
    // SubtractAngle(other, this) of each angle: the way from this attitude to the other.
    CWPK Subtract(const CWPK& other) const;

    // Angle by angle; those of two attitudes normalise.
    CWPK operator+() const;
    CWPK operator-() const;
    CWPK operator+(const CWPK& b) const;
    CWPK operator-(const CWPK& b) const;
    void operator+=(const CWPK& b);
    void operator-=(const CWPK& b);

    void Trace();  // a hook for debugging, does nothing

    // Radians.
    double omega;
    double phi;
    double kappa;
};

#endif
