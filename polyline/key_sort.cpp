#include <fieldscan/key_sort.h>

#include <algorithm>
#include <cmath>
#include <exception>
#include <vector>

namespace {

struct Key {
    double value;
    int index;
};

// Numbers below NaN, which `<` alone would not order.
bool less(double a, double b) { return a < b || (std::isnan(b) && !std::isnan(a)); }

// The index decides between equal keys, so that the result is one and the same on every platform.
bool ascendingOrder(const Key& a, const Key& b) {
    return less(a.value, b.value) || (!less(b.value, a.value) && a.index < b.index);
}

bool descendingOrder(const Key& a, const Key& b) {
    return less(b.value, a.value) || (!less(a.value, b.value) && a.index < b.index);
}

}  // namespace

void QuickSortKey(CArray<double, double>& keys, CArray<int, int>& order, int ascending) {
    const int n = keys.GetSize();
    std::vector<Key> sorted;
    try {
        order.SetSize(n);
        sorted.resize(static_cast<std::size_t>(n));
    } catch (const std::exception&) {  // no memory, or no address space
        order.SetSize(0);
        return;
    }
    int next = 0;
    for (Key& key : sorted) {
        key = {keys[next], next};
        ++next;
    }
    std::sort(sorted.begin(), sorted.end(), ascending ? ascendingOrder : descendingOrder);
    next = 0;
    for (const Key& key : sorted) {
        keys[next] = key.value;
        order[next] = key.index;
        ++next;
    }
}
