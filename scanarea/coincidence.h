// How near two directions count as one.
#ifndef FIELDSCAN_SCANAREA_COINCIDENCE_H
#define FIELDSCAN_SCANAREA_COINCIDENCE_H

namespace fieldscan {

// Radians: far above the rounding of an angle that was degrees (4e-16), far below what an instrument
// measures.
constexpr double kCoincident = 1e-12;

}  // namespace fieldscan

#endif
