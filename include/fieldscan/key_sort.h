// QuickSortKey: sorting of keys with their permutation.
#ifndef FIELDSCAN_KEY_SORT_H
#define FIELDSCAN_KEY_SORT_H

#include <fieldscan/export.h>
#include <fieldscan/framework/array.h>

// Sorts `keys` in place, ascending (1) or descending (0); order[k] is then the index that keys[k] had before.
// Equal keys, -0 and +0 among them, keep the order that they had; NaN counts as larger than every number.
// Takes n log n steps at most, whatever the keys, little stack, and 32 bytes a key besides. When memory runs
// out, `keys` is as it was and `order` is empty.
FIELDSCAN_API void QuickSortKey(CArray<double, double>& keys, CArray<int, int>& order, int ascending);

#endif
