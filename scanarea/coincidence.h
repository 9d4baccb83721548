// The tolerance within which two directions are one.
#ifndef FIELDSCAN_SCANAREA_COINCIDENCE_H
#define FIELDSCAN_SCANAREA_COINCIDENCE_H

namespace fieldscan {

// Radians. Far above the rounding of an angle that was in degrees (4e-16), far below what an instrument can
// measure.
constexpr double kCoincident = 1e-12;

}  // namespace fieldscan

#endif
