// Rotation matrices of omega, phi, kappa, and the angles of a matrix, with the elements of the products
// written out (Kraus, Photogrammetry; Luhmann et al., Close-Range Photogrammetry).
#include <fieldscan/rotation.h>

#include <cmath>
#include <utility>

#include "geometry/angle_constants.h"

using fieldscan::kPi;

namespace {

// Where |cos(phi)| is not larger, omega and kappa turn about the same axis: only their sum or difference is
// determined.
constexpr double kGimbalLock = 1e-12;

struct SineCosine {
    explicit SineCosine(double angle) : s(std::sin(angle)), c(std::cos(angle)) {}
    double s;
    double c;
};

// An element of the matrix that is a sine; rounding may have left it a step above 1.
double clampedSine(double s) {
    if (s >= 1.0)
        return 1.0;
    if (s <= -1.0)
        return -1.0;
    return s;
}

// Of the two angles phi with the sine `s`, the one whose omega, phi, kappa are closer to `hint`. `solve` sets
// omega and kappa for a phi and its cosine.
template <class Solve>
CWPK closerSolution(double s, const CWPK& hint, Solve solve) {
    const double phi0 = std::asin(s);
    const double phi1 = phi0 >= 0.0 ? kPi - phi0 : -kPi - phi0;
    CWPK angles[2];
    double distance[2];
    for (int i = 0; i < 2; ++i) {
        angles[i].phi = i == 0 ? phi0 : phi1;
        solve(angles[i], std::cos(angles[i].phi));
        distance[i] = std::fabs(CWPK::SubtractAngle(angles[i].kappa, hint.kappa)) +
                      std::fabs(CWPK::SubtractAngle(angles[i].phi, hint.phi)) +
                      std::fabs(CWPK::SubtractAngle(angles[i].omega, hint.omega));
    }
    CWPK closer = distance[0] <= distance[1] ? angles[0] : angles[1];
    closer.Normalize();
    return closer;
}

CWPK anglesWpk(const double m[3][3], const CWPK& hint) {
    return closerSolution(clampedSine(-m[2][0]), hint, [&](CWPK& a, double c) {
        if (std::fabs(c) > kGimbalLock) {
            const double reciprocal = 1.0 / c;
            a.omega = std::atan2(m[2][1] * reciprocal, m[2][2] * reciprocal);
            a.kappa = std::atan2(m[1][0] * reciprocal, m[0][0] * reciprocal);
        } else {
            a.omega = hint.omega;
            a.kappa = a.phi >= 0.0 ? hint.omega + std::atan2(-m[0][1], m[0][2])
                                   : std::atan2(-m[0][1], -m[0][2]) - hint.omega;
        }
    });
}

CWPK anglesKpw(const double m[3][3], const CWPK& hint) {
    return closerSolution(clampedSine(m[0][2]), hint, [&](CWPK& a, double c) {
        if (std::fabs(c) > kGimbalLock) {
            const double reciprocal = 1.0 / c;
            const double minusReciprocal = -1.0 / c;
            a.omega = std::atan2(m[1][2] * minusReciprocal, m[2][2] * reciprocal);
            a.kappa = std::atan2(m[0][1] * minusReciprocal, m[0][0] * reciprocal);
        } else {
            const double aboutCommonAxis = std::atan2(m[1][0], m[1][1]);
            a.omega = hint.omega;
            a.kappa = a.phi >= 0.0 ? aboutCommonAxis - hint.omega : hint.omega + aboutCommonAxis;
        }
    });
}

void setRow(double row[3], double a, double b, double c) {
    row[0] = a;
    row[1] = b;
    row[2] = c;
}

}  // namespace

CRot::CRot() { I(); }

CRot::CRot(const CRot& other) { operator=(other); }

CRot& CRot::operator=(const CRot& other) {
    if (this != &other)
        for (int i = 0; i < 3; ++i)
            setRow(m[i], other.m[i][0], other.m[i][1], other.m[i][2]);
    return *this;
}

