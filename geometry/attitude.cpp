// Omega, phi, kappa: sums and differences, normalised to -pi .. pi by the exact remainder.
#include <fieldscan/attitude.h>

#include <cmath>

#include "geometry/angle_constants.h"

using fieldscan::kFullTurn;

CWPK::CWPK() { Init(); }

CWPK::CWPK(const CWPK& other) { operator=(other); }

CWPK::CWPK(double omega_, double phi_, double kappa_) { SetWPK(omega_, phi_, kappa_); }

CWPK& CWPK::operator=(const CWPK& other) {
    if (this != &other)
        SetWPK(other.omega, other.phi, other.kappa);
    return *this;
}

void CWPK::Init() { SetWPK(0.0, 0.0, 0.0); }

void CWPK::SetWPK(double omega_, double phi_, double kappa_) {
    omega = omega_;
    phi = phi_;
    kappa = kappa_;
}

void CWPK::Normalize() {
    NormalizeAngle(omega);
    NormalizeAngle(phi);
    NormalizeAngle(kappa);
}

void CWPK::NormalizeAngle(double& a) {
    double alternative;
    if (a >= 0.0) {
        a = std::fmod(a, kFullTurn);
        alternative = a - kFullTurn;
    } else {
        a = std::fmod(a, -kFullTurn);
        alternative = a + kFullTurn;
    }
    if (std::fabs(a) > std::fabs(alternative))
        a = alternative;
}

double CWPK::SubtractAngle(double a, double b) {
    NormalizeAngle(b);
    NormalizeAngle(a);
    const double d = a - b;
    const double alternative = kFullTurn - d;
    return d * d <= alternative * alternative ? d : alternative;
}

CWPK CWPK::Subtract(const CWPK& other) const {
    return CWPK(SubtractAngle(other.omega, omega), SubtractAngle(other.phi, phi),
                SubtractAngle(other.kappa, kappa));
}

CWPK CWPK::operator+() const { return *this; }

CWPK CWPK::operator-() const { return CWPK(-omega, -phi, -kappa); }

CWPK CWPK::operator+(const CWPK& b) const {
    CWPK result(*this);
    result += b;
    return result;
}

CWPK CWPK::operator-(const CWPK& b) const {
    CWPK result(*this);
    result -= b;
    return result;
}

void CWPK::operator+=(const CWPK& b) {
    SetWPK(omega + b.omega, phi + b.phi, kappa + b.kappa);
    Normalize();
}

void CWPK::operator-=(const CWPK& b) {
    SetWPK(omega - b.omega, phi - b.phi, kappa - b.kappa);
    Normalize();
}

void CWPK::Trace() {}
