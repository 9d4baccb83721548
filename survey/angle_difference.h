// Differences of angles that are in [0, 360] already, for loops that meet the same angle often.
#ifndef FIELDSCAN_SURVEY_ANGLE_DIFFERENCE_H
#define FIELDSCAN_SURVEY_ANGLE_DIFFERENCE_H

#include <cmath>

#include "platform/framework/angle_wrap.h"

namespace fieldscan {

// CCalcXYZHV::Angle0To360 as a function of the angle.
inline double reducedAngle(double degrees) {
    wrapTurn(degrees, 360.0, true);
    return degrees;
}

// CCalcXYZHV::AngleDifference of two reduced angles.
inline double angleDifference(double a, double b) {
    constexpr double kEpsilon = 2.220446049250313e-16;
    double r = std::fabs(a - b);
    if (r > 180.0)
        r = 360.0 - r;
    else if (-kEpsilon <= r && r <= kEpsilon)
        return 0.0;
    if (b <= a - 180.0)
        return r;
    if (b <= a || a + 180.0 <= b)
        return -r;
    return r;
}

// CCalcXYZHV::AngleDifference_Over0 of two reduced angles.
inline double clockwiseDifference(double a, double b) {
    const double difference = angleDifference(a, b);
    return difference < 0.0 ? difference + 360.0 : difference;
}

}  // namespace fieldscan

#endif
