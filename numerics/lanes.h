// For kernels: doubles in the lanes of one register, as many as the instruction set of this compilation has.
//
// In a kernel file and the headers it includes, every function is static but the kernels themselves: of an
// inline function the linker keeps one copy for all sets, which may hold instructions that this processor
// lacks. The compiler's intrinsics are safe: they are always inlined.
#ifndef FIELDSCAN_NUMERICS_LANES_H
#define FIELDSCAN_NUMERICS_LANES_H

#if defined(__SSE2__)
#include <immintrin.h>
#endif

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

// value - 0.0 is value, so no subtraction is compiled. 0.0 + value would be one, since it turns -0.0 into
// 0.0: forming 5000 x 30 takes 1.5 times as long.
static inline Lanes broadcast(double value) { return value - Lanes{}; }

// Bit k is set where lane k <= limit; never for NaN.
static inline unsigned int atMost(Lanes a, double limit) {
#if defined(__AVX512F__)
    return _mm512_cmp_pd_mask(a, broadcast(limit), _CMP_LE_OQ);
#elif defined(__AVX2__)
    return static_cast<unsigned int>(_mm256_movemask_pd(_mm256_cmp_pd(a, broadcast(limit), _CMP_LE_OQ)));
#elif defined(__SSE2__)
    return static_cast<unsigned int>(_mm_movemask_pd(_mm_cmple_pd(a, broadcast(limit))));
#else
    return (a[0] <= limit ? 1u : 0u) | (a[1] <= limit ? 2u : 0u);
#endif
}

// The smallest lane; none may be NaN.
static inline double least(Lanes a) {
#if defined(__AVX512F__)
    const Lanes b = __builtin_shufflevector(a, a, 4, 5, 6, 7, 0, 1, 2, 3);
    a = b < a ? b : a;
    const Lanes c = __builtin_shufflevector(a, a, 2, 3, 0, 1, 6, 7, 4, 5);
    a = c < a ? c : a;
#elif defined(__AVX2__)
    const Lanes b = __builtin_shufflevector(a, a, 2, 3, 0, 1);
    a = b < a ? b : a;
#endif
    return a[1] < a[0] ? a[1] : a[0];
}

}  // namespace FIELDSCAN_KERNELS
}  // namespace fieldscan

#endif
