// Races of CHelmert::SetPoints, which pairs points by name, against a hash table and a linear search.
#include <fieldscan/helmert.h>

#include <algorithm>
#include <optional>
#include <random>
#include <string_view>
#include <unordered_map>

#include "benchmarks/race.h"

namespace {

using PointArray = CArray<CXYZ, CXYZ&>;
using View = std::basic_string_view<char16_t>;

View viewOf(const CString& name) {
    return {reinterpret_cast<const char16_t*>(name.GetString()), static_cast<std::size_t>(name.GetLength())};
}

struct Pairs {
    PointArray target, source;
    // Pairs each point of `first` with the one of `second` that `find` gives for its name, if any.
    template <class Find>
    void make(const PointArray& first, const PointArray& second, Find find) {
        target.SetSize(first.GetSize());
        source.SetSize(first.GetSize());
        int count = 0;
        for (int i = 0; i < first.GetSize(); ++i) {
            const int k = find(first[i].name);
            if (k < 0)
                continue;
            target[count] = first[i];
            source[count++] = second[k];
        }
        target.SetSize(count);
        source.SetSize(count);
    }
};

// The same names in both sets, the second shuffled.
class Job {
public:
    explicit Job(int count) {
        std::mt19937_64 engine(13);
        for (int k = 0; k < count; ++k) {
            const std::string name = "P" + std::to_string(k + 1);
            CXYZ point(CString(name.c_str()), 4470000.0 + k, 5320000.0 - k, 450.0);
            first.Add(point);
            second.InsertAt(k, point);
        }
        std::shuffle(second.GetData(), second.GetData() + count, engine);
    }
    Contender ours() {
        return {"CHelmert", [this] {
                    require(helmert.emplace().SetPoints(first, second) == first.GetSize(), "CHelmert");
                }};
    }
    Contender byTable() {
        return {"std::unordered_map", [this] {
                    std::unordered_map<View, int> table(static_cast<std::size_t>(second.GetSize()));
                    for (int k = 0; k < second.GetSize(); ++k)
                        table.emplace(viewOf(second[k].name), k);
                    pairs.emplace().make(first, second, [&table](const CString& name) {
                        const auto found = table.find(viewOf(name));
                        return found == table.end() ? -1 : found->second;
                    });
                }};
    }
    Contender byComparing() {
        return {"linear search", [this] {
                    pairs.emplace().make(first, second, [this](const CString& name) {
                        for (int k = 0; k < second.GetSize(); ++k)
                            if (viewOf(second[k].name) == viewOf(name))
                                return k;
                        return -1;
                    });
                }};
    }
    void requireAgreement(const Contender& peer) {
        peer.run();
        ours().run();
        require(
            helmert->sourcePoints.GetSize() == first.GetSize() && pairs->source.GetSize() == first.GetSize(),
            "names, " + peer.name);
        for (int i = 0; i < first.GetSize(); ++i)
            require(viewOf(helmert->sourcePoints[i].name) == viewOf(pairs->source[i].name) &&
                        viewOf(helmert->targetPoints[i].name) == viewOf(pairs->target[i].name),
                    "names, " + peer.name);
    }

private:
    PointArray first, second;
    std::optional<CHelmert> helmert;  // made anew each time, as for a job
    std::optional<Pairs> pairs;
};

}  // namespace

void raceNames(Races& races) {
    for (const int count : {8, 16, 30, 1000, 10000, 100000}) {
        const std::string row = "SetPoints, " + std::to_string(count) + " names";
        if (!races.wanted(row) || (races.quick() && count > 1000))
            continue;
        Job job(count);
        const Contender peer = count <= 16 ? job.byComparing() : job.byTable();
        job.requireAgreement(peer);
        races.race(row, job.ours(), {Peers{peer}});
    }
}
