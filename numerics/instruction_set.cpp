#include "numerics/instruction_set.h"

#include <atomic>

namespace fieldscan {

namespace {

InstructionSet ofThisMachine() {
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

std::atomic<InstructionSet>& chosen() {
    static std::atomic<InstructionSet> set{ofThisMachine()};
    return set;
}

}  // namespace

InstructionSet instructionSet() { return chosen().load(std::memory_order_relaxed); }

bool limitInstructionSet(InstructionSet widest) {
    if (widest > ofThisMachine())
        return false;
    chosen() = widest;
    return true;
}

}  // namespace fieldscan
