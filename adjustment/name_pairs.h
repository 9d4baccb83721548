// Pairs of points of the same name.
#ifndef FIELDSCAN_ADJUSTMENT_NAME_PAIRS_H
#define FIELDSCAN_ADJUSTMENT_NAME_PAIRS_H

#include <fieldscan/framework/array.h>
#include <fieldscan/points.h>

namespace fieldscan {

using PointArray = CArray<CXYZ, CXYZ&>;

// `target` becomes the points of `first`, in order, whose name a point of `second` has; `source` becomes the
// first such point of `second` for each. Returns the number of pairs. The time is linear in the number of
// points. The outputs may be the inputs. When memory runs out (std::bad_alloc) they are unchanged.
int pairByName(const PointArray& first, const PointArray& second, PointArray& target, PointArray& source);

}  // namespace fieldscan

#endif
