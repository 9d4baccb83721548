// Refinement in double-double, and when to stop it. x: unknowns, c: correction, q_ii = (N^-1)_ii.
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
constexpr double kSettled = 0x1p-57;   // change of an unknown, relative to it
constexpr double kCertain = 1e-13;     // likewise, or relative to its standard deviation
constexpr double kRounding = 0x1p-80;  // change of A x relative to its scale; smaller steps may be rounding
constexpr double kIllConditioned = 1e20;    // VIF from which a correction is no measure of the error
constexpr double kUncertain = 64.0;         // an unknown of so many times its scatter may be 0
constexpr double kFarBelowNoise = 0x1p-40;  // relative to what the noise could make of an unknown

}  // namespace

// The size of a step is the change of A x: |A c| = sqrt(c^T N c) = sqrt(c^T sums). It shrinks by about the
// condition of A times eps from step to step, and bounds every unknown (Cauchy-Schwarz):
//
//   |c_i| <= |A c| sqrt(q_ii)
//
// When the size no longer shrinks, only rounding is left. Then each unknown is looked at by itself:
// corrections that do not halve are its scatter, which counts from then on, and the unknown is certain when
// correction and scatter are small enough.
bool refineIteratively(const Refinement& r, double* solution) {
    constexpr int kMostSteps = 30;
    const std::size_t n = static_cast<std::size_t>(r.n), diagonal = n + 2;
    std::vector<double> room(6 * (n + 8));
    double *const high = room.data(), *const low = high + n, *const sums = low + n;
    double *const correction = sums + n + 8, *const before = correction + n, *const scatter = before + n;
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
            scale = std::max(scale, std::fabs(x.hi) * std::sqrt(r.normal[i * diagonal]));
        }
        if (!std::isfinite(change) || !std::isfinite(scale))
            return false;
        std::copy(high, high + n, solution);

        const double noise = r.noise * scale;
        // The next correction and the noise, as changes of A x, over what may remain of them in an unknown.
        const double bound = std::max(change * std::max(r.rate, change / last) / kSettled, noise / kEpsilon);
        bool converged = true, certain = true;
        for (std::size_t i = 0; i < n; ++i)
            converged = converged && bound * std::sqrt(r.inverse[i * diagonal]) <= std::fabs(high[i]);
        if (converged)
            return true;
        const bool rounding = change <= noise || (change <= kRounding * scale && change > 0.5 * last);
        if (rounding && !r.final)
            return false;
        for (std::size_t i = 0; i < n; ++i) {
            const double root = std::sqrt(r.inverse[i * diagonal]);
            const double x = std::fabs(high[i]), c = std::fabs(correction[i]);
            const bool illConditioned = root * root * r.normal[i * diagonal] > kIllConditioned;
            if (rounding && (illConditioned || c > 0.5 * before[i]))
                scatter[i] = std::max({scatter[i], c, illConditioned ? 0.1 * noise * root : 0.0});
            before[i] = c;
            if (x <= noise * root * (x <= kUncertain * scatter[i] ? 1.0 : kFarBelowNoise))
                solution[i] = 0.0;
            else if (!(std::max(c, scatter[i]) <= kCertain * std::max(x, std::sqrt(variance) * root)))
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
