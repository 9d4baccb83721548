// Sums of products for normal equations and their triangles.
//
// Forming has the equations for the rows of tiles.h; those of few unknowns stay in the cache as they lie, and
// are not packed into panels. Cholesky takes the rows of U above from those below, Z Z^T adds the columns of
// Z.
#include "adjustment/normal_kernels.h"

#include "adjustment/tiles.h"

namespace fieldscan {
namespace FIELDSCAN_KERNELS {

namespace {

// ---- Forming ----

// Multiplying by 1 changes no bit, so it is left out. (Several weights at a time: a plain loop takes half as
// long as forming 2000 x 4.)
bool weightsAreOne(const Equations& equations) {
    const Lanes one = all(1.0);
    decltype(Lanes{} != one) others = {};
    int k = 0;
    for (; k + kLanes <= equations.m; k += kLanes)
        others |= load(equations.weights + k) != one;
    long long any = 0;
    for (int lane = 0; lane < kLanes; ++lane)
        any |= others[lane];
    for (; k < equations.m; ++k)
        any |= equations.weights[k] != 1.0;
    return any == 0;
}

// Equations that are short enough for as many as are packed to leave room in a first cache of 32 KiB are read
// where they lie: packing would take a fifth of forming 500 x 12, a tenth of 5000 x 30. Longer ones that come
// from memory take up to a quarter more so.
constexpr int kInCache = 3072;  // doubles
constexpr int kLongestInPlace = kInCache / kEquationsPacked;

template <Kind kind>
void addMany(const Equations& equations, double* buffer, double* normal) {
    const int n = equations.n, length = n + 1;
    const bool alone = n % kPanel == 0;  // the observations in their panel
    const Space space(buffer, kEquationsPacked, length);
    space.readSums(normal, n);
    for (int first = 0, count; first < equations.m; first += count) {
        const double* rows = equations.rows + static_cast<Index>(first) * length;
        const int rest = equations.m - first;
        Factors factors = {rows, length, kPanel};
        if (length <= kLongestInPlace && rest > 1) {
            count = smaller(kInCache / length, rest - 1);  // the last one cannot be read beyond its end
        } else {
            count = smaller(kEquationsPacked, rest);
            space.setRows(0, count, rows, length, 0, static_cast<Index>(rest) * length);
            factors = space.factors();
        }
        for (int j = 0; j < (alone ? n : length); j += kPanel)
            for (int i = 0; i < smaller(n, j + kPanel); i += kRows)
                space.add<kind>(i, j, factors, equations.weights + first, 0, count);
        if (alone)
            space.addColumn<kind>(n, factors, equations.weights + first, count);
    }
    space.writeSums(normal, n);
}

void addManyOf(const Equations& equations, double* buffer, double* normal) {
    weightsAreOne(equations) ? addMany<Kind::plain>(equations, buffer, normal)
                             : addMany<Kind::weighted>(equations, buffer, normal);
}

// Few unknowns: all sums in registers, the equations read where they lie. Vectors of columns end at the right
// edge, and row i has as many as reach its diagonal, so none reads beyond a row that fills a register; of
// shorter ones, the last are read from a copy.
template <int n, Kind kind>
double addFew(const double* rows, const double* weights, int m, double* normal) {
    constexpr int kLength = n + 1, kMost = (kLength + kLanes - 1) / kLanes;
    constexpr int kShort =
        kLength < kLanes ? (kLanes - 1) / kLength : 0;  // rows whose vector ends behind all
    const auto begin = [](int v) { return (v + 1) * kLanes < kLength ? kLength - (v + 1) * kLanes : 0; };
    const auto vectors = [](int i) { return (kLength - i + kLanes - 1) / kLanes; };
    // Lane by lane: a register read from memory that was just written in parts waits for all of the writes,
    // which took a seventh of the time of 8 x 4.
    Lanes sums[n][kMost];
#pragma GCC unroll 16
    for (int i = 0; i < n; ++i)
#pragma GCC unroll 16
        for (int v = 0; v < kMost; ++v) {
            Lanes sum = {};
#pragma GCC unroll 16
            for (int lane = 0; lane < kLanes; ++lane)
                if (begin(v) + lane >= i && begin(v) + lane < kLength)
                    sum[lane] = normal[i * kLength + begin(v) + lane];
            sums[i][v] = sum;
        }
    double last[2 * kLanes] = {};
    const int copied = smaller(kShort, m), whole = m - copied;
#pragma GCC unroll 16
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
#pragma GCC unroll 16
        for (int v = 0; v < kMost; ++v)
            columns[v] = load(row + begin(v));
#pragma GCC unroll 16
        for (int i = 0; i < n; ++i) {
#pragma GCC unroll 16
            for (int v = 0; v < kMost; ++v) {
                if (v < vectors(i)) {
                    const Lanes product = columns[v] * row[i];
                    sums[i][v] += kind == Kind::weighted ? product * weights[k] : product;
                }
            }
        }
    }
#pragma GCC unroll 16
    for (int i = 0; i < n; ++i)
#pragma GCC unroll 16
        for (int v = 0; v < kMost; ++v)
#pragma GCC unroll 16
            for (int lane = 0; lane < kLanes; ++lane) {
                const int j = begin(v) + lane;
                if (v < vectors(i) && j >= i && j < kLength)
                    normal[i * kLength + j] = sums[i][v][lane];
            }
    return squares;
}

// Unknowns whose sums fill the registers: 26 of 32, 14 or 15 of 16.
constexpr int kMostFew = kLanes == 8 ? 16 : kLanes == 4 ? 8 : 6;
static_assert(kPanel <= kMostFew + 2, "of equations in place, a tile reads no further than the next one");

template <int n>
double addFewOf(const Equations& equations, double* normal) {
    if constexpr (n > 1)
        if (equations.n != n)
            return addFewOf<n - 1>(equations, normal);
    const auto add = weightsAreOne(equations) ? addFew<n, Kind::plain> : addFew<n, Kind::weighted>;
    return add(equations.rows, equations.weights, equations.m, normal);
}

// ---- Triangles ----

double choleskyFactor(const double* normal, int n, double tolerance, double* buffer, double* factor) {
    const Space space(buffer, n, n);
    space.readSums(normal, n);
    double smallest = 1.0;
    for (int first = 0; first < n; first += kRows) {
        const int end = smaller(n, first + kRows);
        for (int j = first - first % kPanel; first > 0 && j < n; j += kPanel)
            space.add<Kind::subtracted>(first, j, space.factors(), nullptr, 0, first);
        for (int k = first; k < end; ++k) {
            double* pivotRow = space.sums + k * space.length;
            const double diagonal = normal[k * (n + 1LL) + k];
            if (isSingularPivot(pivotRow[k], diagonal, n, tolerance))
                return 0.0;
            const double ratio = pivotRow[k] / diagonal;
            smallest = ratio < smallest ? ratio : smallest;
            const double root = __builtin_sqrt(pivotRow[k]);
            pivotRow[k] = root;
            for (int j = k + 1; j < n; ++j)
                pivotRow[j] /= root;
            for (int i = k + 1; i < end; ++i) {
                double* __restrict row = space.sums + i * space.length;
                const double multiple = pivotRow[i];
                for (int j = i; j < n; ++j)
                    row[j] -= multiple * pivotRow[j];
            }
            space.setRows(k, 1, pivotRow, 0, end, space.length);
        }
    }
    for (Index k = 0; k < n * (n + 1LL); ++k)
        factor[k] = normal[k];
    space.writeSums(factor, n);
    return smallest;
}

constexpr int kBlock = 4 * kLanes;  // columns of the inverse at a time

// sums[j] += a W(k, j) over a row of U and the rows of W that it begins to multiply at.
void addRows(const double* row, const double* w, Index length, int count, Lanes* sums) {
    Lanes sum[4] = {sums[0], sums[1], sums[2], sums[3]};
    for (int k = 0; k < count; ++k, w += length)
#pragma GCC unroll 4
        for (int v = 0; v < 4; ++v)
            sum[v] += load(w + v * kLanes) * row[k];
    for (int v = 0; v < 4; ++v)
        sums[v] = sum[v];
}

// Blocks of columns from the right, since those to the left need their U no more; rows upward. The rows of W
// that are not as long as the block is wide, on its diagonal, lie in a copy with zeros to the left: products
// with them change no sum.
void invertTriangle(double* factor, int n) {
    const Index length = n + 1;
    for (int end = n; end > 0; end -= kBlock) {
        const int begin = end > kBlock ? end - kBlock : 0, width = end - begin;
        double diagonal[kBlock * kBlock] = {};
        for (int i = end - 1; i >= 0; --i) {
            double* row = factor + i * length;
            const int above = i < begin ? begin - i - 1 : 0, inside = i < begin ? begin : i + 1;
            Lanes sums[4] = {};
            addRows(row + i + 1, row + length + begin, length, above, sums);
            addRows(row + inside, diagonal + (inside - begin) * kBlock, kBlock, end - inside, sums);
            double* w = i < begin ? row + begin : diagonal + (i - begin) * kBlock;
            const double pivot = row[i];
            for (int v = 0; v < 4; ++v)
                store(w + v * kLanes, -sums[v] / pivot);
            if (i >= begin) {
                for (int c = 0; c < i - begin; ++c)
                    w[c] = 0.0;
                w[i - begin] = 1.0 / pivot;
            }
        }
        for (int i = 0; i < width; ++i)
            for (int c = i; c < width; ++c)
                factor[(begin + i) * length + begin + c] = diagonal[i * kBlock + c];
    }
}

// Zeros stand before the first element of a row; products with them change no sum.
void multiplyByTranspose(const double* triangle, int n, double* buffer, double* product) {
    const Space space(buffer, n, n);
    for (int i = 0; i < upTo(kPanel, n); ++i)
        for (int k = i - i % kPanel; k < n; ++k)
            *space.panelAt(k, i) = i <= k ? triangle[i * (n + 1LL) + k] : 0.0;
    for (Index k = 0; k < upTo(kRows, n) * space.length; ++k)
        space.sums[k] = 0.0;
    for (int j = 0; j < n; j += kPanel)
        for (int i = 0; i < smaller(n, j + kPanel); i += kRows)
            space.add<Kind::plain>(i, j, space.factors(), nullptr, j, n);
    space.writeSums(product, n);
    for (int i = 0; i < n; ++i)
        product[i * (n + 1LL) + n] = 0.0;
}

long long bufferSize(int height, int rows, int columns) { return Space::sizeOf(height, rows, columns); }

}  // namespace

const NormalKernels normalKernels = {weightsAreOne,  kMostFew,       addFewOf<kMostFew>,  addManyOf,
                                     choleskyFactor, invertTriangle, multiplyByTranspose, bufferSize};

}  // namespace FIELDSCAN_KERNELS
}  // namespace fieldscan
