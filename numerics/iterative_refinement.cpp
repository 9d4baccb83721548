#include "numerics/iterative_refinement.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <numeric>
#include <vector>

#include "numerics/double_double.h"

namespace fieldscan {

namespace {

constexpr double kEpsilon = std::numeric_limits<double>::epsilon();
constexpr double kUnseen = 0x1p-57;    // change of an unknown, relative
constexpr double kSettled = 1e-13;     // likewise, or of its standard deviation
constexpr double kRounding = 0x1p-80;  // change of A x, of its scale: where steps may no longer shrink
constexpr double kHopeless = 1e20;     // VIF from which corrections say too little about their errors
constexpr double kUncertain = 64.0;    // scatters
constexpr double kNothing = 0x1p-40;   // of what the noise could make of an unknown

}  // namespace

// Steps are measured by |A correction| = sqrt(correction^T N correction), the change of A x: as a rule each
// is smaller than the one before by the condition of A times a rounding step. Single unknowns need not
// shrink, and a step says little about them while it is dominated by what is solved almost exactly. So, once
// only rounding is left, each unknown must settle by itself: its corrections have to shrink; those that do
// not are the scatter that the rounding of the residuals makes, and it counts from then on.
bool refineIteratively(const Refinement& r, double* solution) {
    constexpr int kMostSteps = 30;
    const std::size_t n = static_cast<std::size_t>(r.n), next = n + 2;
    std::vector<double> room(6 * (n + 8));
    double *const high = room.data(), *const low = high + n, *const sums = low + n;
    double *const correction = sums + n + 8, *const moved = correction + n, *const scattered = moved + n;
    std::copy(solution, solution + n, high);
    double change = std::numeric_limits<double>::infinity();
    for (int step = 0; step < kMostSteps; ++step) {
        const double variance = r.residual(high, low, sums);
        r.solve(sums, correction);
        const double last = change;
        change = std::sqrt(std::fabs(std::inner_product(correction, correction + n, sums, 0.0)));
        double scale = r.scale;
        for (std::size_t i = 0; i < n; ++i) {
            const auto x = DoubleDouble<double>{high[i], low[i]} + DoubleDouble<double>{correction[i], 0.0};
            high[i] = x.hi;
            low[i] = x.lo;
            scale = std::max(scale, std::fabs(x.hi) * std::sqrt(r.normal[i * next]));
        }
        if (!std::isfinite(change) || !std::isfinite(scale))
            return false;
        std::copy(high, high + n, solution);

        const double noise = r.noise * scale;
        const double coming = std::max(change * std::max(r.rate, change / last) / kUnseen, noise / kEpsilon);
        bool unseen = true, certain = true;
        for (std::size_t i = 0; i < n; ++i)
            unseen = unseen && coming * std::sqrt(r.inverse[i * next]) <= std::fabs(high[i]);
        if (unseen)
            return true;
        const bool rounding = change <= noise || (change <= kRounding * scale && change > 0.5 * last);
        if (rounding && !r.final)
            return false;
        for (std::size_t i = 0; i < n; ++i) {
            const double part = std::sqrt(r.inverse[i * next]), x = std::fabs(high[i]), before = moved[i];
            moved[i] = std::fabs(correction[i]);
            const bool hopeless = part * part * r.normal[i * next] > kHopeless;
            if (rounding && (hopeless || moved[i] > 0.5 * before))
                scattered[i] = std::max({scattered[i], moved[i], hopeless ? 0.1 * noise * part : 0.0});
            if (x <= noise * part * (x <= kUncertain * scattered[i] ? 1.0 : kNothing))
                solution[i] = 0.0;
            else if (!(std::max(moved[i], scattered[i]) <=
                       kSettled * std::max(x, std::sqrt(variance) * part)))
                certain = false;
        }
        if (rounding && certain)
            return true;
    }
    return false;
}

double varianceInflation(const double* normal, const double* inverse, int n) {
    double largest = 1.0;
    for (int i = 0; i < n; ++i) {
        const double factor = normal[i * (n + 2LL)] * inverse[i * (n + 2LL)];
        largest = std::isnan(factor) ? std::numeric_limits<double>::infinity() : std::max(largest, factor);
    }
    return largest;
}

}  // namespace fieldscan
