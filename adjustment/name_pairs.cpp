#include "adjustment/name_pairs.h"

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace fieldscan {

namespace {

std::uint32_t hashOf(const CString& name) {  // FNV-1a
    std::uint32_t hash = 2166136261u;
    for (int i = 0; i < name.GetLength(); ++i)
        hash = (hash ^ name.GetString()[i]) * 16777619u;
    return hash;
}

// Where each name occurs first: an open table, at most half full.
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

    int find(const CString& name) { return slotFor(name, hashOf(name)).index; }

    enum { kNone = -1 };

private:
    struct Slot {
        std::uint32_t hash;
        int index;
    };

    // The slot of the name, or the free one where it belongs.
    Slot& slotFor(const CString& name, std::uint32_t hash) {
        const std::size_t mask = m_slots.size() - 1;
        std::size_t at = hash & mask;
        while (m_slots[at].index != kNone &&
               !(m_slots[at].hash == hash && m_points[m_slots[at].index].name == name))
            at = (at + 1) & mask;
        return m_slots[at];
    }

    const PointArray& m_points;
    std::vector<Slot> m_slots;
};

}  // namespace

int pairByName(const PointArray& first, const PointArray& second, PointArray& target, PointArray& source) {
    NameTable names(second);
    std::vector<std::pair<int, int>> pairs;
    pairs.reserve(static_cast<std::size_t>(first.GetSize()));
    for (int i = 0; i < first.GetSize(); ++i) {
        const int partner = names.find(first[i].name);
        if (partner != NameTable::kNone)
            pairs.emplace_back(i, partner);
    }
    const int count = static_cast<int>(pairs.size());
    PointArray targets, sources;
    targets.SetSize(count);
    sources.SetSize(count);
    for (int i = 0; i < count; ++i) {
        targets[i] = first[pairs[static_cast<std::size_t>(i)].first];
        sources[i] = second[pairs[static_cast<std::size_t>(i)].second];
    }
    target.Swap(targets);
    source.Swap(sources);
    return count;
}

}  // namespace fieldscan
