// A station from directions and horizontal distances to known points, adjusted by CLeastSq.
#ifndef TOOLS_RESECT_RESECTION_H
#define TOOLS_RESECT_RESECTION_H

#include <fieldscan/least_squares.h>

#include <optional>
#include <vector>

struct Place {
    double x = 0.0, y = 0.0;
};

// A direction in radians or a distance in metres to a known point.
struct Observation {
    bool isDirection;
    Place target;
    double value;
    double sigma;  // standard deviation, known before
};

struct Station {
    Place place;
    double orientation = 0.0;   // azimuth of the zero direction, radians; 0 without directions
    double sumOfSquares = 0.0;  // of the residuals, each divided by its sigma
};

// x and y, and the orientation if there is a direction.
int unknownsOf(const std::vector<Observation>& observations);

// Adjusts the station by Gauss and Newton from approximate places that it finds itself. `adjustment` holds
// the last equations, one for each observation in their order, and one of zeros where there is no redundancy,
// so that CPrecision has figures then too. Where two places fit, that nearest to `nearPlace` is taken. Throws
// DataError when the observations do not determine the station.
Station resect(const std::vector<Observation>& observations, const std::optional<Place>& nearPlace,
               CLeastSq& adjustment);

#endif
