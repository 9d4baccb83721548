// Kernels of gram.h. Few columns: all sums in registers. Else tiles, the rows of A in the place of their rows
// k; rows that are short enough stay where they lie and are not packed into panels.
#include "numerics/gram.h"
#include "numerics/tiles.h"

namespace fieldscan {
namespace FIELDSCAN_KERNELS {

// Several weights at a time: a plain loop takes half as long as forming 2000 x 4.
bool weightsAreOne(const WeightedRows& a) {
    const Lanes one = broadcast(1.0);
    decltype(Lanes{} != one) others = {};
    int k = 0;
    for (; k + kLanes <= a.m; k += kLanes)
        others |= load(a.weights + k) != one;
    long long any = 0;
    for (int lane = 0; lane < kLanes; ++lane)
        any |= others[lane];
    for (; k < a.m; ++k)
        any |= a.weights[k] != 1.0;
    return any == 0;
}

namespace {

constexpr int kPacked = 64;  // rows at a time; more gain nothing

// Rows that are short enough for as many as are packed to leave room in a first cache of 32 KiB are read
// where they lie: packing would take a fifth of forming 500 x 12, a tenth of 5000 x 30. Longer ones that come
// from memory take up to a quarter more so.
constexpr int kInCache = 3072;  // doubles
constexpr int kLongestInPlace = kInCache / kPacked;

template <Kind kind>
void addMany(const WeightedRows& a, double* room, double* gram) {
    const int n = a.n, length = n + 1;
    const Space space(room, kPacked, length);
    space.readSums(gram, n);
    for (int first = 0, count; first < a.m; first += count) {
        const double* rows = a.rows + static_cast<Index>(first) * length;
        const int rest = a.m - first;
        Factors factors = {rows, length, kPanel};
        if (length <= kLongestInPlace && rest > 1) {
            count = smaller(kInCache / length, rest - 1);  // the last one cannot be read beyond its end
        } else {
            count = smaller(kPacked, rest);
            space.setRows(0, count, rows, length, 0, static_cast<Index>(rest) * length);
            factors = space.factors();
        }
        for (int j = 0; j < length; j += kPanel)
            for (int i = 0; i < smaller(n, j + kPanel); i += kRows)
                space.add<kind>(i, j, factors, a.weights + first, 0, count);
    }
    space.writeSums(gram, n);
}

// Few columns: all sums in registers, the rows read where they lie. Vectors of columns end at the right
// edge, and row i has as many as reach its diagonal, so none reads beyond a row that fills a register; of
// shorter ones, the last are read from a copy.
template <int n, Kind kind>
double addFew(const double* rows, const double* weights, int m, double* gram) {
    constexpr int kLength = n + 1, kMost = (kLength + kLanes - 1) / kLanes;
    constexpr int kShort =
        kLength < kLanes ? (kLanes - 1) / kLength : 0;  // rows whose vector ends past the last row
    const auto begin = [](int v) { return (v + 1) * kLanes < kLength ? kLength - (v + 1) * kLanes : 0; };
    const auto vectors = [](int i) { return (kLength - i + kLanes - 1) / kLanes; };
    // Lane by lane: a register read from memory that was just written in parts waits for all of the writes,
    // which took a seventh of the time of 8 x 4.
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
        squares += kind == Kind::weighted ? square * __builtin_fabs(weights[k]) : square;
        Lanes columns[kMost];
        for (int v = 0; v < kMost; ++v)
            columns[v] = load(row + begin(v));
        for (int i = 0; i < n; ++i) {
            for (int v = 0; v < kMost; ++v) {
                if (v < vectors(i)) {
                    const Lanes product = columns[v] * row[i];
                    sums[i][v] += kind == Kind::weighted ? product * weights[k] : product;
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
constexpr int kMostFew = kLanes == 8 ? 16 : kLanes == 4 ? 8 : 6;
static_assert(kPanel <= kMostFew + 2, "of rows in place, a tile reads no further than the next one");

template <int n>
double addFewOf(const WeightedRows& a, bool unit, double* gram) {
    if constexpr (n > 1)
        if (a.n != n)
            return addFewOf<n - 1>(a, unit, gram);
    const auto add = unit ? addFew<n, Kind::plain> : addFew<n, Kind::weighted>;
    return add(a.rows, a.weights, a.m, gram);
}

}  // namespace

long long gramRoom(int n) { return n <= kMostFew ? 0 : Space::sizeOf(kPacked, n, n + 1); }

double addGram(const WeightedRows& a, double* room, double* gram) {
    const bool unit = weightsAreOne(a);  // multiplying by 1 changes no bit, so it is left out
    int negative = 0;
    for (int k = 0; k < a.m && !unit; ++k)
        negative += a.weights[k] < 0.0;
    double squares = 0.0;
    if (a.n <= kMostFew) {
        squares = addFewOf<kMostFew>(a, unit, gram);
    } else {
        unit ? addMany<Kind::plain>(a, room, gram) : addMany<Kind::weighted>(a, room, gram);
        for (int k = 0; k < a.m; ++k) {
            const double l = a.rows[k * (a.n + 1LL) + a.n];
            squares += l * l * __builtin_fabs(a.weights[k]);
        }
    }
    return negative > 0 ? -squares : squares;
}

}  // namespace FIELDSCAN_KERNELS
}  // namespace fieldscan
