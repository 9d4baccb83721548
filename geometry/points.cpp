// Points in space and in the plane: copies, and arithmetic component by component.
#include <fieldscan/points.h>

#include <algorithm>
#include <cmath>
#include <utility>

// Does not call Init: the strings are empty already, and emptying them again doubles the time.
CXYZ::CXYZ() : x(0.0), y(0.0), z(0.0), attr{} {}

CXYZ::CXYZ(const CXYZ& other) : code(other.code), name(other.name), x(other.x), y(other.y), z(other.z) {
    std::copy(other.attr, other.attr + 5, attr);
}

CXYZ::CXYZ(CXYZ&& other) noexcept { operator=(std::move(other)); }

CXYZ::CXYZ(double x_, double y_, double z_) : x(x_), y(y_), z(z_), attr{} {}

CXYZ::CXYZ(CString name_, double x_, double y_, double z_)
    : name(std::move(name_)), x(x_), y(y_), z(z_), attr{} {}

CXYZ::~CXYZ() {}

CXYZ& CXYZ::operator=(const CXYZ& other) {
    if (this != &other) {
        code = other.code;
        name = other.name;
        SetXYZ(other.x, other.y, other.z);
        std::copy(other.attr, other.attr + 5, attr);
    }
    return *this;
}

CXYZ& CXYZ::operator=(CXYZ&& other) noexcept {
    if (this != &other) {
        code = std::move(other.code);
        name = std::move(other.name);
        SetXYZ(other.x, other.y, other.z);
        std::copy(other.attr, other.attr + 5, attr);
    }
    return *this;
}

void CXYZ::SetXYZ(double x_, double y_, double z_) {
    x = x_;
    y = y_;
    z = z_;
}

void CXYZ::Init() {
    code.Empty();
    name.Empty();
    SetXYZ(0.0, 0.0, 0.0);
    std::fill(attr, attr + 5, 0);
}

double CXYZ::Inn(const CXYZ& b) const { return b.z * z + b.y * y + b.x * x; }

CXYZ CXYZ::Out(const CXYZ& b) const { return CXYZ(y * b.z - z * b.y, z * b.x - x * b.z, x * b.y - y * b.x); }

double CXYZ::Len() const { return std::sqrt(x * x + y * y + z * z); }

double CXYZ::Len(const CXYZ& b) const {
    const double dx = b.x - x;
    const double dy = b.y - y;
    const double dz = b.z - z;
    return std::sqrt(dz * dz + dy * dy + dx * dx);
}

BOOL CXYZ::EQ(const CXYZ& b, double tol) const { return Len(b) <= tol; }

CXYZ CXYZ::operator+() const { return *this; }

CXYZ CXYZ::operator-() const {
    CXYZ result(*this);
    result.SetXYZ(-x, -y, -z);
    return result;
}

CXYZ CXYZ::operator+(const CXYZ& b) const {
    CXYZ result(*this);
    result += b;
    return result;
}

CXYZ CXYZ::operator-(const CXYZ& b) const {
    CXYZ result(*this);
    result -= b;
    return result;
}

CXYZ CXYZ::operator*(const CXYZ& b) const {
    CXYZ result(*this);
    result *= b;
    return result;
}

CXYZ CXYZ::operator*(double s) const {
    CXYZ result(*this);
    result *= s;
    return result;
}

CXYZ CXYZ::operator/(const CXYZ& b) const {
    return CXYZ(b.x != 0.0 ? x / b.x : 0.0, b.y != 0.0 ? y / b.y : 0.0, b.z != 0.0 ? z / b.z : 0.0);
}

CXYZ CXYZ::operator/(double s) const {
    if (s == 0.0)
        return CXYZ();
    const double reciprocal = 1.0 / s;
    return CXYZ(x * reciprocal, y * reciprocal, z * reciprocal);
}

void CXYZ::operator+=(const CXYZ& b) { SetXYZ(x + b.x, y + b.y, z + b.z); }

void CXYZ::operator-=(const CXYZ& b) { SetXYZ(x - b.x, y - b.y, z - b.z); }

void CXYZ::operator*=(const CXYZ& b) { SetXYZ(x * b.x, y * b.y, z * b.z); }

void CXYZ::operator*=(double s) { SetXYZ(x * s, y * s, z * s); }

void CXYZ::operator/=(const CXYZ& b) {
    SetXYZ(b.x != 0.0 ? x / b.x : x, b.y != 0.0 ? y / b.y : y, b.z != 0.0 ? z / b.z : z);
}

void CXYZ::operator/=(double s) {
    if (s != 0.0)
        *this *= 1.0 / s;
}

void CXYZ::Trace() {}

CXYF::CXYF() { Init(); }

CXYF::CXYF(const CXYF& other) : x(other.x), y(other.y) {}

CXYF::~CXYF() {}

CXYF& CXYF::operator=(const CXYF& other) {
    if (this != &other)
        SetXY(other.x, other.y);
    return *this;
}

void CXYF::Trace() {}

void CXYF::Init() { SetXY(0.0f, 0.0f); }

void CXYF::SetXY(float x_, float y_) {
    x = x_;
    y = y_;
}