BOOL CRot::SetMatrix(ROT_SYSTEM sys, const CWPK& a) {
    switch (sys) {
        case ROT_W: {
            const SineCosine w(a.omega);
            setRow(m[0], 1.0, 0.0, 0.0);
            setRow(m[1], 0.0, w.c, -w.s);
            setRow(m[2], 0.0, w.s, w.c);
            return 1;
        }
        case ROT_P: {
            const SineCosine p(a.phi);
            setRow(m[0], p.c, 0.0, p.s);
            setRow(m[1], 0.0, 1.0, 0.0);
            setRow(m[2], -p.s, 0.0, p.c);
            return 1;
        }
        case ROT_K: {
            const SineCosine k(a.kappa);
            setRow(m[0], k.c, -k.s, 0.0);
            setRow(m[1], k.s, k.c, 0.0);
            setRow(m[2], 0.0, 0.0, 1.0);
            return 1;
        }
        case ROT_WPK: {
            const SineCosine w(a.omega), p(a.phi), k(a.kappa);
            setRow(m[0], k.c * p.c, k.c * p.s * w.s - k.s * w.c, k.c * p.s * w.c + k.s * w.s);
            setRow(m[1], k.s * p.c, k.s * p.s * w.s + k.c * w.c, k.s * p.s * w.c - k.c * w.s);
            setRow(m[2], -p.s, p.c * w.s, p.c * w.c);
            return 1;
        }
        case ROT_KPW: {
            const SineCosine w(a.omega), p(a.phi), k(a.kappa);
            setRow(m[0], k.c * p.c, -(k.s * p.c), p.s);
            setRow(m[1], k.c * p.s * w.s + k.s * w.c, k.c * w.c - k.s * p.s * w.s, -(p.c * w.s));
            setRow(m[2], k.s * w.s - k.c * p.s * w.c, k.s * p.s * w.c + k.c * w.s, p.c * w.c);
            return 1;
        }
    }
    return 0;
}

BOOL CRot::AddMatrix(ROT_SYSTEM sys, const CWPK& a) {
    CRot r;
    if (!r.SetMatrix(sys, a))
        return 0;
    AddMatrix(r);
    return 1;
}

void CRot::AddMatrix(const CRot& r) { *this = r * *this; }

BOOL CRot::CalAngle(ROT_SYSTEM sys, CWPK& a) const {
    switch (sys) {
        case ROT_W:
            a = CWPK(std::atan2(m[2][1], m[1][1]), 0.0, 0.0);
            return 1;
        case ROT_P:
            a = CWPK(0.0, std::atan2(m[0][2], m[0][0]), 0.0);
            return 1;
        case ROT_K:
            a = CWPK(0.0, 0.0, std::atan2(m[1][0], m[0][0]));
            return 1;
        case ROT_WPK:
            a = anglesWpk(m, a);
            return 1;
        case ROT_KPW:
            a = anglesKpw(m, a);
            return 1;
    }
    return 0;
}

void CRot::SetDIMat(const double* deg) {
    constexpr double kPerDegree = 0.005555555555555556;  // 1/180
    SetMatrix(ROT_KPW, CWPK(deg[0] * kPi * kPerDegree, deg[1] * kPi * kPerDegree, deg[2] * kPi * kPerDegree));
}

void CRot::SetDIMatInv(const double* deg) {
    SetDIMat(deg);
    T();
}

void CRot::Rotate(double x, double y, double z, double& X, double& Y, double& Z) const {
    X = m[0][0] * x + m[0][1] * y + m[0][2] * z;
    Y = m[1][0] * x + m[1][1] * y + m[1][2] * z;
    Z = m[2][0] * x + m[2][1] * y + m[2][2] * z;
}

void CRot::Rotate(const CXYZ& in, CXYZ& out) const {
    out = in;
    Rotate(out.x, out.y, out.z, out.x, out.y, out.z);
}

void CRot::T() {
    std::swap(m[0][1], m[1][0]);
    std::swap(m[0][2], m[2][0]);
    std::swap(m[1][2], m[2][1]);
}

void CRot::I() {
    setRow(m[0], 1.0, 0.0, 0.0);
    setRow(m[1], 0.0, 1.0, 0.0);
    setRow(m[2], 0.0, 0.0, 1.0);
}

CRot CRot::operator*(const CRot& b) const {
    CRot product;
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j)
            product.m[i][j] = m[i][0] * b.m[0][j] + m[i][1] * b.m[1][j] + m[i][2] * b.m[2][j];
    return product;
}

CXYZ CRot::operator*(const CXYZ& v) const {
    CXYZ rotated;
    Rotate(v, rotated);
    return rotated;
}

void CRot::operator*=(const CRot& b) { *this = *this * b; }

void CRot::Trace() {}
