// Races of QuickSortKey against Boost's pdqsort and std::sort. All begin with an array of keys and end with
// the sorted keys and the array of their former places, so the peers' time includes making pairs and taking
// them apart.
#include <fieldscan/key_sort.h>

#include <algorithm>
#include <boost/sort/pdqsort/pdqsort.hpp>
#include <numeric>
#include <random>
#include <utility>

#include "benchmarks/race.h"

namespace {

using Keys = std::vector<double>;
using Pair = std::pair<double, int>;

// The worst keys for a quicksort that splits at the median of the first, middle and last key: in each range
// the first key is the smallest and the middle one the next, so one split removes only two keys. Such a sort
// swaps the median to the end and then to the second place; `items` follows these swaps.
Keys againstMedianRule(int n) {
    std::vector<int> items(static_cast<std::size_t>(n));
    std::iota(items.begin(), items.end(), 0);
    const auto item = [&items](int place) -> int& { return items[static_cast<std::size_t>(place)]; };
    Keys keys(items.size());
    double next = 0.0;
    int low = 0;
    const int high = n - 1;
    for (; high - low >= 3; low += 2) {
        const int middle = (low + high) / 2;
        keys[static_cast<std::size_t>(item(low))] = next++;
        keys[static_cast<std::size_t>(item(middle))] = next++;
        std::swap(item(middle), item(high));
        std::swap(item(low + 1), item(high));
    }
    for (; low < n; ++low)
        keys[static_cast<std::size_t>(item(low))] = next++;
    return keys;
}

class Job {
public:
    explicit Job(Keys keys) : m_keys(std::move(keys)), m_pairs(m_keys.size()) {
        m_ourKeys.SetSize(static_cast<int>(m_keys.size()));
    }
    Contender ours() {
        return {"QuickSortKey", [this] { QuickSortKey(m_ourKeys, m_ourOrder, 1); },
                [this] { std::copy(m_keys.begin(), m_keys.end(), m_ourKeys.GetData()); }};
    }
    template <class Sort>
    Contender peer(const char* name, Sort sort) {
        return {name,
                [this, sort] {
                    for (std::size_t i = 0; i < m_pairs.size(); ++i)
                        m_pairs[i] = {m_sorted[i], static_cast<int>(i)};
                    sort(m_pairs.begin(), m_pairs.end());
                    m_order.resize(m_pairs.size());
                    for (std::size_t i = 0; i < m_pairs.size(); ++i) {
                        m_sorted[i] = m_pairs[i].first;
                        m_order[i] = m_pairs[i].second;
                    }
                },
                [this] { m_sorted = m_keys; }};
    }
    void requireAgreement(const Contender& peer) {
        for (const Contender& contender : {ours(), peer}) {
            contender.prepare();
            contender.run();
        }
        for (std::size_t i = 0; i < m_keys.size(); ++i) {
            const int k = static_cast<int>(i);
            require(
                m_ourKeys[k] == m_sorted[i] && m_keys[static_cast<std::size_t>(m_ourOrder[k])] == m_sorted[i],
                "sort, " + peer.name);
        }
    }

private:
    Keys m_keys, m_sorted;
    std::vector<Pair> m_pairs;
    std::vector<int> m_order;
    CArray<double, double> m_ourKeys;
    CArray<int, int> m_ourOrder;
};

}  // namespace

void raceSort(Races& races) {
    const int n = races.scaled(1000000);
    Keys random(static_cast<std::size_t>(n));
    std::mt19937_64 engine(3);
    std::uniform_real_distribution<double> angle(0.0, 360.0);
    for (double& key : random)
        key = angle(engine);
    Keys sorted = random;
    std::sort(sorted.begin(), sorted.end());
    const Keys reversed(sorted.rbegin(), sorted.rend()), equal(random.size(), 90.0);
    const struct {
        const char* row;
        const Keys& keys;
    } rows[] = {{"QuickSortKey, a million keys, random", random},
                {"QuickSortKey, a million keys, sorted", sorted},
                {"QuickSortKey, a million keys, reversed", reversed},
                {"QuickSortKey, a million keys, equal", equal},
                {"QuickSortKey, a million keys, against the median rule", againstMedianRule(n)}};
    const auto byKey = [](const Pair& a, const Pair& b) { return a.first < b.first; };
    for (const auto& row : rows) {
        if (!races.wanted(row.row))
            continue;
        Job job(row.keys);
        const Peers peers = {
            job.peer("Boost pdqsort",
                     [byKey](auto first, auto last) { boost::sort::pdqsort_branchless(first, last, byKey); }),
            job.peer("std::sort", [byKey](auto first, auto last) { std::sort(first, last, byKey); })};
        for (const Contender& peer : peers)
            job.requireAgreement(peer);
        races.race(row.row, job.ours(), {peers});
    }
}
