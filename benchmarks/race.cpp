// Times contenders round by round and prints the medians and quantiles of their ratios.
#include "benchmarks/race.h"

#include <time.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <iterator>

namespace {

// Seconds that the processor has worked for this thread; time in which other programs run does not count.
// No contender waits for a medium or starts a thread.
double processorTime() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

// Seconds of one run, the mean of `runs`.
double timeOf(const Contender& contender, int runs) {
    if (!contender.prepare) {
        const double start = processorTime();
        for (int i = 0; i < runs; ++i)
            contender.run();
        return (processorTime() - start) / runs;
    }
    double sum = 0.0;
    for (int i = 0; i < runs; ++i) {
        contender.prepare();
        const double start = processorTime();
        contender.run();
        sum += processorTime() - start;
    }
    return sum / runs;
}

// How many runs take about `slice` seconds. The first run, with cold caches, does not count.
int runsFor(const Contender& contender, double slice) {
    timeOf(contender, 1);
    int runs = 1;
    for (double time = timeOf(contender, 1); time * runs < slice; time = timeOf(contender, runs))
        runs = static_cast<int>(std::min(2.0 * runs, slice / std::max(time, 1e-9))) + 1;
    return runs;
}

double quantile(std::vector<double> values, double part) {
    const std::ptrdiff_t at = std::lround(part * static_cast<double>(values.size() - 1));
    std::nth_element(values.begin(), values.begin() + at, values.end());
    return values[static_cast<std::size_t>(at)];
}

}  // namespace

void Races::race(const std::string& row, const Contender& ours, const std::vector<Peers>& groups) {
    std::vector<const Contender*> contenders{&ours};
    for (const Peers& peers : groups)
        std::transform(peers.begin(), peers.end(), std::back_inserter(contenders),
                       [](const Contender& peer) { return &peer; });
    const std::size_t count = contenders.size();

    // 2 ms: thousands of readings of the clock, and shorter than most busy moments, which then affect all
    // contenders of a round.
    const double slice = m_quick ? 1e-4 : 2e-3, enough = m_quick ? 0.01 : 1.5;
    const std::size_t fewest = m_quick ? 3 : 11, most = m_quick ? 3 : 201;
    std::vector<int> runs;
    std::transform(contenders.begin(), contenders.end(), std::back_inserter(runs),
                   [slice](const Contender* contender) { return runsFor(*contender, slice); });
    std::vector<std::vector<double>> times(count);
    const double start = processorTime();
    for (std::size_t round = 0; round < most && (round < fewest || processorTime() - start < enough); ++round)
        for (std::size_t k = 0; k < count; ++k) {
            const std::size_t at = (round + k) % count;  // the first place of a round goes round
            times[at].push_back(timeOf(*contenders[at], runs[at]));
        }

    std::size_t next = 1;
    for (const Peers& peers : groups) {
        std::size_t fastest = next;
        for (std::size_t end = next + peers.size(); next < end; ++next)
            if (quantile(times[next], 0.5) < quantile(times[fastest], 0.5))
                fastest = next;
        std::vector<double> ratios;
        std::transform(times[0].begin(), times[0].end(), times[fastest].begin(), std::back_inserter(ratios),
                       std::divides<>());
        m_results.push_back({row, contenders[fastest]->name, quantile(ratios, 0.5), quantile(ratios, 0.05),
                             quantile(ratios, 0.95)});
    }
    std::fprintf(stderr, "%s\n", row.c_str());
}

void Races::print() const {
    std::puts("| job | peer | ours / peer | from 5 % | to 95 % |\n|---|---|---|---|---|");
    for (const Result& r : m_results)
        std::printf("| %s | %s | %.3f | %.3f | %.3f |\n", r.row.c_str(), r.peer.c_str(), r.median, r.low,
                    r.high);
}

void require(bool agree, const std::string& what) {
    if (agree)
        return;
    std::fprintf(stderr, "the contenders disagree: %s\n", what.c_str());
    std::exit(1);
}

bool agree(const std::vector<double>& a, const std::vector<double>& b, double tolerance) {
    double size = 0.0, difference = a.size() == b.size() ? 0.0 : HUGE_VAL;
    for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i) {
        size = std::max(size, std::abs(a[i]));
        difference = std::max(difference, std::abs(a[i] - b[i]));
    }
    return difference <= tolerance * size;
}
