// Approximate places: a distance puts the station on a circle about its target, two directions put it on the
// circle through their targets with the inscribed angle between them. The intersections of these circles are
// tried. All coordinates are relative to the centroid of the targets.
#include "resect/resection.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <string>
#include <utility>

#include "common/data_error.h"
#include "common/text.h"

namespace {

constexpr double kTurn = 6.283185307179586;

using Observations = std::vector<Observation>;

double distanceBetween(const Place& a, const Place& b) { return std::hypot(b.x - a.x, b.y - a.y); }
double azimuth(const Place& from, const Place& to) { return std::atan2(to.y - from.y, to.x - from.x); }

bool haveDirection(const Observations& observations) {
    return std::any_of(observations.begin(), observations.end(),
                       [](const Observation& o) { return o.isDirection; });
}

// Observed minus computed.
double misclosure(const Observation& o, const Station& station) {
    if (!o.isDirection)
        return o.value - distanceBetween(station.place, o.target);
    return std::remainder(o.value + station.orientation - azimuth(station.place, o.target), kTurn);
}

void sumSquares(const Observations& observations, Station& station) {
    station.sumOfSquares = 0.0;
    for (const Observation& o : observations)
        station.sumOfSquares += std::pow(misclosure(o, station) / o.sigma, 2);
}

// ---- Approximate places ----

struct Circle {
    Place centre;
    double radius;
};

// The circle on which the targets are seen under the angle between the directions. Almost 0 or half a turn
// gives a circle so large that it replaces the line through the targets.
Circle circleOfAngle(const Observation& a, const Observation& b) {
    constexpr double kSmallestSine = 1e-7;
    const double angle = b.value - a.value;
    double sine = std::sin(angle);
    if (std::fabs(sine) < kSmallestSine)
        sine = std::copysign(kSmallestSine, sine);
    const double dx = b.target.x - a.target.x, dy = b.target.y - a.target.y;
    const double half = 0.5 * std::cos(angle) / sine;
    return {{(a.target.x + b.target.x) / 2.0 - dy * half, (a.target.y + b.target.y) / 2.0 + dx * half},
            std::hypot(dx, dy) / (2.0 * std::fabs(sine))};
}

// Up to six of a kind, spread over the list: 21 circles and 420 intersections.
Observations someOf(const Observations& observations, bool directions) {
    constexpr std::size_t kMost = 6;
    Observations all, some;
    for (const Observation& o : observations)
        if (o.isDirection == directions)
            all.push_back(o);
    const std::size_t count = std::min(all.size(), kMost);
    for (std::size_t i = 0; i < count; ++i)
        some.push_back(all[i * all.size() / count]);
    return some;
}

std::vector<Circle> circlesOf(const Observations& observations) {
    std::vector<Circle> circles;
    for (const Observation& o : someOf(observations, false))
        circles.push_back({o.target, o.value});
    const Observations directions = someOf(observations, true);
    for (std::size_t i = 0; i < directions.size(); ++i)
        for (std::size_t k = i + 1; k < directions.size(); ++k)
            if (distanceBetween(directions[i].target, directions[k].target) > 0.0)
                circles.push_back(circleOfAngle(directions[i], directions[k]));
    return circles;
}

// Both intersections, or twice the place between circles that do not meet; nothing for circles with one
// centre.
std::vector<Place> intersections(const Circle& a, const Circle& b) {
    constexpr double kSameCentre = 1e-9;
    const double base = distanceBetween(a.centre, b.centre);
    if (base <= kSameCentre * (a.radius + b.radius))
        return {};
    const double along = (base + (a.radius + b.radius) / base * (a.radius - b.radius)) / 2.0;
    const double across = std::sqrt(std::max(0.0, (a.radius - along) * (a.radius + along)));
    const double ux = (b.centre.x - a.centre.x) / base, uy = (b.centre.y - a.centre.y) / base;
    const double x = a.centre.x + along * ux, y = a.centre.y + along * uy;
    return {{x - across * uy, y + across * ux}, {x + across * uy, y - across * ux}};
}

// With the orientation that suits the directions there, in the mean.
Station stationAt(const Place& place, const Observations& observations) {
    double sine = 0.0, cosine = 0.0;
    for (const Observation& o : observations)
        if (o.isDirection) {
            const double orientation = azimuth(place, o.target) - o.value;
            sine += std::sin(orientation);
            cosine += std::cos(orientation);
        }
    Station station = {place, std::atan2(sine, cosine), 0.0};
    sumSquares(observations, station);
    return station;
}

double extentOf(const Observations& observations) {
    double extent = 0.0;
    for (const Observation& o : observations)
        extent = std::max({extent, std::hypot(o.target.x, o.target.y), o.isDirection ? 0.0 : o.value});
    return extent;
}

double shortestSight(const Place& place, const Observations& observations) {
    double shortest = distanceBetween(place, observations[0].target);
    for (const Observation& o : observations)
        shortest = std::min(shortest, distanceBetween(place, o.target));
    return shortest;
}

std::vector<Station> approximateStations(const Observations& observations, double extent) {
    std::vector<Station> stations;
    const std::vector<Circle> circles = circlesOf(observations);
    for (std::size_t i = 0; i < circles.size(); ++i)
        for (std::size_t k = i + 1; k < circles.size(); ++k)
            for (const Place& place : intersections(circles[i], circles[k]))
                if (shortestSight(place, observations) > 1e-6 * extent)  // circles also meet in targets
                    stations.push_back(stationAt(place, observations));
    std::sort(stations.begin(), stations.end(),
              [](const Station& a, const Station& b) { return a.sumOfSquares < b.sumOfSquares; });
    return stations;
}

// ---- Adjustment ----

void enterEquations(const Observations& observations, const Station& station, CLeastSq& adjustment) {
    const int count = static_cast<int>(observations.size()), unknowns = unknownsOf(observations);
    const auto enter = [&](double x, double y, double orientation, double observation, double sigma) {
        adjustment.SetObeq(0, x);
        adjustment.SetObeq(1, y);
        if (unknowns == 3)
            adjustment.SetObeq(2, orientation);
        adjustment.SetObeq(unknowns, observation);
        adjustment.SetWeight(1.0 / (sigma * sigma));
    };
    adjustment.Create(std::max(count, unknowns + 1), unknowns);
    for (const Observation& o : observations) {
        const double length = distanceBetween(station.place, o.target);
        const double cosine = (o.target.x - station.place.x) / length;
        const double sine = (o.target.y - station.place.y) / length;
        if (o.isDirection)
            enter(sine / length, -cosine / length, -1.0, misclosure(o, station), o.sigma);
        else
            enter(-cosine, -sine, 0.0, misclosure(o, station), o.sigma);
    }
}

bool adjust(const Observations& observations, double extent, Station& station, CLeastSq& adjustment) {
    constexpr int kMostRounds = 50;
    constexpr double kSmallestStep = 1e-10;
    for (int round = 0; round < kMostRounds; ++round) {
        enterEquations(observations, station, adjustment);
        if (adjustment.Solve() != 1)
            return false;
        station.place.x += adjustment.GetBcor(0);
        station.place.y += adjustment.GetBcor(1);
        if (unknownsOf(observations) == 3)
            station.orientation += adjustment.GetBcor(2);
        if (std::hypot(adjustment.GetBcor(0), adjustment.GetBcor(1)) <= kSmallestStep * extent) {
            sumSquares(observations, station);
            return std::isfinite(station.sumOfSquares);
        }
    }
    return false;
}

// Adjusted from the best approximate places, each place once, the best first.
std::vector<Station> adjustedStations(const Observations& observations, std::vector<Station> approximate,
                                      double extent) {
    constexpr std::size_t kMostTried = 24;
    const double kSamePlace = 1e-6 * extent;
    const auto isIn = [&](const std::vector<Station>& stations, const Station& station) {
        return std::any_of(stations.begin(), stations.end(), [&](const Station& s) {
            return distanceBetween(s.place, station.place) <= kSamePlace;
        });
    };
    std::vector<Station> tried, adjusted;
    for (const Station& start : approximate) {
        if (tried.size() == kMostTried)
            break;
        if (isIn(tried, start))
            continue;
        tried.push_back(start);
        Station station = start;
        CLeastSq adjustment;
        if (adjust(observations, extent, station, adjustment) && !isIn(adjusted, station))
            adjusted.push_back(station);
    }
    std::sort(adjusted.begin(), adjusted.end(),
              [](const Station& a, const Station& b) { return a.sumOfSquares < b.sumOfSquares; });
    return adjusted;
}

// Both fit where the sums differ by less than 3.29^2, the square of the critical value at 0.1 %, in units of
// the variance that the better one has.
bool bothFit(const Station& better, const Station& other, int redundancy) {
    const double variance = redundancy > 0 ? std::max(1.0, better.sumOfSquares / redundancy) : 1.0;
    return other.sumOfSquares - better.sumOfSquares < 3.29 * 3.29 * variance;
}

// Why there is no approximate place: without distances three targets leave only the danger circle.
std::string reasonFor(const Observations& observations) {
    std::set<std::pair<double, double>> targets;
    for (const Observation& o : observations) {
        if (!o.isDirection)
            return "";
        targets.emplace(o.target.x, o.target.y);
    }
    return targets.size() < 3 ? ": directions to three targets at least"
                              : ", found it on the circle through the targets (danger circle)";
}

}  // namespace

