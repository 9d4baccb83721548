// Memory exhaustion at the border of the library.
#ifndef FIELDSCAN_PLATFORM_FRAMEWORK_OUT_OF_MEMORY_H
#define FIELDSCAN_PLATFORM_FRAMEWORK_OUT_OF_MEMORY_H

#include <exception>

namespace fieldscan {

// The result of `work`, or 0 when memory ran out: no exception leaves the library's operations. A text that
// outgrows a 32-bit address space ends the same way.
template <class Work>
int zeroIfOutOfMemory(Work work) {
    try {
        return work();
    } catch (const std::exception&) {
        return 0;
    }
}

}  // namespace fieldscan

#endif
