// Angles brought into one turn, by the exact remainder.
#ifndef FIELDSCAN_PLATFORM_FRAMEWORK_ANGLE_WRAP_H
#define FIELDSCAN_PLATFORM_FRAMEWORK_ANGLE_WRAP_H

#include <cmath>

namespace fieldscan {

// Brings `angle` into [0, turn), or, when `closed`, into [0, turn], where a multiple of `turn` above the
// range becomes `turn`. `turn` must be a whole number. Infinity and NaN stay.
//
// The result is that of adding or subtracting `turn` again and again: fmod is exact, and so is each such
// subtraction up to 2^56. Larger angles, which would take years that way, end at once.
inline void wrapTurn(double& angle, double turn, bool closed) {
    if (!std::isfinite(angle))
        return;
    if (angle < 0.0) {
        angle = std::fmod(angle, turn);
        if (angle < 0.0)
            angle += turn;  // a tiny negative angle rounds to `turn` itself
        else
            angle = 0.0;
    } else if (angle > turn) {
        angle = std::fmod(angle, turn);
        if (angle == 0.0)
            angle = turn;
    }
    if (!closed && angle >= turn)
        angle = 0.0;
}

}  // namespace fieldscan

#endif
