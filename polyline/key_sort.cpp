#include <fieldscan/key_sort.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <exception>
#include <memory>
#include <numeric>
#include <utility>

namespace {

// A key as an integer of the same order, and where it stood.
struct Record {
    std::uint64_t bits;
    int index;
};

constexpr std::uint64_t kSign = std::uint64_t{1} << 63;
constexpr std::uint64_t kZero = kSign;             // -0 too
constexpr std::uint64_t kNan = ~std::uint64_t{0};  // of either sign

// Unsigned integers in the order of the doubles: below zero the magnitude counts downwards. -0 comes before
// +0 here, and NaN according to its sign.
std::uint64_t orderedBits(double value) {
    std::uint64_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    return bits & kSign ? ~bits : bits | kSign;
}

double valueOf(std::uint64_t ordered) {
    const std::uint64_t bits = ordered & kSign ? ordered ^ kSign : ~ordered;
    double value;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

std::uint64_t sortBits(double value) {
    return std::isnan(value) ? kNan : value == 0.0 ? kZero : orderedBits(value);
}

// Sorting by digits from the least significant one on, as many passes as there are digits that differ.
class DigitSort {
public:
    explicit DigitSort(int n) : m_size(n), m_records(new Record[size()]), m_spare(new Record[size()]) {}

    // `flip` turns the order around: all bits or none.
    void sort(double* keys, int* order, std::uint64_t flip) {
        take(keys, flip);
        if (m_size < kFewest)
            std::sort(begin(), end(), [](const Record& a, const Record& b) {
                return a.bits < b.bits || (a.bits == b.bits && a.index < b.index);
            });
        else
            sortByDigits();
        give(keys, order, flip);
    }

private:
    // Of 8 bits: 0.8 of the time with 11 or 13 at a million keys, too many places to write to at once. Below
    // 60 keys, clearing and summing the counts costs more than comparing.
    enum { kDigitBits = 8, kDigits = 64 / kDigitBits, kValues = 1 << kDigitBits, kFewest = 64 };

    std::size_t size() const { return static_cast<std::size_t>(m_size); }
    Record* begin() { return m_records.get(); }
    Record* end() { return m_records.get() + m_size; }

    static unsigned digit(std::uint64_t bits, int place) {
        return static_cast<unsigned>(bits >> (place * kDigitBits)) & (kValues - 1);
    }

    void take(const double* keys, std::uint64_t flip) {
        for (int i = 0; i < m_size; ++i)
            m_records[static_cast<std::size_t>(i)] = {sortBits(keys[i]) ^ flip, i};
    }

    void sortByDigits() {
        std::uint32_t counts[kDigits][kValues] = {};
        for (const Record* record = begin(); record != end(); ++record)
            for (int place = 0; place < kDigits; ++place)
                ++counts[place][digit(record->bits, place)];
        for (int place = 0; place < kDigits; ++place) {
            std::uint32_t* next = counts[place];
            if (next[digit(m_records[0].bits, place)] == size())
                continue;  // all the same, as the low digits of whole numbers
            std::uint32_t sum = 0;
            for (int value = 0; value < kValues; ++value)
                sum += std::exchange(next[value], sum);
            for (const Record* record = begin(); record != end(); ++record)
                m_spare[next[digit(record->bits, place)]++] = *record;
            m_records.swap(m_spare);
        }
    }

    void give(double* keys, int* order, std::uint64_t flip) {
        // The sign of zeros and what NaN carries are with the keys still.
        for (Record* record = begin(); record != end(); ++record) {
            record->bits ^= flip;
            if (record->bits == kZero || record->bits == kNan)
                record->bits = orderedBits(keys[record->index]);
        }
        for (const Record* record = begin(); record != end(); ++record) {
            *keys++ = valueOf(record->bits);
            *order++ = record->index;
        }
    }

    const int m_size;
    std::unique_ptr<Record[]> m_records, m_spare;
};

// Whether a key may come before the next one, equal ones among them.
struct Ascending {
    bool operator()(double a, double b) const { return a <= b || std::isnan(b); }
};
struct Descending {
    bool operator()(double a, double b) const { return Ascending()(b, a); }
};

template <class MayPrecede>
bool isRun(const double* keys, int n, MayPrecede mayPrecede) {
    for (int i = 1; i < n; ++i)
        if (!mayPrecede(keys[i - 1], keys[i]))
            return false;
    return true;
}

// A run the other way round, in which equal keys are to keep their order all the same.
void turnRound(double* keys, int* order, int n) {
    std::reverse(keys, keys + n);
    for (int i = 0; i < n; ++i)
        order[i] = n - 1 - i;
    const auto equal = [](double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); };
    for (int end = 1; end < n; ++end) {
        if (!equal(keys[end - 1], keys[end]))
            continue;
        const int first = end - 1;
        while (end < n && equal(keys[first], keys[end]))
            ++end;
        std::reverse(keys + first, keys + end);
        std::reverse(order + first, order + end);
    }
}

template <class MayPrecede, class MayFollow>
void sortKeys(double* keys, int* order, int n, MayPrecede mayPrecede, MayFollow mayFollow,
              std::uint64_t flip) {
    if (isRun(keys, n, mayPrecede))
        std::iota(order, order + n, 0);
    else if (isRun(keys, n, mayFollow))
        turnRound(keys, order, n);
    else
        DigitSort(n).sort(keys, order, flip);
}

}  // namespace

void QuickSortKey(CArray<double, double>& keys, CArray<int, int>& order, int ascending) {
    const int n = keys.GetSize();
    try {
        order.SetSize(n);
        if (ascending)
            sortKeys(keys.GetData(), order.GetData(), n, Ascending(), Descending(), 0);
        else
            sortKeys(keys.GetData(), order.GetData(), n, Descending(), Ascending(), ~std::uint64_t{0});
    } catch (const std::exception&) {  // no memory, or no address space
        order.SetSize(0);
    }
}
