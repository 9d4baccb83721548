// The edges of a polygon sorted into the cells of a grid, for many points against one polygon.
#ifndef FIELDSCAN_POLYLINE_EDGE_GRID_H
#define FIELDSCAN_POLYLINE_EDGE_GRID_H

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace fieldscan {

// Edge i of a closed polygon of n vertices runs from vertex i - 1 (edge 0 from the last) to vertex i.
inline std::size_t startOfEdge(std::size_t i, std::size_t n) { return i == 0 ? n - 1 : i - 1; }

// Crossing-number rule (Shimrat 1962): a point is inside if an odd number of edges crosses its ordinate y at
// or right of the point. An edge crosses y if just one of its ends is below; a vertex at y counts as below.
//
// A cell lists the edges that come near it. Of the others, those left of it do not count, and those right of
// it count below(start) + below(end), modulo 2. In the sum of these
// - a vertex of two such edges cancels;
// - a vertex in another row of cells is always or never below: the cell holds the sum of these;
// - any other vertex is an end of an edge that the cell lists: the list holds which ends are in the sum.
class EdgeGrid {
public:
    static constexpr std::size_t kMostVertices = 10000000;
    static constexpr double kLargest = 1e150;  // no product or difference of the grid overflows

    // What an edge does at a point's ordinate.
    struct Edge {
        bool startBelow, endBelow;
        bool counts;  // crosses the ordinate at or right of the point
    };

    // x, y: of the vertices, 1 to kMostVertices, up to kLargest; they must outlive the grid. points: how many
    // inside() will be asked for; affects only the time. slack: a crossing may be that far (or 1e-14 of the
    // largest |x|) from the edge, and a vertex that near to the ordinate may count as above or below.
    EdgeGrid(const std::vector<double>& x, const std::vector<double>& y, double slack, int points);

    // True if an edge may cross the ordinate.
    bool reaches(double y) const { return y >= m_rows.first && y <= m_rows.last; }

    // 1 if the point is inside, else 0. edgeAt(i): the Edge i at the point's ordinate.
    template <class EdgeAt>
    int inside(double x, double y, EdgeAt edgeAt) const {
        if (!reaches(y) || std::isnan(x))
            return 0;
        const std::size_t cell = std::size_t{m_rows.at(y)} * m_columns.count + m_columns.at(x);
        std::uint32_t sum = m_cells[cell];
        for (std::uint32_t k = m_cells[cell] / 2; k < m_cells[cell + 1] / 2; ++k) {
            const std::uint32_t entry = m_entries[k];
            const Edge edge = edgeAt(std::size_t{entry / 4});
            sum += edge.counts + (edge.startBelow & (entry / 2)) + (edge.endBelow & entry);
        }
        return static_cast<int>(sum % 2);
    }

private:
    // Equal intervals of an axis. The interval of a number, rounding included, is a monotone function of it.
    struct Intervals {
        double first = 0.0, last = 0.0, perUnit = 0.0, size = 0.0;
        std::uint32_t count = 1;

        void divide(double wanted);
        std::uint32_t at(double value) const {
            const double interval = (value - first) * perUnit;
            if (!(interval > 0.0))
                return 0;
            return interval < count ? static_cast<std::uint32_t>(interval) : count - 1;
        }
    };
    // First and last of rows or columns.
    struct Span {
        std::uint32_t first, last;
        bool contains(std::uint32_t k) const { return first <= k && k <= last; }
    };

    void setCells(int points);
    Span columnsOf(std::size_t i, std::uint32_t row) const;
    void listEdges();

    const std::vector<double>&m_x, &m_y;
    const double m_slack;
    double m_slackX = 0.0;
    Intervals m_rows, m_columns;
    // Row by row from the lowest, then the end: 2 (where the cell's list begins) + (sum of its constant
    // vertices).
    std::vector<std::uint32_t> m_cells;
    std::vector<std::uint32_t> m_entries;  // 4 edge + 2 (its start is in the sum) + (its end is in the sum)
};

}  // namespace fieldscan

#endif
