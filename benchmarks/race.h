// Races of the library against what would be used in its place.
//
// Noise on a machine is mostly slow: a busy second, a clock that changes. So all contenders of a row run in
// turn, a few milliseconds each, round after round, and what is kept is the ratio of times within a round.
#ifndef FIELDSCAN_BENCHMARKS_RACE_H
#define FIELDSCAN_BENCHMARKS_RACE_H

#include <functional>
#include <string>
#include <vector>

#include "numerics/instruction_set.h"

// `run` does the whole job once, again with the same result each time.
struct Contender {
    std::string name;
    std::function<void()> run;
    std::function<void()> prepare = {};  // before each run, not timed
};

// Our time is to be at most `most` times that of the fastest of the peers. kNone: no bar, only told.
struct Bar {
    double most;
    std::vector<Contender> peers;
    static constexpr double kNone = 0.0;
};

class Races {
public:
    // quick: shows in seconds that everything runs and agrees; its ratios mean little.
    Races(bool quick, const std::string& only) : m_quick(quick), m_only(only) {}

    bool quick() const { return m_quick; }
    int scaled(int count) const { return m_quick ? count / 50 : count; }
    bool wanted(const std::string& row) const { return row.find(m_only) != std::string::npos; }

    void race(const std::string& row, const Contender& ours, const std::vector<Bar>& bars);

    // All rows as a table in Markdown, ours / peer.
    void print() const;

private:
    struct Result {
        std::string row, peer;
        double median, low, high;  // the quantiles 5 % and 95 % of the rounds
        double most;
    };
    bool m_quick;
    std::string m_only;  // part of the names of the rows to be run
    std::vector<Result> m_results;
};

// Runs `body` with the library kept to `set`; not at all where the machine lacks it.
template <class Body>
void onInstructionSet(fieldscan::InstructionSet set, Body body) {
    const fieldscan::InstructionSet widest = fieldscan::instructionSet();
    if (!fieldscan::limitInstructionSet(set))
        return;
    body();
    fieldscan::limitInstructionSet(widest);
}

// Ends the program: a race between different answers means nothing.
void require(bool agree, const std::string& what);

// |a - b| <= tolerance max |a|, element by element.
bool agree(const std::vector<double>& a, const std::vector<double>& b, double tolerance);

// A path in a folder in memory, so that no medium is measured; removed at the end.
std::string scratchFile(const char* name);

void raceAdjustment(Races& races);
void raceFiles(Races& races);
void racePolygons(Races& races);
void raceDistortion(Races& races);
void raceSort(Races& races);
void raceNames(Races& races);

#endif
