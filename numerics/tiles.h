// For kernels: the upper half of a symmetric matrix of sums of products, in tiles (Goto and van de Geijn, ACM
// Trans. Math. Softw. 34, 2008).
//
// Element (i, j) is one sum, added up in the order of k. So lanes hold neighbouring columns j of one row k:
//
//            columns j: a panel, kVectors registers          rows k of a panel lie one after the other,
//          +--------+--------+                               kPanel doubles each: the tile reads two
//   i      | sum    | sum    |   + = (row k, j) (row k, i)   streams, whatever the number of columns,
//   kRows  | sum    | sum    |                               and stays in the first cache.
//   of     |  ..    |  ..    |     k innermost: the sums
//   them   | sum    | sum    |     stay in registers
//          +--------+--------+
//
// The matrix of sums is padded to whole tiles. In tiles on the diagonal, registers below it are left out.
#ifndef FIELDSCAN_NUMERICS_TILES_H
#define FIELDSCAN_NUMERICS_TILES_H

#include "numerics/lanes.h"

namespace fieldscan {
namespace FIELDSCAN_KERNELS {

using Index = long long;

constexpr int kVectors = 2;
constexpr int kRows = kLanes == 8 ? 8 : 4;  // 16 registers of sums with AVX-512, else 8
constexpr int kPanel = kVectors * kLanes;

enum class Update { add, addWeighted, subtract };  // what a tile does with the products

// Where the factors of the products are; `first` is (row 0, column 0).
struct Factors {
    const double* first;
    Index rowStep, panelStep;

    const double* at(int k, int column) const {
        return first + column / kPanel * panelStep + k * rowStep + column % kPanel;
    }
};

// Adds to sums[i length + j] the products of columns left[i] and right[j] in rows k < count, or subtracts.
template <Update update, int rows, int vectors>
static void addTile(const double* right, const double* left, Index rowStep, const double* weights, int count,
                    double* sums, Index length) {
    Lanes tile[rows][vectors];
    for (int i = 0; i < rows; ++i)
        for (int v = 0; v < vectors; ++v)
            tile[i][v] = load(sums + i * length + v * kLanes);
    for (Index k = 0; k < count; ++k, right += rowStep, left += rowStep) {
        Lanes row[vectors];
        for (int v = 0; v < vectors; ++v)
            row[v] = load(right + v * kLanes);
        for (int i = 0; i < rows; ++i) {
            for (int v = 0; v < vectors; ++v) {
                const Lanes product = row[v] * left[i];
                if (update == Update::addWeighted)
                    tile[i][v] += product * weights[k];
                else if (update == Update::subtract)
                    tile[i][v] -= product;
                else
                    tile[i][v] += product;
            }
        }
    }
    for (int i = 0; i < rows; ++i)
        for (int v = 0; v < vectors; ++v)
            store(sums + i * length + v * kLanes, tile[i][v]);
}

static inline int smaller(int a, int b) { return a < b ? a : b; }

static inline Index roundUp(Index count, Index step) { return (count + step - 1) / step * step; }

// The buffer of a computation: rows of factors, in panels, and the padded matrix of sums. A row of sums takes
// an odd number of cache lines: rows a power of two apart would compete for one set of the cache.
struct TileBuffer {
    double* panels;
    double* sums;
    Index height;  // rows of a panel
    Index length;  // of a row of sums
    int columns;   // in use

    TileBuffer(double* buffer, int rows, int width)
        : panels(buffer),
          sums(buffer + roundUp(width, kPanel) * rows),
          height(rows),
          length(lengthOf(width)),
          columns(width) {}

    static Index lengthOf(int width) { return roundUp(width, 16) + 8; }
    static Index sizeOf(int panelRows, int rows, int width) {
        return roundUp(width, kPanel) * panelRows + roundUp(rows, kPanel) * lengthOf(width);
    }

    Factors factors() const { return {panels, kPanel, height * kPanel}; }

    double* panelAt(int k, int column) const {
        return panels + (column / kPanel * height + k) * kPanel + column % kPanel;
    }

    // Sets rows `first` to `first` + `count` of the panels, from column `begin` on. `readable` elements can
    // be read from `rows` on. What a panel has past the last column adds to sums that are never read.
    void setRows(int first, int count, const double* rows, Index rowLength, int begin, Index readable) const {
        for (int j = begin - begin % kPanel; j < columns; j += kPanel) {
            const double* from = rows + j;
            double* to = panelAt(first, j);
            Index rest = readable - j;
            for (int k = 0; k < count; ++k, from += rowLength, to += kPanel, rest -= rowLength)
                for (int c = 0; c < kPanel; c += kLanes)
                    if (rest >= kPanel)
                        store(to + c, load(from + c));
                    else
                        for (int lane = c; lane < c + kLanes; ++lane)
                            to[lane] = j + lane < columns ? from[lane] : 0.0;
        }
    }

    // The upper half of the sums from `matrix`, and to it; rows of n + 1.
    void readSums(const double* matrix, int n) const {
        for (int i = 0; i < roundUp(n, kPanel); ++i)
            for (int j = i - i % kRows; j < length; ++j)
                sums[i * length + j] = i < n && j >= i && j < columns ? matrix[i * (n + 1LL) + j] : 0.0;
    }
    void writeSums(double* matrix, int n) const {
        for (int i = 0; i < n; ++i)
            for (int j = i; j < columns; ++j)
                matrix[i * (n + 1LL) + j] = sums[i * length + j];
    }

    // Updates the tile at (i, j) with the products of rows `begin` to `end` of the factors.
    template <Update update>
    void add(int i, int j, const Factors& factors, const double* weights, int begin, int end) const {
        if (i >= j + kLanes)  // the first register is below the diagonal
            addColumns<update, kRows, 1>(i, j + kLanes, factors, weights, begin, end);
        else if (j + kLanes >= columns)  // the second one is past the last column
            addColumns<update, kRows, 1>(i, j, factors, weights, begin, end);
        else
            addColumns<update, kRows, kVectors>(i, j, factors, weights, begin, end);
    }

    // The same for the square of kPanel rows and columns at (i, j), without the rows from `rows` on. With 8
    // lanes a tile of 16 x 8 sums takes 0.7 of the time of one of 8 x 16 (AMD EPYC of the Zen 4 kind).
    template <Update update>
    void addSquare(int i, int j, int rows, const Factors& factors, const double* weights, int begin,
                   int end) const {
        if constexpr (kLanes == 8) {
            for (int column = j; column < smaller(columns, j + kPanel); column += kLanes)
                if (smaller(rows, column + kLanes) > i + kRows)
                    addColumns<update, kPanel, 1>(i, column, factors, weights, begin, end);
                else
                    addColumns<update, kRows, 1>(i, column, factors, weights, begin, end);
        } else {
            for (int row = i; row < smaller(rows, i + kPanel); row += kRows)
                add<update>(row, j, factors, weights, begin, end);
        }
    }

private:
    template <Update update, int rows, int vectors>
    void addColumns(int i, int j, const Factors& factors, const double* weights, int begin, int end) const {
        addTile<update, rows, vectors>(factors.at(begin, j), factors.at(begin, i), factors.rowStep, weights,
                                       end - begin, sums + i * length + j, length);
    }
};

}  // namespace FIELDSCAN_KERNELS
}  // namespace fieldscan

#endif
