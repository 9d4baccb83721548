// QuickSortKey: sorts keys and gives their permutation.
#ifndef FIELDSCAN_KEY_SORT_H
#define FIELDSCAN_KEY_SORT_H

#include <fieldscan/export.h>
#include <fieldscan/framework/array.h>

// Sorts `keys` in place, descending if `ascending` is 0, else ascending. order[k] is then the index that
// keys[k] had before. Equal keys keep their order; -0 and +0 are equal, and NaN is larger than every number.
// Takes at most n log n steps for any keys, little stack, and 32 bytes per key of other memory. If memory
// runs out, `keys` is unchanged and `order` is empty.
//
// Radix sort from the least significant digit on; Knuth, TAOCP 3, 5.2.5.
FIELDSCAN_API void QuickSortKey(CArray<double, double>& keys, CArray<int, int>& order, int ascending);

#endif
