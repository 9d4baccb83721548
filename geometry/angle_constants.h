// pi, the full circle, and the factors between degrees and radians. All angle arithmetic of the library uses
// these decimals, so that its results have the same bits everywhere.
#ifndef FIELDSCAN_GEOMETRY_ANGLE_CONSTANTS_H
#define FIELDSCAN_GEOMETRY_ANGLE_CONSTANTS_H

namespace fieldscan {

constexpr double kPi = 3.141592653589793;
constexpr double kFullTurn = kPi * 2.0;
constexpr double kDegreesPerRadian = 57.29577951308232;
constexpr double kRadiansPerDegree = 0.017453292519943295;

}  // namespace fieldscan

#endif
