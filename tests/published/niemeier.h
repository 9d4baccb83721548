// Niemeier, Ausgleichungsrechnung, 2nd edition 2008, pp. 156-162 and 278-281: directions (1.62") and
// distances (5 mm) from Z108 (0) and Z110 (1), with the published coordinates and standard deviations.
#ifndef FIELDSCAN_TESTS_PUBLISHED_NIEMEIER_H
#define FIELDSCAN_TESTS_PUBLISHED_NIEMEIER_H

#include <fieldscan/least_squares.h>

#include <cmath>

namespace niemeier {

const double kPlaces[][2] = {{27816.1166, 40759.3769}, {27904.0042, 41373.0193}, {26816.143, 40686.792},
                             {28872.552, 41932.838},   {27492.007, 42242.231},   {28835.979, 40350.846}};
const double kDeviations[] = {3.01, 3.13, 2.89, 3.12};  // mm, of x and y of Z108 and Z110

const struct {
    int from, to;
    double observed;  // degrees, then metres
} kSights[] = {{0, 5, 333.57996}, {0, 2, 179.56179}, {0, 4, 97.73946}, {1, 3, 31.87314}, {1, 0, 263.69487},
               {1, 2, 214.08867}, {1, 4, 117.20502}, {0, 5, 1098.643}, {0, 2, 1002.598}, {0, 4, 1517.862},
               {1, 3, 1118.689},  {1, 0, 619.905},   {1, 2, 1286.215}, {1, 4, 961.911}};

// Enters the equations, linearised at the published places. Unknowns: corrections of x and y of Z108 and Z110
// in mm, of the orientations in seconds.
inline void enter(CLeastSq& network) {
    constexpr double kDegree = 57.29577951308232, kOrientations[] = {4.5903, 358.1546};
    for (int k = 0; k < 14; ++k) {
        const auto& sight = kSights[k];
        const bool direction = k < 7;
        const double dx = kPlaces[sight.to][0] - kPlaces[sight.from][0];
        const double dy = kPlaces[sight.to][1] - kPlaces[sight.from][1], s = std::hypot(dx, dy);
        const double alongX = direction ? -3.6 * kDegree * dy / (s * s) : dx / s;
        const double alongY = direction ? 3.6 * kDegree * dx / (s * s) : dy / s;
        const double angle = sight.observed + kOrientations[sight.from] - std::atan2(dy, dx) * kDegree;
        double row[7] = {};
        row[2 * sight.from] = -alongX;
        row[2 * sight.from + 1] = -alongY;
        if (sight.to < 2) {
            row[2 * sight.to] = alongX;
            row[2 * sight.to + 1] = alongY;
        }
        row[4 + sight.from] = direction ? -1.0 : 0.0;
        row[6] = direction ? std::remainder(angle, 360.0) * 3600.0 : (sight.observed - s) * 1000.0;
        for (int column = 0; column < 7; ++column)
            network.SetObeq(column, row[column]);
        network.SetWeight(direction ? 1.0 / (1.62 * 1.62) : 0.04);
    }
}

}  // namespace niemeier

#endif
