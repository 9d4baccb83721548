// Memory exhaustion becomes the result 0: no exception leaves the library's operations.
#ifndef FIELDSCAN_PLATFORM_FRAMEWORK_OUT_OF_MEMORY_H
#define FIELDSCAN_PLATFORM_FRAMEWORK_OUT_OF_MEMORY_H

#include <new>
#include <stdexcept>

namespace fieldscan {

// The result of `work`, or 0 when memory runs out.
template <class Work>
int zeroIfOutOfMemory(Work work) {
    try {
        return work();
    } catch (const std::bad_alloc&) {
        return 0;
    } catch (const std::length_error&) {  // a std::string that outgrows a 32-bit address space
        return 0;
    }
}

}  // namespace fieldscan

#endif