int unknownsOf(const Observations& observations) { return haveDirection(observations) ? 3 : 2; }

Station resect(const Observations& given, const std::optional<Place>& nearPlace, CLeastSq& adjustment) {
    const int redundancy = static_cast<int>(given.size()) - unknownsOf(given);
    if (redundancy < 0)
        throw DataError(format("expected at least %d directions and distances, found %d", unknownsOf(given),
                               static_cast<int>(given.size())));
    Place centre;
    for (const Observation& o : given) {
        centre.x += o.target.x / static_cast<double>(given.size());
        centre.y += o.target.y / static_cast<double>(given.size());
    }
    Observations observations = given;
    for (Observation& o : observations) {
        o.target.x -= centre.x;
        o.target.y -= centre.y;
    }
    const double extent = extentOf(observations);
    constexpr double kLargestExtent = 1e9;  // metres
    if (!(extent < kLargestExtent))
        throw DataError(format("expected targets and distances within %g m", kLargestExtent));
    const std::vector<Station> approximate = approximateStations(observations, extent);
    if (approximate.empty())
        throw DataError("expected observations that determine the station" + reasonFor(observations));
    std::vector<Station> stations = adjustedStations(observations, approximate, extent);
    if (stations.empty())
        throw DataError("expected observations that determine the station");
    const Station best = stations[0];
    stations.erase(std::remove_if(stations.begin(), stations.end(),
                                  [&](const Station& s) { return !bothFit(best, s, redundancy); }),
                   stations.end());
    if (nearPlace) {
        const Place wanted = {nearPlace->x - centre.x, nearPlace->y - centre.y};
        std::sort(stations.begin(), stations.end(), [&](const Station& a, const Station& b) {
            return distanceBetween(a.place, wanted) < distanceBetween(b.place, wanted);
        });
    } else if (stations.size() > 1) {
        throw DataError(
            format("expected observations that fit one station only; %.3f,%.3f and %.3f,%.3f do "
                   "(--near chooses)",
                   stations[0].place.x + centre.x, stations[0].place.y + centre.y,
                   stations[1].place.x + centre.x, stations[1].place.y + centre.y));
    }
    Station station = stations[0];
    if (!adjust(observations, extent, station, adjustment))
        throw DataError("expected observations whose adjustment converges");
    station.place = {station.place.x + centre.x, station.place.y + centre.y};
    return station;
}
