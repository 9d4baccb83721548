// Sums in double-double, a sum a lane: each is added up in its order, so lanes hold independent ones.
//
//   U^-1       columns j            A W, residuals   equations k, transposed a block at a time
//   A^T P v    equations k, for each unknown kPartialSums of them: in its 8 partial sums every eighth
//
// An addition waits seven times for the one before it: several registers of sums at a time hide that.
// Zeros change no sum, so blocks are filled up with them.
#include "adjustment/refinement_kernels.h"

#include "adjustment/exact_lanes.h"

namespace fieldscan {
namespace FIELDSCAN_KERNELS {

namespace {

using Index = long long;

// ---- The inverse of a triangle ----

// Columns `first` to `first` + kVectors kLanes, rows upward; `column` holds them as hi, lo of each row.
template <int kVectors>
void invertColumns(const double* factor, int n, int first, double* column, double* inverse) {
    constexpr int kWidth = kVectors * kLanes;
    const Index length = n + 1;
    const int end = first + kWidth < n ? first + kWidth : n;
    for (int i = end - 1; i >= 0; --i) {
        const double* u = factor + i * length;
        double unit[kWidth] = {};
        if (i >= first)
            unit[i - first] = 1.0;
        Exact sums[kVectors];
        for (int v = 0; v < kVectors; ++v)
            sums[v] = {load(unit + v * kLanes), Lanes{}};
        for (Index k = i + 1; k < end; ++k) {
            const double* w = column + k * 2 * kWidth;
            for (int v = 0; v < kVectors; ++v)
                sums[v] = sums[v] + Exact{load(w + v * kLanes), load(w + kWidth + v * kLanes)} * all(-u[k]);
        }
        double* w = column + static_cast<Index>(i) * 2 * kWidth;
        for (int v = 0; v < kVectors; ++v) {
            const Exact quotient = sums[v] / all(u[i]);
            store(w + v * kLanes, quotient.hi);
            store(w + kWidth + v * kLanes, quotient.lo);
        }
        for (int j = i > first ? i : first; j < end; ++j)
            inverse[i * length + j] = w[j - first];
    }
}

void invertExactly(const double* factor, int n, double* buffer, double* inverse) {
    for (Index k = 0; k < n * (n + 1LL); ++k)
        inverse[k] = 0.0;
    int first = 0;
    for (; first + kLanes < n; first += 2 * kLanes)
        invertColumns<2>(factor, n, first, buffer, inverse);
    for (; first < n; first += kLanes)
        invertColumns<1>(factor, n, first, buffer, inverse);
}

// ---- A W ----

inline void addProduct(Exact& sum, Lanes a, double b) { sum = sum + exactProduct(all(b), a); }
inline void addProduct(Lanes& sum, Lanes a, double b) { sum += a * b; }
inline Lanes rounded(Exact sum) { return sum.hi; }
inline Lanes rounded(Lanes sum) { return sum; }

// Columns j to j + kColumns of the products of kLanes rows.
template <class Sum, int kColumns>
void multiplyColumns(const double* transposed, const double* w, Index length, int j, int count, double* b) {
    Sum sums[kColumns] = {};
    for (int i = 0; i <= j; ++i)
        for (int c = 0; c < kColumns; ++c)
            addProduct(sums[c], load(transposed + i * kLanes), w[i * length + j + c]);
    for (int i = 1; i < kColumns; ++i)
        for (int c = i; c < kColumns; ++c)
            addProduct(sums[c], load(transposed + (j + i) * kLanes), w[(j + i) * length + j + c]);
    for (int c = 0; c < kColumns; ++c)
        for (int k = 0; k < count; ++k)
            b[k * length + j + c] = rounded(sums[c])[k];
}

template <class Sum>
void multiplyRows(const double* rows, int count, const double* w, int n, double* buffer, double* b) {
    const Index length = n + 1;
    for (int first = 0; first < count; first += kLanes, rows += kLanes * length, b += kLanes * length) {
        const int some = count - first < kLanes ? count - first : kLanes;
        transpose(rows, some, n, length, (count - first) * length, kLanes, kLanes, buffer);
        int j = 0;
        for (; j + 4 <= n; j += 4)
            multiplyColumns<Sum, 4>(buffer, w, length, j, some, b);
        for (; j + 2 <= n; j += 2)
            multiplyColumns<Sum, 2>(buffer, w, length, j, some, b);
        if (j < n)
            multiplyColumns<Sum, 1>(buffer, w, length, j, some, b);
        for (Index k = 0; k < some; ++k)
            b[k * length + n] = rows[k * length + n];
    }
}

// In slices: c = 2^kSlice times the largest |a| makes (a + c) - c a multiple of ulp(c) / 2 with 54 - kSlice
// bits and so few in W's slice that their products' sums are exact, for up to kMostSliced unknowns. The rest,
// of 2^(kSlice - 52) of a, bears the rounding: by so much less than a plain sum's it errs. With exact
// products refining takes 1.6 times as long at 5000 x 30, 2.5 times without fused operations.
//
// Elements of row k are measured in `units`, about the lengths of the columns.
void sliceRows(const double* transposed, const double* units, int n, double* high, double* low) {
    Lanes largest = {};
    for (int i = 0; i < n; ++i) {
        const Lanes a = load(transposed + i * kLanes) * (1.0 / units[i]), size = a < 0.0 ? -a : a;
        largest = size > largest ? size : largest;
    }
    for (int i = 0; i < n; ++i) {
        const Lanes a = load(transposed + i * kLanes), c = largest * all(units[i] * kSlice);
        const Lanes slice = (a + c) - c;
        store(high + i * kLanes, slice);
        store(low + i * kLanes, a - slice);
    }
}

template <int kColumns>
void multiplySlices(const double* whole, const double* high, const double* low, const double* wHigh,
                    const double* wLow, Index length, int j, int count, double* b) {
    Lanes sums[kColumns] = {}, rests[kColumns] = {};
    const auto add = [&](Index i, int c) {
        const Index at = i * length + j + c;
        sums[c] += load(high + i * kLanes) * wHigh[at];
        rests[c] += load(whole + i * kLanes) * wLow[at] + load(low + i * kLanes) * wHigh[at];
    };
    for (int i = 0; i <= j; ++i)
        for (int c = 0; c < kColumns; ++c)
            add(i, c);
    for (int i = 1; i < kColumns; ++i)
        for (int c = i; c < kColumns; ++c)
            add(j + i, c);
    for (int c = 0; c < kColumns; ++c) {
        const Lanes sum = sums[c] + rests[c];
        for (int k = 0; k < count; ++k)
            b[k * length + j + c] = sum[k];
    }
}

void multiplyRowsInSlices(const double* rows, int count, const double* wHigh, const double* wLow,
                          const double* units, int n, double* buffer, double* b) {
    const Index length = n + 1;
    double* const high = buffer + n * kLanes;
    double* const low = high + n * kLanes;
    for (int first = 0; first < count; first += kLanes, rows += kLanes * length, b += kLanes * length) {
        const int some = count - first < kLanes ? count - first : kLanes;
        transpose(rows, some, n, length, (count - first) * length, kLanes, kLanes, buffer);
        sliceRows(buffer, units, n, high, low);
        int j = 0;
        for (; j + 4 <= n; j += 4)
            multiplySlices<4>(buffer, high, low, wHigh, wLow, length, j, some, b);
        for (; j < n; ++j)
            multiplySlices<1>(buffer, high, low, wHigh, wLow, length, j, some, b);
        for (Index k = 0; k < some; ++k)
            b[k * length + n] = rows[k * length + n];
    }
}

// ---- Misclosures ----

constexpr int kBlock = kPartialSums > 2 * kLanes ? kPartialSums : 2 * kLanes;  // equations

void misclosure(const Equations& equations, const double* high, const double* low, double* buffer,
                double* sums) {
    constexpr int kVectors = kBlock / kLanes, kSums = kPartialSums / kLanes;
    const int n = equations.n;
    const Index length = n + 1;
    double* const partial = buffer;  // hi, lo of each unknown's
    double* const transposed = partial + 2 * kPartialSums * n;
    for (int i = 0; i < 2 * kPartialSums * n; ++i)
        partial[i] = 0.0;
    for (int first = 0; first < equations.m; first += kBlock) {
        const int count = equations.m - first < kBlock ? equations.m - first : kBlock;
        transpose(equations.rows + first * length, count, n + 1, length, (equations.m - first) * length,
                  kBlock, kBlock, transposed);
        double weights[kBlock] = {};
        for (int k = 0; k < count; ++k)
            weights[k] = equations.weights[first + k];
        Exact residuals[kVectors];
        for (int v = 0; v < kVectors; ++v)
            residuals[v] = {load(transposed + n * kBlock + v * kLanes), Lanes{}};
        for (int i = 0; i < n; ++i)
            for (int v = 0; v < kVectors; ++v)
                residuals[v] = residuals[v] +
                               Exact{all(high[i]), all(low[i])} * -load(transposed + i * kBlock + v * kLanes);
        for (int v = 0; v < kVectors; ++v)
            residuals[v] = residuals[v] * load(weights + v * kLanes);
        for (int i = 0; i < n; ++i) {
            double* const of = partial + 2 * kPartialSums * i;
            for (int s = 0; s < kSums; ++s) {
                Exact sum{load(of + s * kLanes), load(of + kPartialSums + s * kLanes)};
                for (int v = s; v < kVectors; v += kSums)
                    sum = sum + residuals[v] * load(transposed + i * kBlock + v * kLanes);
                store(of + s * kLanes, sum.hi);
                store(of + kPartialSums + s * kLanes, sum.lo);
            }
        }
    }
    for (int i = 0; i < n; ++i) {
        const double* const of = partial + 2 * kPartialSums * i;
        Exact sum{};
        for (int s = 0; s < kPartialSums; ++s)
            sum = sum + Exact{all(of[s]), all(of[kPartialSums + s])};
        sums[i] = sum.hi[0];
    }
}

// ---- Reflections ----

void columnSquares(const double* rows, int count, Index length, double* sums) {
    for (Index i = 0; i < length; i += kLanes) {
        Lanes sum = {};
        for (Index k = 0; k < count; ++k) {
            const Lanes a = load(rows + k * length + i);
            sum += a * a;
        }
        store(sums + i, sum);
    }
}

template <int kVectors>
void reflectVectors(double* rows, int count, Index length, const double* v, double divisor) {
    Lanes sums[kVectors] = {};
    const double* row = rows;
    for (int k = 0; k < count; ++k, row += length)
        for (int i = 0; i < kVectors; ++i)
            sums[i] += load(row + i * kLanes) * v[k];
    for (int i = 0; i < kVectors; ++i)
        sums[i] /= all(divisor);
    for (int k = 0; k < count; ++k, rows += length)
        for (int i = 0; i < kVectors; ++i)
            store(rows + i * kLanes, load(rows + i * kLanes) - sums[i] * v[k]);
}

void reflectColumns(double* rows, int count, Index length, Index begin, const double* v, double divisor) {
    Index i = begin;
    for (; i + 4 * kLanes <= length; i += 4 * kLanes)
        reflectVectors<4>(rows + i, count, length, v, divisor);
    for (; i < length; i += kLanes)
        reflectVectors<1>(rows + i, count, length, v, divisor);
}

}  // namespace

const RefinementKernels refinementKernels = {invertExactly,        multiplyRows<Lanes>, multiplyRows<Exact>,
                                             multiplyRowsInSlices, misclosure,          columnSquares,
                                             reflectColumns};

}  // namespace FIELDSCAN_KERNELS
}  // namespace fieldscan
