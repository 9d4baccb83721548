// The conversion of a double to int, defined for every value: C++ leaves open what is out of range.
#ifndef FIELDSCAN_PLATFORM_FRAMEWORK_TRUNCATION_H
#define FIELDSCAN_PLATFORM_FRAMEWORK_TRUNCATION_H

#include <cmath>

namespace fieldscan {

// `value` without its fraction; the nearest int where that is out of range, 0 for NaN. Processors give
// different results there.
inline int truncated(double value) {
    if (std::isnan(value))
        return 0;
    if (value >= 2147483647.0)
        return 2147483647;
    if (value <= -2147483648.0)
        return -2147483647 - 1;
    return static_cast<int>(value);
}

}  // namespace fieldscan

#endif
