// The instruction sets that the numerical kernels are compiled for. All of them give the same bits.
#ifndef FIELDSCAN_NUMERICS_INSTRUCTION_SET_H
#define FIELDSCAN_NUMERICS_INSTRUCTION_SET_H

namespace fieldscan {

enum class InstructionSet { baseline, avx2, avx512 };  // avx2 with FMA; avx512 with its F, DQ and VL parts

// The widest set that processor and system support, or the limit.
InstructionSet instructionSet();

// For tests: limits the whole process to `widest`. False, and nothing changes, where the machine lacks it.
bool limitInstructionSet(InstructionSet widest);

}  // namespace fieldscan

// A file of kernels is compiled once for each set. FIELDSCAN_KERNELS is its namespace: fieldscan::baseline
// and, on x86, fieldscan::avx2 and fieldscan::avx512. FIELDSCAN_IN_EACH_SET declares what such a file
// defines; FIELDSCAN_CHOSEN(function) is the function of the set that is in use.
#define FIELDSCAN_IN_EACH_SET(...) \
    namespace baseline {           \
    __VA_ARGS__                    \
    }                              \
    namespace avx2 {               \
    __VA_ARGS__                    \
    }                              \
    namespace avx512 {             \
    __VA_ARGS__                    \
    }
#if defined(__x86_64__) || defined(__i386__)
#define FIELDSCAN_CHOSEN(function)                                                                  \
    (fieldscan::instructionSet() == fieldscan::InstructionSet::avx512 ? fieldscan::avx512::function \
     : fieldscan::instructionSet() == fieldscan::InstructionSet::avx2 ? fieldscan::avx2::function   \
                                                                      : fieldscan::baseline::function)
#else
#define FIELDSCAN_CHOSEN(function) (fieldscan::baseline::function)
#endif

#endif
