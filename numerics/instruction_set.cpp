// Asks the processor once. The answer is atomic: a test may limit it while other threads compute.
#include "numerics/instruction_set.h"

#include <atomic>

namespace fieldscan {

namespace {

InstructionSet widestSupported() {
#if defined(__x86_64__) || defined(__i386__)
    __builtin_cpu_init();
    if (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma"))
        return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512dq") &&
                       __builtin_cpu_supports("avx512vl")
                   ? InstructionSet::avx512
                   : InstructionSet::avx2;
#endif
    return InstructionSet::baseline;
}

std::atomic<InstructionSet>& setInUse() {
    static std::atomic<InstructionSet> set{widestSupported()};
    return set;
}

}  // namespace

InstructionSet instructionSet() { return setInUse().load(std::memory_order_relaxed); }

bool limitInstructionSet(InstructionSet widest) {
    if (widest > widestSupported())
        return false;
    setInUse() = widest;
    return true;
}

}  // namespace fieldscan
