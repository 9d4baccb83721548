// Differences of angles that were brought into one turn before, for loops that meet the same angle often.
#ifndef FIELDSCAN_SURVEY_ANGLE_DIFFERENCE_H
#define FIELDSCAN_SURVEY_ANGLE_DIFFERENCE_H

#include <cmath>

namespace fieldscan {

// CCalcXYZHV::AngleDifference of two angles that Angle0To360 has passed.
inline double differenceInTurn(double a, double b) {
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

// CCalcXYZHV::AngleDifference_Over0 of the same.
inline double upwardDifferenceInTurn(double a, double b) {
    const double difference = differenceInTurn(a, b);
    return difference < 0.0 ? difference + 360.0 : difference;
}

}  // namespace fieldscan

#endif
