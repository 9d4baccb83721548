// Pairs of points of the same name.
#ifndef FIELDSCAN_ADJUSTMENT_NAME_PAIRS_H
#define FIELDSCAN_ADJUSTMENT_NAME_PAIRS_H

#include <fieldscan/framework/array.h>
#include <fieldscan/points.h>

namespace fieldscan {

using PointArray = CArray<CXYZ, CXYZ&>;

// `target` becomes the points of `first` whose name a point of `second` has, in the order of `first`;
// `source` the first such point of `second` for each. Returns how many there are. Linear in the number of
// points. The outputs may be the inputs; when memory runs out they are as before.
int pairByName(const PointArray& first, const PointArray& second, PointArray& target, PointArray& source);

}  // namespace fieldscan

#endif
