// The kinds of splines as CPolyline::splineFlag holds them.
#ifndef FIELDSCAN_POLYLINE_SPLINE_KINDS_H
#define FIELDSCAN_POLYLINE_SPLINE_KINDS_H

namespace fieldscan {

constexpr int kCubicSpline = 6;
constexpr int kCatmullRomSpline = 1000;

}  // namespace fieldscan

#endif
