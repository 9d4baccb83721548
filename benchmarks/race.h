// Races of the library against other libraries and plain code: ratios of processor times.
//
// Noise on a machine is mostly slow: a busy second, a clock that changes. So all contenders of a row run in
// turn, a few milliseconds each, round after round, and the ratio is taken of the times within a round.
#ifndef FIELDSCAN_BENCHMARKS_RACE_H
#define FIELDSCAN_BENCHMARKS_RACE_H

#include <functional>
#include <string>
#include <vector>

#include "numerics/instruction_set.h"

// One way to do a job. `run` does the whole job once, with the same result each time.
struct Contender {
    std::string name;
    std::function<void()> run;
    std::function<void()> prepare = {};  // before each run, not timed
};

// Peers that do a job in a similar way; the fastest of them is the one that a row names.
using Peers = std::vector<Contender>;

class Races {
public:
    // quick: takes seconds and only checks that all contenders run and agree; its ratios mean little.
    Races(bool quick, const std::string& only) : m_quick(quick), m_only(only) {}

    bool quick() const { return m_quick; }
    int scaled(int count) const { return m_quick ? count / 50 : count; }
    bool wanted(const std::string& row) const { return row.find(m_only) != std::string::npos; }

    // A row for each group of peers.
    void race(const std::string& row, const Contender& ours, const std::vector<Peers>& groups);

    // All rows as a table in Markdown: our time / that of the peer.
    void print() const;

private:
    struct Result {
        std::string row, peer;
        double median, low, high;  // low, high: the quantiles 5 % and 95 % of the rounds
    };
    bool m_quick;
    std::string m_only;  // only rows whose names contain this
    std::vector<Result> m_results;
};

// Runs `body` with the library limited to `set`; does nothing where the machine lacks that set.
template <class Body>
void onInstructionSet(fieldscan::InstructionSet set, Body body) {
    const fieldscan::InstructionSet widest = fieldscan::instructionSet();
    if (!fieldscan::limitInstructionSet(set))
        return;
    body();
    fieldscan::limitInstructionSet(widest);
}

// Ends the program unless `agree`: a race between different answers means nothing.
void require(bool agree, const std::string& what);

// |a - b| <= tolerance max |a|, element by element.
bool agree(const std::vector<double>& a, const std::vector<double>& b, double tolerance);

// A path in a folder in memory, so that no medium is measured; removed at the end.
std::string scratchFile(const char* name);

void raceAdjustment(Races& races);
void raceFiles(Races& races);
void racePolygons(Races& races);
void raceOutlineLists(Races& races);
void raceDistortion(Races& races);
void raceSort(Races& races);
void raceNames(Races& races);
void raceGrowth(Races& races);

#endif
