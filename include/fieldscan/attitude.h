// CWPK: three attitude angles, or a direction.
#ifndef FIELDSCAN_ATTITUDE_H
#define FIELDSCAN_ATTITUDE_H

#include <fieldscan/export.h>
#include <fieldscan/framework/moves_as_bytes.h>

// Omega, phi, kappa: rotations about the first, second and third axis, in radians (their matrices: CRot). In
// a scan area one CWPK is a direction: omega the zenith angle, kappa the horizontal angle, phi 0.
//
// + - += -= of two attitudes normalise their result; SetWPK, unary - and Subtract do not. pi is
// 3.141592653589793, the full circle T = pi * 2.0.
class FIELDSCAN_API CWPK {
public:
    CWPK();
    CWPK(const CWPK& other);
    CWPK(double omega, double phi, double kappa);  // as they are

    CWPK& operator=(const CWPK& other);

    void Init();                                          // all three 0
    void SetWPK(double omega, double phi, double kappa);  // as they are

    void Normalize();  // NormalizeAngle of omega, phi, kappa
    // Brings `a` into the closed range -pi .. pi. Both -pi and pi stay as they are; NaN and infinity become
    // NaN.
    static void NormalizeAngle(double& a);
    // Difference of two angles: with both normalised and d = a - b, the one of d and T - d that is smaller in
    // magnitude (d if they are equal). This is not the signed shortest difference: a d above pi gives T - d,
    // which is positive, and a negative d, down to -T, comes back unchanged. Callers rely on it as it is.
    static double SubtractAngle(double a, double b);
    // SubtractAngle(other, this) of each angle: how far the other attitude is from this one.
    CWPK Subtract(const CWPK& other) const;

    // Angle by angle. Those of two attitudes normalise the result.
    CWPK operator+() const;
    CWPK operator-() const;
    CWPK operator+(const CWPK& b) const;
    CWPK operator-(const CWPK& b) const;
    void operator+=(const CWPK& b);
    void operator-=(const CWPK& b);

    void Trace();  // for debugging; does nothing

    // Radians.
    double omega;
    double phi;
    double kappa;
};

template <>
struct fieldscan::MovesAsBytes<CWPK> : std::true_type {};

#endif
