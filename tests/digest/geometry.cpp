// Points, rotations, units and observations.
#include <fieldscan/survey.h>

#include "tests/digest/digest.h"

namespace {

using Calc = CCalcXYZHV;

const Family points("points", 1000, kExact, [](Results& out, Random& random, int i) {
    const double sizes[] = {1e-3, 1.0, 1e3, 1e7}, s = i % 7 ? random.around(2.0) : 0.0;
    CXYZ a = random.point(sizes[i % 4]), b = random.point(1e3);
    b.y = i % 5 ? b.y : 0.0;
    out << a.Inn(b) << a.Out(b) << a.Len() << a.Len(b) << a.EQ(b, 500.0) << -a << a + b << a - b << a * b
        << a * s << a / b << a / s;
    a += b;
    a *= b;
    a /= random.point(10.0);
    a -= b;
    a *= 1.1;
    b /= s;
    Calc::CnvSokuToMath(a);
    Calc::CnvMathToSoku(b);
    out << a << b;
});

const Family rotations("rotations", 500, kExact, [](Results& out, Random& random, int i) {
    CRot a = random.matrix(), b = random.matrix();
    const CXYZ point = random.point(1e4);
    out << a * point << (a * b) * point;
    b.AddMatrix(a);
    b *= a;
    b.T();
    out << b * point;
    CWPK angles = random.angles(i % 2 ? 4.0 : 1e6), others = random.angles(10.0);
    out << angles.Subtract(others) << -angles << angles + others << angles - others;
    angles.SetWPK(i * 1.5707963267948966, 1e300, -1e-300);
    angles.Normalize();
    out << angles;
});

const Family units("units", 2000, kExact, [](Results& out, Random& random, int i) {
    const double special[] = {-0.0,     360.0,      400.0,        6400.0, -360.0,  720.0, 12.3,
                              123.4559, 359.595999, 359.99999999, 1e-300, -1e-300, 1e17,  -HUGE_VAL};
    const double free = random.around(i % 2 ? 400.0 : 7000.0), quarters = random.below(1440) * 0.25;
    double a = i % 5 ? free : special[random.below(14)];
    out << Calc::MtoUSFT(a) << Calc::MtoIntFT(a) << Calc::USFTtoM(a) << Calc::IntFTtoM(a) << Calc::DEGtoGON(a)
        << Calc::DEGtoMIL(a) << Calc::GONtoDEG(a) << Calc::MILtoDEG(a) << Calc::RoundGON(a)
        << Calc::RoundMIL(a, 0) << Calc::RoundMIL(a, 1) << Calc::AngleH0toZ0(a);
    for (const double b : {quarters, free, 360.0 - quarters, free + 180.0})
        out << Calc::AngleDifference(a, b) << Calc::AngleDifference_Over0(b, quarters)
            << Calc::AngleDifference_Under0(a, b);
    for (const double b : {a, quarters, free})
        for (const int flag : {0, 1})
            out << Calc::Angle100To60(b, flag, 0) << Calc::Angle100To60(b, flag, 1)
                << Calc::Angle60To100(b, flag) << Calc::Angle60To100(Calc::Angle100To60(b, 1, flag), 0);
    out << Calc::AngleStr(a, i % 4) << Calc::AngleStr(Calc::Angle100To60(quarters, 0, 0), i % 3)
        << Calc::ByoToStr(random.bits() >> i % 32);
    Calc::Angle0To360(a);
    CXYZ observed;
    (void)Calc::CalcXYZ(observed, free, 1.0, quarters, observed, 0.0, 0.0, 1.0);
    out << a << observed.attr[0] << observed.attr[1];  // the angles as floats
});

// Sums of 100 results that are up to four rounding steps of 2e-16 off, and as much again from adding up.
const Family attitudes("attitudes", 100, 1e-12, [](Results& out, Random& random, int i) {
    CWPK angles = random.angles(1.2);
    // The first solution, upright, where omega and kappa turn about one axis, and the second solution. Close
    // to upright an arc sine has half the digits.
    const double phis[] = {angles.phi, std::copysign(1.5707963267948966, angles.phi), angles.phi + 3.0};
    angles.phi = phis[i % 3];
    const double degrees[] = {angles.phi, angles.kappa, angles.omega};
    for (const ROT_SYSTEM system : {ROT_W, ROT_P, ROT_K, ROT_WPK, ROT_KPW}) {
        CRot rotation;
        CWPK found = angles;
        rotation.SetMatrix(system, angles);
        rotation.CalAngle(system, found);
        rotation.SetDIMat(degrees);
        rotation.AddMatrix(system, angles);
        out << found.omega + found.phi + 2.0 * found.kappa << rotation * random.point(1.0);
    }
});

// Sums of 100 angles in degrees that are up to two rounding steps of 6e-14 off, and as much again from adding
// up. Coordinates are rounded to 1e-4 and agree.
const Family observations("observations", 100, 2e-11, [](Results& out, Random& random, int i) {
    const CXYZ station = random.point(1e3), target = random.point(1e3);
    const double height = random.around(2.0), distance = random.around(500.0), up = random.around(50.0);
    // Never close to the vertical, every second one in the second face.
    const double v = 90.0 + random.around(60.0) + i % 2 * 180.0;
    double z1 = 0.0, z2 = 0.0, z3 = 0.0, direction1 = 0.0, direction2 = 0.0, direction3 = 0.0;
    (void)Calc::XYZToHV(station, target, height, z1, direction1);
    (void)Calc::XYZToHV(station, station + CXYZ(0.0, up, distance), height, z2, direction2);
    Calc::CalcXYZToVH(target, station, height, z3, direction3);
    CXYZ p, q;
    (void)Calc::CalcXYZ(p, direction1, distance, v, up, station, height, 12.5, 1.0001);
    (void)Calc::CalcXYZ(q, direction1, distance, v, station, height, 12.5, 0.9999);
    out << z1 - 90.0 << z2 - 90.0 << z3 + 90.0 << direction1 - 180.0 << direction2 - 180.0
        << direction3 - 180.0 << p << q;
});

}  // namespace
