// Races of the list forms of PtInPolyline, against GEOS, and of IsPolyInside, against a loop of single calls.
#include <fieldscan/polyline.h>
#include <fieldscan/survey.h>
#include <geos/algorithm/locate/IndexedPointInAreaLocator.h>
#include <geos/geom/CoordinateArraySequence.h>
#include <geos/geom/GeometryFactory.h>
#include <geos/geom/LinearRing.h>
#include <geos/geom/Polygon.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <random>
#include <utility>

#include "benchmarks/race.h"

namespace {

using geos::geom::Coordinate;
using geos::geom::Location;

using Numbers = CArray<double, double>;
using Answers = CArray<int, int>;
using Places = std::vector<Coordinate>;

enum Shape { kStar, kComb, kLyingComb, kCoast };
constexpr const char* kShapes[] = {"star", "comb", "lying comb", "coast"};

// An outline within 1 of the origin.
Places outlineOf(Shape shape, int vertices) {
    std::mt19937_64 engine(11);
    const auto around = [&engine](double size) {
        return std::uniform_real_distribution<double>(-size, size)(engine);
    };
    Places outline;
    if (shape == kStar) {  // the radius changes from vertex to vertex
        const double step = 2.0 * std::acos(-1.0) / vertices;
        for (int k = 0; k < vertices; ++k) {
            const double radius = 0.8 + around(0.2);
            outline.emplace_back(radius * std::cos(k * step), radius * std::sin(k * step));
        }
    } else if (shape == kLyingComb) {  // a line across it meets few edges: the best case of an index by y
        outline = outlineOf(kComb, vertices);
        for (Coordinate& vertex : outline)
            std::swap(vertex.x, vertex.y);
    } else if (shape == kComb) {  // upright teeth: a line through them crosses nearly all edges
        for (int k = 0; k < vertices - 2; ++k)
            outline.emplace_back(2.0 * k / (vertices - 3) - 1.0, (k % 2 ? 0.9 : -0.7) + around(0.05));
        outline.emplace_back(1.0, -1.0);
        outline.emplace_back(-1.0, -1.0);
    } else {  // a random walk, which comes back to its start by equal shares of the distance; it crosses
              // itself
        double x = 0.0, y = 0.0, size = 0.0;
        for (int k = 0; k < vertices; ++k)
            outline.emplace_back(x += around(1.0), y += around(1.0));
        for (int k = 0; k < vertices; ++k) {
            Coordinate& vertex = outline[static_cast<std::size_t>(k)];
            vertex.x -= x * (k + 1) / vertices;
            vertex.y -= y * (k + 1) / vertices;
            size = std::max({size, std::fabs(vertex.x), std::fabs(vertex.y)});
        }
        for (Coordinate& vertex : outline) {
            vertex.x /= size;
            vertex.y /= size;
        }
    }
    return outline;
}

// Points of the box of the outline: random ones, or row by row.
Places pointsOf(const Places& outline, bool inRows) {
    const auto byX = [](const Coordinate& a, const Coordinate& b) { return a.x < b.x; };
    const auto byY = [](const Coordinate& a, const Coordinate& b) { return a.y < b.y; };
    const auto [left, right] = std::minmax_element(outline.begin(), outline.end(), byX);
    const auto [bottom, top] = std::minmax_element(outline.begin(), outline.end(), byY);
    std::mt19937_64 engine(12);
    std::uniform_real_distribution<double> random;
    constexpr int kSide = 100;
    Places points;
    for (int k = 0; k < kSide * kSide; ++k) {
        const double u = inRows ? (k % kSide + 0.5) / kSide : random(engine);
        const double v = inRows ? (k / kSide + 0.5) / kSide : random(engine);
        points.emplace_back(left->x + u * (right->x - left->x), bottom->y + v * (top->y - bottom->y));
    }
    return points;
}

// The same outline and points for both sides: in a plane, and as directions across the zero direction.
struct Job {
    Job(const Places& outline, const Places& unscaled) {
        auto ring = std::make_unique<geos::geom::CoordinateArraySequence>();
        for (const Coordinate& vertex : outline) {
            ring->add(inPlane(vertex));
            inMetres.AddVertex(CVertex(inPlane(vertex).x, inPlane(vertex).y, 0.0, 0));
            inDegrees.AddVertex(CVertex(horizontal(vertex), elevation(vertex), 0.0, 0));
        }
        ring->add(inPlane(outline.front()));
        polygon = factory->createPolygon(factory->createLinearRing(std::move(ring)), {});
        for (const Coordinate& point : unscaled) {
            points.push_back(inPlane(point));
            x.Add(inPlane(point).x);
            y.Add(inPlane(point).y);
            h.Add(horizontal(point));
            v.Add(elevation(point));
        }
        peers.SetSize(x.GetSize());
    }
    static Coordinate inPlane(const Coordinate& p) {
        return {4470000.0 + 80.0 * p.x, 5320000.0 + 80.0 * p.y};
    }
    static double horizontal(const Coordinate& p) {
        const double degrees = 3.0 + 15.0 * p.x;
        return degrees < 0.0 ? degrees + 360.0 : degrees;
    }
    static double elevation(const Coordinate& p) { return 20.0 + 15.0 * p.y; }

