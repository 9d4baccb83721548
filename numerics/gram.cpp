// addGram with the room that its kernel needs, and mirror.
#include "numerics/gram.h"

#include <cstddef>

#include "numerics/workspace.h"

namespace fieldscan {

double addGram(const WeightedRows& a, double* gram) {
    const long long size = FIELDSCAN_CHOSEN(gramRoom)(a.n);
    if (size == 0)
        return FIELDSCAN_CHOSEN(addGram)(a, nullptr, gram);
    const Workspace room(size);
    return FIELDSCAN_CHOSEN(addGram)(a, room.data(), gram);
}

void mirror(double* matrix, int n) {
    const std::ptrdiff_t length = n + 1;
    for (int i = 1; i < n; ++i)
        for (int j = 0; j < i; ++j)
            matrix[i * length + j] = matrix[j * length + i];
}

}  // namespace fieldscan
