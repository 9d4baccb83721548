// CXYZ: a point or vector in space; CXYF: a small point in the plane.
#ifndef FIELDSCAN_POINTS_H
#define FIELDSCAN_POINTS_H

#include <fieldscan/framework/moves_as_bytes.h>
#include <fieldscan/framework/string.h>
#include <fieldscan/framework/types.h>

// A point or a vector with a name and a code. Its unit and axes are the caller's: metres in object space,
// millimetres in a photo, pixels in an image. Sums are formed in the order given here, without fused
// operations.
//
// + - and * return a copy of the left operand, with its name, code and attr; / returns a point without them.
// Compound operators change only the coordinates. Where a divisor is exactly 0, `a / b` gives 0 in that
// component and `a /= b` leaves it as it was.
class FIELDSCAN_API CXYZ {
public:
    CXYZ();
    CXYZ(const CXYZ& other);
    CXYZ(CXYZ&& other) noexcept;  // takes over the strings; `other` has empty ones then
    // Fields that are not given are empty or 0.
    CXYZ(double x, double y, double z);
    CXYZ(CString name, double x, double y, double z);
    ~CXYZ();

    CXYZ& operator=(const CXYZ& other);
    CXYZ& operator=(CXYZ&& other) noexcept;

    void SetXYZ(double x, double y, double z);  // the strings and attr stay
    void Init();                                // every field empty or 0

    double Inn(const CXYZ& b) const;           // inner product b.z z + b.y y + b.x x
    CXYZ Out(const CXYZ& b) const;             // cross product this x b, without name and code
    double Len() const;                        // sqrt(x x + y y + z z)
    double Len(const CXYZ& b) const;           // distance sqrt(dz dz + dy dy + dx dx)
    BOOL EQ(const CXYZ& b, double tol) const;  // 1 if the distance is at most `tol`, else 0

    // Component by component.
    CXYZ operator+() const;
    CXYZ operator-() const;
    CXYZ operator+(const CXYZ& b) const;
    CXYZ operator-(const CXYZ& b) const;
    CXYZ operator*(const CXYZ& b) const;
    CXYZ operator*(double s) const;
    CXYZ operator/(const CXYZ& b) const;
    CXYZ operator/(double s) const;  // times the reciprocal 1 / s

    // Component by component.
    void operator+=(const CXYZ& b);
    void operator-=(const CXYZ& b);
    void operator*=(const CXYZ& b);
    void operator*=(double s);
    void operator/=(const CXYZ& b);
    void operator/=(double s);  // times the reciprocal 1 / s

    void Trace();  // for debugging; does nothing

    CString code;  // attribute of the point; file writers append it only if it is not empty
    CString name;  // of the point
    double x;      // in the caller's unit and axes
    double y;      // as x
    double z;      // as x
    // Data carried with the point; no computation reads it. CCalcXYZHV::CalcXYZ stores the observed
    // horizontal and vertical angle in words 0 and 1, as 32-bit floats. Scan result files hold word 2.
    int attr[5];
};

// A point in the plane, in single precision.
class FIELDSCAN_API CXYF {
public:
    CXYF();
    CXYF(const CXYF& other);
    virtual ~CXYF();

    CXYF& operator=(const CXYF& other);

    void Init();                   // 0, 0
    void SetXY(float x, float y);  // as they are
    void Trace();                  // for debugging; does nothing

    float x;  // in the caller's unit and axes
    float y;  // as x
};

template <>
struct fieldscan::MovesAsBytes<CXYZ> : std::true_type {};
template <>
struct fieldscan::MovesAsBytes<CXYF> : std::true_type {};

#endif
