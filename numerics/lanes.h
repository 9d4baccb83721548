// For kernels: doubles in the lanes of one register, as many as the instruction set of this compilation has.
// Two forms with the same operations and the same bits: vectors, an extension of GCC and clang, and, with
// FIELDSCAN_PORTABLE, a plain pair of doubles in standard C++.
//
// In a kernel file and the headers it includes, every function is static but the kernels themselves: of an
// inline function the linker keeps one copy for all sets, which may hold instructions that this processor
// lacks. The compiler's intrinsics are safe: they are always inlined. (The plain form is compiled for one set
// only.)
#ifndef FIELDSCAN_NUMERICS_LANES_H
#define FIELDSCAN_NUMERICS_LANES_H

#include <utility>

#if defined(__SSE2__) && !defined(FIELDSCAN_PORTABLE)
#include <immintrin.h>
#endif

namespace fieldscan {
namespace FIELDSCAN_KERNELS {

#if defined(FIELDSCAN_PORTABLE)

constexpr int kLanes = 2;
constexpr bool kFused = false;

struct Lanes {
    double lanes[kLanes];

    Lanes() = default;
    Lanes(double both) : lanes{both, both} {}
    Lanes(double first, double second) : lanes{first, second} {}
    double& operator[](int lane) { return lanes[lane]; }
    double operator[](int lane) const { return lanes[lane]; }
};

static inline Lanes operator+(Lanes a, Lanes b) { return {a[0] + b[0], a[1] + b[1]}; }
static inline Lanes operator-(Lanes a, Lanes b) { return {a[0] - b[0], a[1] - b[1]}; }
static inline Lanes operator*(Lanes a, Lanes b) { return {a[0] * b[0], a[1] * b[1]}; }
static inline Lanes operator/(Lanes a, Lanes b) { return {a[0] / b[0], a[1] / b[1]}; }
static inline Lanes operator-(Lanes a) { return {-a[0], -a[1]}; }
static inline Lanes& operator+=(Lanes& a, Lanes b) { return a = a + b; }
static inline Lanes& operator-=(Lanes& a, Lanes b) { return a = a - b; }

static inline Lanes load(const double* from) { return {from[0], from[1]}; }
static inline void store(double* to, Lanes value) {
    to[0] = value[0];
    to[1] = value[1];
}
static inline Lanes broadcast(double value) { return value; }

// Bit k is set where lane k <= limit; never for NaN.
static inline unsigned int atMost(Lanes a, double limit) {
    return (a[0] <= limit ? 1u : 0u) | (a[1] <= limit ? 2u : 0u);
}

// In each lane the smaller number; b where one is NaN.
static inline Lanes smaller(Lanes a, Lanes b) {
    return {a[0] < b[0] ? a[0] : b[0], a[1] < b[1] ? a[1] : b[1]};
}

// The smallest lane; none may be NaN.
static inline double least(Lanes a) { return a[1] < a[0] ? a[1] : a[0]; }

// Which lanes have different numbers; |= joins such masks.
using Mask = unsigned int;
static inline Mask differing(Lanes a, Lanes b) { return a[0] != b[0] || a[1] != b[1]; }
static inline bool anyLane(Mask mask) { return mask != 0; }

// Index of the lowest bit that is 1; there must be one.
static inline int lowestOne(unsigned int bits) {
    int index = 0;
    for (; (bits & 1) == 0; bits >>= 1)
        ++index;
    return index;
}

// Exchanges the upper of `step` lanes of a with the lower ones of b, in each pair of such blocks.
template <int step>
static inline void exchange(Lanes& a, Lanes& b) {
    static_assert(step == 1, "two lanes have no longer blocks");
    const double upper = a[1];
    a[1] = b[0];
    b[0] = upper;
}

#else

#if defined(__AVX512F__)
constexpr int kLanes = 8;
#elif defined(__AVX2__)
constexpr int kLanes = 4;
#else
constexpr int kLanes = 2;
#endif

// True where productError (double_double.h) of Lanes is one instruction, a fused multiply-subtract.
#if (defined(__AVX2__) && defined(__FMA__)) || defined(__aarch64__)
constexpr bool kFused = true;
#else
constexpr bool kFused = false;
#endif

typedef double Lanes __attribute__((vector_size(8 * kLanes)));
typedef double UnalignedLanes __attribute__((vector_size(8 * kLanes), aligned(8), may_alias));

static inline Lanes load(const double* from) { return *reinterpret_cast<const UnalignedLanes*>(from); }
static inline void store(double* to, Lanes value) { *reinterpret_cast<UnalignedLanes*>(to) = value; }

// value - 0.0 is value, so no subtraction is compiled. 0.0 + value would be one, since it turns -0.0 into
// 0.0: forming 5000 x 30 takes 1.5 times as long.
static inline Lanes broadcast(double value) { return value - Lanes{}; }

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

static inline Lanes smaller(Lanes a, Lanes b) { return a < b ? a : b; }

static inline double least(Lanes a) {
#if defined(__AVX512F__)
    a = smaller(__builtin_shufflevector(a, a, 4, 5, 6, 7, 0, 1, 2, 3), a);
    a = smaller(__builtin_shufflevector(a, a, 2, 3, 0, 1, 6, 7, 4, 5), a);
#elif defined(__AVX2__)
    a = smaller(__builtin_shufflevector(a, a, 2, 3, 0, 1), a);
#endif
    return a[1] < a[0] ? a[1] : a[0];
}

using Mask = decltype(Lanes{} != Lanes{});
static inline Mask differing(Lanes a, Lanes b) { return a != b; }
static inline bool anyLane(Mask mask) {
    long long any = 0;
    for (int lane = 0; lane < kLanes; ++lane)
        any |= mask[lane];
    return any != 0;
}

static inline int lowestOne(unsigned int bits) { return __builtin_ctz(bits); }

template <int step, int... lanes>
static inline void exchangeLanes(Lanes& a, Lanes& b, std::integer_sequence<int, lanes...>) {
    const Lanes first = a;
    a = __builtin_shufflevector(first, b, ((lanes & step) ? kLanes + lanes - step : lanes)...);
    b = __builtin_shufflevector(first, b, ((lanes & step) ? kLanes + lanes : lanes + step)...);
}

template <int step>
static inline void exchange(Lanes& a, Lanes& b) {
    exchangeLanes<step>(a, b, std::make_integer_sequence<int, kLanes>{});
}

#endif

}  // namespace FIELDSCAN_KERNELS
}  // namespace fieldscan

#endif
