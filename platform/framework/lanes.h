// For kernels: doubles in the lanes of one register, as many as the instruction set of this compilation has.
//
// A kernel file includes no other header with functions in it, and has internal names alone beside its table:
// the linker would keep one of several copies of an inline function, which another processor may not know.
#ifndef FIELDSCAN_PLATFORM_FRAMEWORK_LANES_H
#define FIELDSCAN_PLATFORM_FRAMEWORK_LANES_H

namespace fieldscan {
namespace FIELDSCAN_KERNELS {

#if defined(__AVX512F__)
constexpr int kLanes = 8;
#elif defined(__AVX2__)
constexpr int kLanes = 4;
#else
constexpr int kLanes = 2;
#endif

typedef double Lanes __attribute__((vector_size(8 * kLanes)));
typedef double UnalignedLanes __attribute__((vector_size(8 * kLanes), aligned(8), may_alias));

static inline Lanes load(const double* from) { return *reinterpret_cast<const UnalignedLanes*>(from); }
static inline void store(double* to, Lanes value) { *reinterpret_cast<UnalignedLanes*>(to) = value; }

}  // namespace FIELDSCAN_KERNELS
}  // namespace fieldscan

#endif
