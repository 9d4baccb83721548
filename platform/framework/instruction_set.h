// The instruction sets that the numerical kernels are compiled for. All of them give the same bits.
#ifndef FIELDSCAN_PLATFORM_FRAMEWORK_INSTRUCTION_SET_H
#define FIELDSCAN_PLATFORM_FRAMEWORK_INSTRUCTION_SET_H

namespace fieldscan {

enum class InstructionSet { baseline, avx2, avx512 };  // avx2 with FMA; avx512 with its F, DQ and VL parts

// The widest set that processor and system have; what a table of kernels is chosen by.
InstructionSet instructionSet();

// For tests: keeps the whole process to `widest`. False, and nothing changes, where the machine lacks it.
bool limitInstructionSet(InstructionSet widest);

}  // namespace fieldscan

#endif
