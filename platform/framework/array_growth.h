// Room in arrays that readers fill without knowing how much is to come.
#ifndef FIELDSCAN_PLATFORM_FRAMEWORK_ARRAY_GROWTH_H
#define FIELDSCAN_PLATFORM_FRAMEWORK_ARRAY_GROWTH_H

#include <fieldscan/framework/file.h>

#include <algorithm>
#include <cstddef>

#include "platform/system.h"

namespace fieldscan {

// Makes room for one more element by doubling the capacity: with the array's own growth step, which is
// limited, the time for a long file would be quadratic.
template <class Array>
void reserveDouble(Array& array) {
    if (array.GetSize() == array.GetCapacity())
        array.Reserve(array.GetSize() < 32           ? 64
                      : array.GetSize() > 0x3fffffff ? 0x7fffffff
                                                     : 2 * array.GetSize());
}

// Makes room for one more line of `file`. From 64 lines on, the capacity is that of the whole file if the
// lines to come are as long as those read, and an eighth more, but no more than 32 times what was read: a
// file that begins with short lines does not ask for much memory. A long list is so moved less often, and
// into large pages: a million points take 0.7 of the time.
template <class Array>
void reserveForLines(Array& array, const CFile& file) {
    const int size = array.GetSize();
    if (size < array.GetCapacity())
        return;
    const auto done = static_cast<double>(file.GetPosition());
    const double expected = done > 0.0 ? size * (static_cast<double>(file.GetLength()) / done) * 1.125 : 0.0;
    const double room = std::min(expected, 32.0 * size);
    if (size >= 64 && size < 0x08000000 && room > 1.03 * size)
        array.Reserve(static_cast<int>(room));
    else
        reserveDouble(array);
    system::expectFilled(array.GetData(), static_cast<std::size_t>(array.GetCapacity()) * sizeof array[0]);
}

}  // namespace fieldscan

#endif
