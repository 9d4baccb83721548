// CXYZ: a point or vector in space; CXYF: a small point in the plane.
#ifndef FIELDSCAN_POINTS_H
#define FIELDSCAN_POINTS_H

#include <fieldscan/framework/string.h>
#include <fieldscan/framework/types.h>

// A point or a vector: metres in object space, millimetres in a photo, pixels in an image, as its user has
// it. Carries a point name and a code. Sums are formed in the order written here, without fused operations.
//
// Operators that return a value: + - and * start from a copy of the left operand and keep its name, code and
// attr; / starts from a fresh point without them. Compound operators touch the coordinates alone.
// Divisors are tested for exactly 0: `a / b` then gives 0 in that component, `a /= b` leaves it as it was.
class FIELDSCAN_API CXYZ {
public:
    CXYZ();
    CXYZ(const CXYZ& other);
    CXYZ(CXYZ&& other) noexcept;  // takes the strings, leaves them empty
    // The rest empty or zero.
    CXYZ(double x, double y, double z);
    CXYZ(CString name, double x, double y, double z);
    ~CXYZ();

    CXYZ& operator=(const CXYZ& other);
    CXYZ& operator=(CXYZ&& other) noexcept;

    void SetXYZ(double x, double y, double z);  // leaves the strings and attr
    void Init();                                // every field empty or zero

    double Inn(const CXYZ& b) const;           // inner product b.z z + b.y y + b.x x
    CXYZ Out(const CXYZ& b) const;             // outer product this x b, without name and code
    double Len() const;                        // sqrt(x x + y y + z z)
    double Len(const CXYZ& b) const;           // distance sqrt(dz dz + dy dy + dx dx)
    BOOL EQ(const CXYZ& b, double tol) const;  // 1 when the distance is at most `tol`, else 0

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

    void Trace();  // a hook for debugging, does nothing

    CString code;  // attribute of the point; writers append it only when it is not empty
    CString name;  // of the point
    double x;      // unit and axes are the user's
    double y;      // as x
    double z;      // as x
    // Data carried with the point. CCalcXYZHV::CalcXYZ stores the observed horizontal and vertical angle as
    // 32-bit floats in words 0 and 1; scan result files hold word 2. The arithmetic never reads it.
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
    void Trace();                  // a hook for debugging, does nothing

    float x;  // unit and axes are the user's
    float y;  // as x
};

#endif
