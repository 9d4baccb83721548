// Units of length and angle, rounding for display, and differences of angles.
#include <fieldscan/survey.h>

#include <cmath>

#include "platform/framework/angle_wrap.h"
#include "platform/framework/truncation.h"
#include "survey/angle_difference.h"

using namespace fieldscan;

namespace {

// `angle` rounded for display. `unit` is the display's unit, and angle * `toTenths` the angle in tenths of
// it. `nearest` rounds a fraction of the unit to the steps that the display shows.
template <class Nearest>
double roundedForDisplay(double angle, double fullCircle, double toTenths, double unit, Nearest nearest) {
    if (!std::isfinite(angle))
        return angle;
    wrapTurn(angle, fullCircle, false);
    const double units = static_cast<double>(truncated(angle * toTenths + 0.5)) * 0.1;
    const double whole = static_cast<double>(truncated(units));
    angle = (whole + nearest(units - whole)) * unit;
    wrapTurn(angle, fullCircle, false);
    return angle;
}

double nearestHalf(double f) { return f >= 0.75 ? 1.0 : f >= 0.25 ? 0.5 : 0.0; }

double nearestFifth(double f) {
    return f >= 0.9 ? 1.0 : f >= 0.7 ? 0.8 : f >= 0.5 ? 0.6 : f >= 0.3 ? 0.4 : f >= 0.1 ? 0.2 : 0.0;
}

}  // namespace

CCalcXYZHV::CCalcXYZHV() {}
CCalcXYZHV::CCalcXYZHV(const CCalcXYZHV&) {}
CCalcXYZHV& CCalcXYZHV::operator=(const CCalcXYZHV&) { return *this; }
CCalcXYZHV::~CCalcXYZHV() {}

void CCalcXYZHV::Trace() {}

double CCalcXYZHV::MtoUSFT(double m) { return m * 3.280833333333333; }
double CCalcXYZHV::MtoIntFT(double m) { return m * 3.280839895013123; }
double CCalcXYZHV::USFTtoM(double ft) { return ft * 0.30480060960121924; }
double CCalcXYZHV::IntFTtoM(double ft) { return ft * 0.3048; }

double CCalcXYZHV::DEGtoGON(double deg) { return deg * 1.1111111111111112; }
double CCalcXYZHV::DEGtoMIL(double deg) { return deg * 17.77777777777778; }
double CCalcXYZHV::GONtoDEG(double gon) { return gon * 0.9; }
double CCalcXYZHV::MILtoDEG(double mil) { return mil * 0.05625; }

void CCalcXYZHV::Angle0To360(double& a) { a = reducedAngle(a); }

double CCalcXYZHV::RoundGON(double gon) { return roundedForDisplay(gon, 400.0, 10000.0, 0.001, nearestHalf); }

double CCalcXYZHV::RoundMIL(double mil, int mode) {
    return roundedForDisplay(mil, 6400.0, 1000.0, 0.01, mode == 0 ? nearestHalf : nearestFifth);
}

double CCalcXYZHV::AngleDifference(double a, double b) {
    return angleDifference(reducedAngle(a), reducedAngle(b));
}

double CCalcXYZHV::AngleDifference_Over0(double a, double b) {
    return clockwiseDifference(reducedAngle(a), reducedAngle(b));
}

double CCalcXYZHV::AngleDifference_Under0(double a, double b) {
    const double difference = AngleDifference(a, b);
    return difference > 0.0 ? difference - 360.0 : difference;
}

double CCalcXYZHV::AngleH0toZ0(double v) {
    double angle = 90.0 - v;
    Angle0To360(angle);
    return angle;
}

double CCalcXYZHV::AngleZ0toH0(double v) { return AngleH0toZ0(v); }
