// Chi-square by the series of the incomplete gamma function, its quantiles by bisection.
#include <fieldscan/precision.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr double kEpsilon = std::numeric_limits<double>::epsilon();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// log Gamma(z), z > 0: Stirling's series (DLMF 5.11.1) from z = 16 on, where its fifth term is below 2e-14;
// below 16 by Gamma(z) = Gamma(z + 1) / z. Not std::lgamma, which writes a global variable on POSIX systems.
double logGamma(double z) {
    constexpr double kHalfLogTwoPi = 0.91893853320467274178;
    double product = 1.0;
    for (; z < 16.0; ++z)
        product *= z;
    const double w = 1.0 / (z * z);
    const double series = (1.0 / 12 - w * (1.0 / 360 - w * (1.0 / 1260 - w / 1680))) / z;
    return (z - 0.5) * std::log(z) - z + kHalfLogTwoPi + series - std::log(product);
}

}  // namespace

// The incomplete gamma function P(a, y), a = f / 2, y = x / 2 (DLMF 8.7.1):
//
//   P = y^a e^-y / Gamma(a + 1) (1 + y / (a + 1) + y^2 / ((a + 1) (a + 2)) + ...)
//
// For y > a, 1 - P <= exp(-(y - a - a log(y / a))) (Chernoff), and e^-40 is less than the last bit of 1.
// Below that limit the series takes a few times sqrt(a) terms.
double CPrecision::ChiSquare(double x, int f) {
    if (f < 1 || std::isnan(x))
        return kNaN;
    if (x <= 0.0)
        return 0.0;
    const double a = 0.5 * f, y = 0.5 * x;
    if (y > a && !(y - a - a * std::log(y / a) <= 40.0))
        return 1.0;
    double term = 1.0, sum = 1.0;
    for (double k = a + 1.0; term > kEpsilon * sum; ++k)
        sum += term *= y / k;
    return std::min(1.0, sum * std::exp(a * std::log(y) - y - logGamma(a + 1.0)));
}

// Bisection down to neighbouring doubles.
double CPrecision::ChiSquareQuantile(double probability, int f) {
    if (f < 1 || !(probability > 0.0 && probability < 1.0))
        return kNaN;
    double low = 0.0, high = f;
    while (ChiSquare(high, f) < probability)
        high *= 2.0;
    for (;;) {
        const double middle = low + 0.5 * (high - low);
        if (middle <= low || middle >= high)
            return high;
        (ChiSquare(middle, f) < probability ? low : high) = middle;
    }
}
