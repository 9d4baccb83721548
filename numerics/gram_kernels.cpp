// Kernels of gram.h. Few columns: all sums stay in registers. More: tiles (tiles.h), with the rows of A as
// rows k; short rows are read in place, longer ones are packed into panels.
#include <cmath>

#include "numerics/gram.h"
#include "numerics/tiles.h"

namespace fieldscan {
namespace FIELDSCAN_KERNELS {

// Compares kLanes weights at a time: a plain loop takes half as long as forming 2000 x 4.
bool weightsAreOne(const WeightedRows& a) {
    const Lanes one = broadcast(1.0);
    Mask others = {};
    int k = 0;
    for (; k + kLanes <= a.m; k += kLanes)
        others |= differing(load(a.weights + k), one);
    bool unit = !anyLane(others);
    for (; k < a.m; ++k)
        unit &= a.weights[k] == 1.0;
    return unit;
}

namespace {

// Rows at a time. With 8 lanes a tile reads half of the right panel only, so more of them stay in the first
// cache: 192 take 0.95 of the time of 64 for 5000 x 300, and with 4 lanes 1.02 of it.
constexpr int kPacked = kLanes == 8 ? 192 : 64;

// Rows are read in place where 64 of them fit into three quarters of a first cache of 32 KiB: packing them
// takes a fifth of forming 500 x 12, a tenth of 5000 x 30. Longer rows that come from memory take up to a
// quarter more time in place.
constexpr int kInCache = 3072;  // doubles
static_assert(kInCache * sizeof(double) == 32 * 1024 / 4 * 3, "three quarters of the cache");
constexpr int kLongestInPlace = kInCache / 64;

template <Update update>
void addInTiles(const WeightedRows& a, double* room, double* gram) {
    const int n = a.n, length = n + 1;
    const TileBuffer buffer(room, kPacked, length);
    buffer.readSums(gram, n);
    for (int first = 0, count; first < a.m; first += count) {
        const double* rows = a.rows + static_cast<Index>(first) * length;
        const int rest = a.m - first;
        Factors factors = {rows, length, kPanel};
        if (length <= kLongestInPlace && rest > 1) {
            // A tile may read past the end of a row, so not of the last one.
            count = smaller(kInCache / length, rest - 1);
        } else {
            count = smaller(kPacked, rest);
            buffer.setRows(0, count, rows, length, 0, static_cast<Index>(rest) * length);
            factors = buffer.factors();
        }
        for (int j = 0; j < length; j += kPanel)
            for (int i = 0; i <= j && i < n; i += kPanel)
                buffer.addSquare<update>(i, j, n, factors, a.weights + first, 0, count);
    }
    buffer.writeSums(gram, n);
}

// All sums in registers, rows read in place. The registers of a row are counted from its right end, and row i
// of the sums has as many as reach its diagonal. So only rows shorter than a register are read past their
// end: the last of these are read from a copy.
template <int n, bool weighted>
double addInRegisters(const double* rows, const double* weights, int m, double* gram) {
    constexpr int kLength = n + 1, kMost = (kLength + kLanes - 1) / kLanes;
    constexpr int kShort = kLength < kLanes ? (kLanes - 1) / kLength : 0;  // rows to copy
    const auto begin = [](int v) { return (v + 1) * kLanes < kLength ? kLength - (v + 1) * kLanes : 0; };
    const auto vectors = [](int i) { return (kLength - i + kLanes - 1) / kLanes; };
    // Lane by lane: reading a register from memory that was just written in parts waits for all the writes, a
    // seventh of the time of 8 x 4.
    Lanes sums[n][kMost];
    for (int i = 0; i < n; ++i)
        for (int v = 0; v < kMost; ++v) {
            Lanes sum = {};
            for (int lane = 0; lane < kLanes; ++lane)
                if (begin(v) + lane >= i && begin(v) + lane < kLength)
                    sum[lane] = gram[i * kLength + begin(v) + lane];
            sums[i][v] = sum;
        }
    double last[2 * kLanes] = {};
    const int copied = smaller(kShort, m), whole = m - copied;
    for (int r = 0; r < kShort; ++r)
        if (r < copied)
            for (int c = 0; c < kLength; ++c)
                last[r * kLength + c] = rows[static_cast<Index>(whole + r) * kLength + c];
    double squares = 0.0;
    for (int k = 0; k < m; ++k, rows += kLength) {
        const double* row = kShort > 0 && k >= whole ? last + (k - whole) * kLength : rows;
        const double square = row[n] * row[n];
        squares += weighted ? square * std::fabs(weights[k]) : square;
        Lanes columns[kMost];
        for (int v = 0; v < kMost; ++v)
            columns[v] = load(row + begin(v));
        for (int i = 0; i < n; ++i) {
            for (int v = 0; v < kMost; ++v) {
                if (v < vectors(i)) {
                    const Lanes product = columns[v] * row[i];
                    sums[i][v] += weighted ? product * weights[k] : product;
                }
            }
        }
    }
    for (int i = 0; i < n; ++i)
        for (int v = 0; v < kMost; ++v)
            for (int lane = 0; lane < kLanes; ++lane) {
                const int j = begin(v) + lane;
                if (v < vectors(i) && j >= i && j < kLength)
                    gram[i * kLength + j] = sums[i][v][lane];
            }
    return squares;
}

// Columns whose sums fill the registers: 26 of 32, 14 or 15 of 16.
constexpr int kMostInRegisters = kLanes == 8 ? 16 : kLanes == 4 ? 8 : 6;
static_assert(kPanel <= kMostInRegisters + 2, "a tile reads rows in place no further than the next row");

template <int n>
double addInRegistersOf(const WeightedRows& a, bool unit, double* gram) {
    if constexpr (n > 1)
        if (a.n != n)
            return addInRegistersOf<n - 1>(a, unit, gram);
    const auto add = unit ? addInRegisters<n, false> : addInRegisters<n, true>;
    return add(a.rows, a.weights, a.m, gram);
}

}  // namespace

long long gramRoom(int n) { return n <= kMostInRegisters ? 0 : TileBuffer::sizeOf(kPacked, n, n + 1); }

double addGram(const WeightedRows& a, double* room, double* gram) {
    const bool unit = weightsAreOne(a);  // multiplying by 1 changes no bit, so it is left out
    int negative = 0;
    for (int k = 0; k < a.m && !unit; ++k)
        negative += a.weights[k] < 0.0;
    double squares = 0.0;
    if (a.n <= kMostInRegisters) {
        squares = addInRegistersOf<kMostInRegisters>(a, unit, gram);
    } else {
        unit ? addInTiles<Update::add>(a, room, gram) : addInTiles<Update::addWeighted>(a, room, gram);
        for (int k = 0; k < a.m; ++k) {
            const double l = a.rows[k * (a.n + 1LL) + a.n];
            squares += l * l * std::fabs(a.weights[k]);
        }
    }
    return negative > 0 ? -squares : squares;
}

}  // namespace FIELDSCAN_KERNELS
}  // namespace fieldscan
