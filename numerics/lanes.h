// For kernels: doubles in the lanes of one register, as many as the instruction set of this compilation has.
//
// In a kernel file, and in the headers that it includes, every function but those it is for is static: of an
// inline function the linker keeps one copy, which perhaps only another processor knows. The compiler's own
// header of instructions is no danger: its functions are always put where they are called.
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

// (0.0 + value would be an addition, since it turns -0.0 into 0.0: 1.5 times the time of forming
// 5000 x 30.)
static inline Lanes broadcast(double value) { return value - Lanes{}; }

// Bit k is set where lane k is at most `limit`, which NaN is not.
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

// Of a without NaN.
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
