// The one conversion that C++ leaves open: a double outside the integer's range.
#ifndef FIELDSCAN_PLATFORM_FRAMEWORK_ARITHMETIC_H
#define FIELDSCAN_PLATFORM_FRAMEWORK_ARITHMETIC_H

#include <cmath>

namespace fieldscan {

// `value` without its fraction. What does not fit gives the nearest integer that does, NaN gives 0: the
// processors disagree here and the results must not.
inline int truncated(double value) {
    if (std::isnan(value))
        return 0;
    if (value >= 2147483647.0)
        return 2147483647;
    if (value <= -2147483648.0)
        return -2147483647 - 1;
    return static_cast<int>(value);
}

// Brings `angle` into one turn, as adding or subtracting `turn` again and again would, which is what the
// formulas state: into [0, turn] when `closed` (an exact multiple above the range ends at `turn`), else into
// [0, turn). `turn` must be a whole number. The remainder is exact, and up to 2^56 so is every such
// subtraction, so the bits are the same; larger angles, which would take years, end at once. Infinity and NaN
// stay as they are.
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
