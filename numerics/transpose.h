// For kernels: transposes blocks of rows, so that a register holds one column of kLanes rows. Squares of
// kLanes x kLanes are transposed in registers, by exchanging blocks of 1, 2, 4 lanes.
#ifndef FIELDSCAN_NUMERICS_TRANSPOSE_H
#define FIELDSCAN_NUMERICS_TRANSPOSE_H

#include "numerics/lanes.h"

namespace fieldscan {
namespace FIELDSCAN_KERNELS {

template <int step>
static inline void exchangeAll(Lanes* tile) {
    for (int k = 0; k < kLanes; ++k)
        if (!(k & step))
            exchange<step>(tile[k], tile[k + step]);
    if constexpr (2 * step < kLanes)
        exchangeAll<2 * step>(tile);
}

static inline void transposeSquare(const double* from, long long length, double* to, long long stride) {
    Lanes tile[kLanes];
    for (int k = 0; k < kLanes; ++k)
        tile[k] = load(from + k * length);
    exchangeAll<1>(tile);
    for (int c = 0; c < kLanes; ++c)
        store(to + c * stride, tile[c]);
}

// transposed[i * stride + k] = row k, column i for k < count, and 0 from there up to `width`, a multiple of
// kLanes. Up to kLanes - 1 more columns are written. `readable` elements can be read from `rows` on.
static inline void transpose(const double* rows, int count, int columns, long long length, long long readable,
                             int width, int stride, double* transposed) {
    for (int first = 0; first < width; first += kLanes, rows += kLanes * length)
        for (long long i = 0; i < columns; i += kLanes) {
            double* const to = transposed + i * stride + first;
            if ((first + kLanes - 1) * length + i + kLanes <= readable) {
                transposeSquare(rows + i, length, to, stride);
            } else {
                double square[kLanes * kLanes] = {};
                for (int k = 0; first + k < count && k < kLanes; ++k)
                    for (int c = 0; c < kLanes && i + c < columns; ++c)
                        square[k * kLanes + c] = rows[k * length + i + c];
                transposeSquare(square, kLanes, to, stride);
            }
        }
}

}  // namespace FIELDSCAN_KERNELS
}  // namespace fieldscan

#endif
