// Races of PtInPolyline and IsPolyInside, points against outlines, against Boost.Geometry and plain code.
#include <benchmark/benchmark.h>
#include <fieldscan/polyline.h>
#include <fieldscan/survey.h>

#include <boost/geometry.hpp>
#include <boost/geometry/geometries/point_xy.hpp>
#include <boost/geometry/geometries/polygon.hpp>
#include <cmath>
#include <random>

#include "benchmarks/outline_steps.h"
#include "benchmarks/race.h"

namespace {

using Point = boost::geometry::model::d2::point_xy<double>;
using Polygon = boost::geometry::model::polygon<Point>;

// An outline around (x, y) whose radius changes from vertex to vertex, and points in its box.
class Job {
public:
    Job(int vertices, double x, double y, double radius) {
        const double step = 2.0 * std::acos(-1.0) / vertices;
        for (int k = 0; k < vertices; ++k) {
            const double r = radius * (0.8 + around(0.2)), angle = k * step;
            corners.emplace_back(x + r * std::cos(angle), y + r * std::sin(angle));
        }
        for (int k = 0; k < 1000; ++k) {
            const double h = x + around(radius), v = y + around(radius);
            points.emplace_back(h, v);
        }
    }
    // The library's outline. `angles`: x is a horizontal angle in degrees and is brought into [0, 360).
    CPolyline outline(bool angles) const {
        CPolyline outline;
        for (const Point& corner : corners)
            outline.AddVertex(CVertex(angles ? fullTurn(corner.x()) : corner.x(), corner.y(), 0.0, 0));
        return outline;
    }
    Polygon polygon() const {
        Polygon polygon;
        boost::geometry::assign_points(polygon, corners);
        boost::geometry::correct(polygon);
        return polygon;
    }
    static double fullTurn(double degrees) { return degrees < 0.0 ? degrees + 360.0 : degrees; }

    std::vector<Point> corners, points;

private:
    double around(double size) { return std::uniform_real_distribution<double>(-size, size)(m_engine); }
    std::mt19937_64 m_engine{11};
};

// What `inside` says of each point, 1 or 0.
template <class Inside>
std::vector<double> answers(const Job& job, Inside inside) {
    std::vector<double> answers;
    for (const Point& point : job.points)
        answers.push_back(inside(point) ? 1.0 : 0.0);
    return answers;
}

template <class Inside>
Contender contender(const char* name, const Job& job, Inside inside) {
    return {name, [&job, inside] {
                int count = 0;
                for (const Point& point : job.points)
                    count += inside(point) ? 1 : 0;
                benchmark::DoNotOptimize(count);
            }};
}

void raceInPlane(Races& races, int vertices) {
    const std::string row = "PtInPolyline, " + std::to_string(vertices) + " vertices";
    if (!races.wanted(row))
        return;
    const Job job(vertices, 4470000.0, 5320000.0, 80.0);
    const CPolyline outline = job.outline(false);
    const Polygon polygon = job.polygon();
    const auto ours = [&outline](const Point& p) { return outline.PtInPolyline(p.x(), p.y()); };
    const auto peer = [&polygon](const Point& p) { return boost::geometry::within(p, polygon); };
    require(answers(job, ours) == answers(job, peer), row);
    races.race(row, contender("CPolyline", job, ours), {Peers{contender("Boost.Geometry", job, peer)}});
}

void raceInAngles(Races& races, int vertices) {
    const std::string row = "IsPolyInside, " + std::to_string(vertices) + " vertices";
    if (!races.wanted(row))
        return;
    const Job job(vertices, 3.0, 20.0, 15.0);  // across the zero direction
    const CPolyline outline = job.outline(true);
    const Polygon polygon = job.polygon();
    const auto ours = [&outline](const Point& p) {
        return CCalcXYZHV::IsPolyInside(outline, Job::fullTurn(p.x()), p.y());
    };
    const auto steps = [&outline](const Point& p) {
        return isInsideByTheSteps(outline, Job::fullTurn(p.x()), p.y());
    };
    const auto peer = [&polygon](const Point& p) { return boost::geometry::within(p, polygon); };
    require(answers(job, ours) == answers(job, steps), row + ", steps");
    require(answers(job, ours) == answers(job, peer), row);
    races.race(row, contender("CCalcXYZHV", job, ours),
               {Peers{contender("edge by edge, vertices copied", job, steps)},
                Peers{contender("Boost.Geometry, outline unwrapped beforehand", job, peer)}});
}

}  // namespace

void racePolygons(Races& races) {
    for (const int vertices : {10, 100, 1000})
        raceInPlane(races, vertices);
    for (const int vertices : {10, 100, 1000})
        raceInAngles(races, vertices);
}
