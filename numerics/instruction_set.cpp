// Asks processor and environment once. The answer is atomic: a test may limit it while other threads compute.
#include "numerics/instruction_set.h"

#include <atomic>
#include <cstdlib>
#include <string_view>

namespace fieldscan {

namespace {

InstructionSet widestSupported() {
#if defined(FIELDSCAN_HAS_WIDE_SETS)
    __builtin_cpu_init();
    if (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma"))
        return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512dq") &&
                       __builtin_cpu_supports("avx512vl")
                   ? InstructionSet::avx512
                   : InstructionSet::avx2;
#endif
    return InstructionSet::baseline;
}

InstructionSet widestAllowed() {
    static const InstructionSet set =
        instructionSetNamed(std::getenv("FIELDSCAN_INSTRUCTION_SET"), widestSupported());
    return set;
}

std::atomic<InstructionSet>& setInUse() {
    static std::atomic<InstructionSet> set{widestAllowed()};
    return set;
}

}  // namespace

InstructionSet instructionSet() { return setInUse().load(std::memory_order_relaxed); }

InstructionSet instructionSetNamed(const char* name, InstructionSet widest) {
    constexpr std::string_view kNames[] = {"baseline", "avx2", "avx512"};
    for (int set = 0; name && set < static_cast<int>(widest); ++set)
        if (name == kNames[set])
            return static_cast<InstructionSet>(set);
    return widest;
}

bool limitInstructionSet(InstructionSet widest) {
    if (widest > widestAllowed())
        return false;
    setInUse() = widest;
    return true;
}

}  // namespace fieldscan