    void requireAgreement(const Contender& our, const Contender& peer) {
        our.run();
        peer.run();
        require(std::equal(ours.GetData(), ours.GetData() + ours.GetSize(), peers.GetData(),
                           peers.GetData() + peers.GetSize()),
                our.name + ", " + peer.name);
    }

    CPolyline inMetres, inDegrees;
    geos::geom::GeometryFactory::Ptr factory = geos::geom::GeometryFactory::create();
    std::unique_ptr<geos::geom::Polygon> polygon;
    Places points;
    Numbers x, y, h, v;
    Answers ours, peers;
};

void raceInPlane(Races& races, const std::string& row, Job& job) {
    const Contender ours = {
        "list", [&job] { require(job.inMetres.PtInPolyline(job.x, job.y, job.ours) == 1, "PtInPolyline"); }};
    const auto locate = [&job](geos::algorithm::locate::IndexedPointInAreaLocator& locator) {
        int k = 0;
        for (const Coordinate& point : job.points)
            job.peers[k++] = locator.locate(&point) == Location::INTERIOR ? 1 : 0;
    };
    const Contender peer = {"GEOS, indexed locator", [&job, locate] {
                                geos::algorithm::locate::IndexedPointInAreaLocator locator(*job.polygon);
                                locate(locator);
                            }};
    job.requireAgreement(ours, peer);
    races.race(row, ours, {{peer}});
}

void raceInAngles(Races& races, const std::string& row, Job& job) {
    const Contender ours = {"list", [&job] {
                                require(CCalcXYZHV::IsPolyInside(job.inDegrees, job.h, job.v, job.ours) == 1,
                                        "IsPolyInside");
                            }};
    const Contender peer = {"one by one", [&job] {
                                for (int k = 0; k < job.h.GetSize(); ++k)
                                    job.peers[k] =
                                        CCalcXYZHV::IsPolyInside(job.inDegrees, job.h[k], job.v[k]);
                            }};
    job.requireAgreement(ours, peer);
    races.race(row, ours, {{peer}});
}

template <class Race>
void raceShapes(Races& races, const std::string& what, Race race) {
    for (const Shape shape : {kStar, kComb, kLyingComb, kCoast})
        for (const int vertices : {10, 100, 1000, 10000})
            for (const bool inRows : {false, true}) {
                const std::string row = what + " of 10000 points" + (inRows ? " in rows, " : ", ") +
                                        kShapes[shape] + ", " + std::to_string(vertices) + " vertices";
                if (!races.wanted(row) || (races.quick() && vertices > 1000) || (inRows && vertices != 1000))
                    continue;
                const Places outline = outlineOf(shape, vertices);
                Job job(outline, pointsOf(outline, inRows));
                race(races, row, job);
            }
}

}  // namespace

void raceOutlineLists(Races& races) {
    raceShapes(races, "PtInPolyline", raceInPlane);
    raceShapes(races, "IsPolyInside", raceInAngles);
}
