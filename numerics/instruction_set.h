// The instruction sets that the numerical kernels are compiled for. All of them give the same bits.
#ifndef FIELDSCAN_NUMERICS_INSTRUCTION_SET_H
#define FIELDSCAN_NUMERICS_INSTRUCTION_SET_H

// NaN must stay NaN, and sums must be added up in the order in which they are written, or a NaN coefficient
// is "solved" and results differ on each processor. cmake/CompileOptions.cmake switches such options off.
#if defined(__FAST_MATH__) || (defined(__FINITE_MATH_ONLY__) && __FINITE_MATH_ONLY__) || \
    defined(__ASSOCIATIVE_MATH__) || defined(__RECIPROCAL_MATH__) || defined(_M_FP_FAST)
#error "fieldscan needs IEEE arithmetic: compile it with -fno-fast-math or /fp:precise"
#endif

namespace fieldscan {

enum class InstructionSet { baseline, avx2, avx512 };  // avx2 with FMA; avx512 with its F, DQ and VL parts

// The widest set that processor and system support, or the limit: the environment variable
// FIELDSCAN_INSTRUCTION_SET, which is read once, or limitInstructionSet.
InstructionSet instructionSet();

// The set of this name (baseline, avx2 or avx512), but no wider one than `widest`, which is also the answer
// for other names and for nullptr.
InstructionSet instructionSetNamed(const char* name, InstructionSet widest);

// For tests: limits the whole process to `widest`. False, and nothing changes, where the machine lacks it or
// the environment forbids it.
bool limitInstructionSet(InstructionSet widest);

}  // namespace fieldscan

// A file of kernels is compiled once for each set. FIELDSCAN_KERNELS is its namespace: fieldscan::baseline
// and, on x86 without FIELDSCAN_PORTABLE, fieldscan::avx2 and fieldscan::avx512. FIELDSCAN_IN_EACH_SET
// declares what such a file defines; FIELDSCAN_CHOSEN(function) is the function of the set that is in use.
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
#if !defined(FIELDSCAN_PORTABLE) && (defined(__x86_64__) || defined(__i386__))
#define FIELDSCAN_HAS_WIDE_SETS
#endif
#if defined(FIELDSCAN_HAS_WIDE_SETS)
#define FIELDSCAN_CHOSEN(function)                                                                  \
    (fieldscan::instructionSet() == fieldscan::InstructionSet::avx512 ? fieldscan::avx512::function \
     : fieldscan::instructionSet() == fieldscan::InstructionSet::avx2 ? fieldscan::avx2::function   \
                                                                      : fieldscan::baseline::function)
#else
#define FIELDSCAN_CHOSEN(function) (fieldscan::baseline::function)
#endif

#endif
