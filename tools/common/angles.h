// Radians, in which the library keeps attitudes, and degrees.
#ifndef TOOLS_COMMON_ANGLES_H
#define TOOLS_COMMON_ANGLES_H

constexpr double kDegreesPerRadian = 57.29577951308232;
constexpr double kRadiansPerDegree = 0.017453292519943295;

#endif
