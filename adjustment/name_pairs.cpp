// Pairs by name: by comparing for few points, by an open hash table of names for more.
#include "adjustment/name_pairs.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace fieldscan {

namespace {

constexpr int kNone = -1;

// Compares from the end, where numbered names differ: pairing 16 takes 0.8 of the time.
bool haveEqualText(const CString& a, const CString& b) {
    int i = a.GetLength();
    if (i != b.GetLength())
        return false;
    const unsigned short* unitsOfA = a.GetString();
    const unsigned short* unitsOfB = b.GetString();
    while (i > 0 && unitsOfA[i - 1] == unitsOfB[i - 1])
        --i;
    return i == 0;
}

int indexByComparing(const PointArray& points, const CString& name) {
    for (int i = 0; i < points.GetSize(); ++i)
        if (haveEqualText(points[i].name, name))
            return i;
    return kNone;
}

std::uint32_t hashOf(const CString& name) {  // FNV-1a (Fowler, Noll and Vo), by UTF-16 units
    std::uint32_t hash = 2166136261u;
    for (int i = 0; i < name.GetLength(); ++i)
        hash = (hash ^ name.GetString()[i]) * 16777619u;
    return hash;
}

// Index of the first point of each name: hash table with linear probing, at most half full.
class NameTable {
public:
    explicit NameTable(const PointArray& points) : m_points(points) {
        std::size_t size = 4;
        while (size < 2 * static_cast<std::size_t>(points.GetSize()))
            size *= 2;
        m_slots.assign(size, Slot{0, kNone});
        for (int i = 0; i < points.GetSize(); ++i) {
            const std::uint32_t hash = hashOf(points[i].name);
            Slot& slot = slotFor(points[i].name, hash);
            if (slot.index == kNone)
                slot = {hash, i};
        }
    }

    int indexOf(const CString& name) { return slotFor(name, hashOf(name)).index; }

private:
    struct Slot {
        std::uint32_t hash;
        int index;
    };

    // The slot of the name; if it has none, the free slot where it belongs.
    Slot& slotFor(const CString& name, std::uint32_t hash) {
        const std::size_t mask = m_slots.size() - 1;
        std::size_t at = hash & mask;
        while (m_slots[at].index != kNone &&
               !(m_slots[at].hash == hash && haveEqualText(m_points[m_slots[at].index].name, name)))
            at = (at + 1) & mask;
        return m_slots[at];
    }

    const PointArray& m_points;
    std::vector<Slot> m_slots;
};

}  // namespace

int pairByName(const PointArray& first, const PointArray& second, PointArray& target, PointArray& source) {
    constexpr int kFew = 16;  // comparing is faster than making a table
    std::optional<NameTable> table;
    if (second.GetSize() > kFew)
        table.emplace(second);
    PointArray targets, sources;
    targets.SetSize(first.GetSize());
    sources.SetSize(first.GetSize());
    int pairs = 0;
    for (int i = 0; i < first.GetSize(); ++i) {
        const CString& name = first[i].name;
        const int partner = table ? table->indexOf(name) : indexByComparing(second, name);
        if (partner == kNone)
            continue;
        targets[pairs] = first[i];
        sources[pairs++] = second[partner];
    }
    targets.SetSize(pairs);
    sources.SetSize(pairs);
    target.Swap(targets);
    source.Swap(sources);
    return pairs;
}

}  // namespace fieldscan
