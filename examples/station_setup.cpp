// Computes the station from readings of four known points: the strings of the instrument become directions
// and distances, and a resection by least squares (CLeastSq) gives coordinates with standard deviations.
//
// Prints:
//   T11  direction 165.52983  zenith angle 86.78178  horizontal 180.6347 m
//   T12  direction 225.30344  zenith angle 89.14292  horizontal 183.6554 m
//   T14  direction 302.81328  zenith angle 91.37683  horizontal 196.1414 m
//   T17  direction  37.52778  zenith angle 88.33383  horizontal 195.9861 m
//   north        5534218.4365 +- 0.0007 m
//   east          461873.1526 +- 0.0007 m
//   orientation      211.43846 +- 0.00024 degrees
//   sigma0 0.57 from 8 equations in 4 rounds
#include <fieldscan/fieldscan.h>

#include <cmath>
#include <cstdio>

namespace {

constexpr double kPi = 3.141592653589793;
constexpr double kSecond = kPi / 648000.0;  // radians

// A known point, and its readings: direction and zenith angle DDDMMSSt, slope distance +IIIIIFFFF in metres.
struct Sight {
    const char* name;
    double north, east;
    const char *direction, *zenith, *distance;
};
constexpr Sight kSights[] = {{"T11", 5534391.207, 461925.870, "16531474", "08646544", "+001809200"},
                             {"T12", 5534260.554, 462051.913, "22518124", "08908345", "+001836760"},
                             {"T14", 5534041.772, 461958.361, "30248478", "09122366", "+001961980"},
                             {"T17", 5534148.093, 461690.225, "03731400", "08820018", "+001960690"}};
constexpr int kCount = sizeof kSights / sizeof kSights[0];

double radians(const char* angle) { return static_cast<double>(TSstrToLAngl(angle)) * 0.1 * kSecond; }

double horizontalDistance(const Sight& sight) {
    return static_cast<double>(TSstrToLDist(sight.distance)) * 1e-4 * std::sin(radians(sight.zenith));
}

struct Station {
    double north, east;
    double orientation;  // azimuth of the zero direction, radians
};

// One step of Gauss and Newton: equations of a direction and a distance for each sight, linearized at the
// approximate station; their unknowns are its corrections. False when they cannot be solved.
bool improve(Station& station, CLeastSq& adjustment) {
    constexpr double kDirectionSigma = 3.0 * kSecond, kDistanceSigma = 0.002;  // radians, metres
    const auto add = [&](double north, double east, double orientation, double observation, double sigma) {
        const double row[] = {north, east, orientation, observation};
        for (int column = 0; column < 4; ++column)
            adjustment.SetObeq(column, row[column]);
        adjustment.SetWeight(1.0 / (sigma * sigma));
    };
    adjustment.Create(2 * kCount, 3);
    for (const Sight& sight : kSights) {
        const double dNorth = sight.north - station.north, dEast = sight.east - station.east;
        const double length = std::hypot(dNorth, dEast), azimuth = std::atan2(dEast, dNorth);
        const double c = std::cos(azimuth), s = std::sin(azimuth);
        double misclosure = radians(sight.direction) + station.orientation - azimuth;
        CWPK::NormalizeAngle(misclosure);  // into -pi .. pi
        add(s / length, -c / length, -1.0, misclosure, kDirectionSigma);
        add(-c, -s, 0.0, horizontalDistance(sight) - length, kDistanceSigma);
    }
    if (adjustment.Solve() != 1)
        return false;
    station.north += adjustment.GetBcor(0);
    station.east += adjustment.GetBcor(1);
    station.orientation += adjustment.GetBcor(2);
    return true;
}

}  // namespace

int main() {
    for (const Sight& sight : kSights)
        std::printf("%s  direction %9.5f  zenith angle %.5f  horizontal %.4f m\n", sight.name,
                    radians(sight.direction) * 180.0 / kPi, radians(sight.zenith) * 180.0 / kPi,
                    horizontalDistance(sight));

    // Approximate: read from the map to 20 m, oriented by the first sight.
    Station station = {5534200.0, 461880.0, 0.0};
    station.orientation = std::atan2(kSights[0].east - station.east, kSights[0].north - station.north) -
                          radians(kSights[0].direction);
    CLeastSq adjustment;
    int rounds = 0;
    do {
        if (++rounds > 10 || !improve(station, adjustment))
            return 1;
    } while (std::hypot(adjustment.GetBcor(0), adjustment.GetBcor(1)) > 1e-5);
    const double sigma0 = std::sqrt(adjustment.CalSigma2());  // 1 if the readings are as precise as assumed
    const auto sigma = [&](int unknown) { return sigma0 * std::sqrt(adjustment.GetCovar(unknown, unknown)); };
    const double orientation = std::fmod(station.orientation + 2.0 * kPi, 2.0 * kPi) * 180.0 / kPi;
    std::printf("north        %.4f +- %.4f m\n", station.north, sigma(0));
    std::printf("east          %.4f +- %.4f m\n", station.east, sigma(1));
    std::printf("orientation      %.5f +- %.5f degrees\n", orientation, sigma(2) * 180.0 / kPi);
    std::printf("sigma0 %.2f from %d equations in %d rounds\n", sigma0, adjustment.GetObeqSize(), rounds);
}
