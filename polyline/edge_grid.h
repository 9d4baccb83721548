// The edges of a polygon sorted into the cells of a grid, for many points against one polygon.
#ifndef FIELDSCAN_POLYLINE_EDGE_GRID_H
#define FIELDSCAN_POLYLINE_EDGE_GRID_H

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <utility>
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
    EdgeGrid(const std::vector<double>& x, const std::vector<double>& y, double slack, int points)
        : m_x(x), m_y(y), m_slack(slack) {
        setCells(points);
        listEdges();
    }

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

        void divide(double wanted) {
            const double scale = std::floor(wanted) / (last - first);
            if (!(wanted >= 2.0 && std::isfinite(scale)))
                return;
            count = static_cast<std::uint32_t>(wanted);
            perUnit = scale;
            size = 1.0 / scale;
        }
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

    void setCells(int points) {
        const std::size_t n = m_x.size();
        const auto [left, right] = std::minmax_element(m_x.begin(), m_x.end());
        const auto [bottom, top] = std::minmax_element(m_y.begin(), m_y.end());
        m_slackX = std::max(m_slack, 1e-14 * std::max(-*left, *right) + 1e-150);
        m_columns.first = *left;
        m_columns.last = *right;
        m_rows.first = *bottom - m_slack;
        m_rows.last = *top + m_slack;

        double width = 0.0, height = 0.0;  // the sums over the edges, of the polygon's width and height
        for (std::size_t i = 0; i < n; ++i) {
            width += std::fabs(m_x[i] - m_x[startOfEdge(i, n)]);
            height += std::fabs(m_y[i] - m_y[startOfEdge(i, n)]);
        }
        width = std::max(1.0, width / (m_columns.last - m_columns.first));
        height = std::max(1.0, height / (m_rows.last - m_rows.first));

        // The lists of r rows and c columns have about n + r height + c width = n + e entries, and a point
        // meets a list of (n + e) / (r c). For a given e, r c is largest if r height = c width = e / 2. An
        // entry takes about as long to make as to ask: e + points 4 width height / e is least for this e.
        const double edges = static_cast<double>(n);
        const double entries =
            std::clamp(2.0 * std::sqrt(points * width * height), edges, kMostEntries * edges);
        double rows = std::max(entries / 2.0 / height, 1.0), columns = std::max(entries / 2.0 / width, 1.0);
        const double tooMany = std::sqrt(rows * columns / (kMostCells * edges));
        if (tooMany > 1.0) {
            rows /= tooMany;
            columns /= tooMany;
        }
        m_rows.divide(rows);
        m_columns.divide(columns);
    }

    // The columns that edge i comes near in a row.
    Span columnsOf(std::size_t i, std::uint32_t row) const {
        std::size_t low = startOfEdge(i, m_x.size()), high = i;
        if (m_y[low] > m_y[high])
            std::swap(low, high);
        double a = m_x[low], b = m_x[high];
        // Limits of the row above `low`, wider by far more than their rounding: there are at most 1e8 rows.
        const double above = m_y[low] - m_rows.first, height = m_y[high] - m_y[low];
        const double bottom = m_rows.size * (row - 1e-6) - m_slack - above;
        const double top = m_rows.size * (row + 1.0 + 1e-6) + m_slack - above;
        if (m_rows.count > 1) {
            const double slope = (b - a) / height;
            if (top < height)
                b = a + slope * top;
            if (bottom > 0.0)
                a += slope * bottom;
        }
        return {m_columns.at(std::min(a, b) - m_slackX), m_columns.at(std::max(a, b) + m_slackX)};
    }

    void listEdges() {
        const std::size_t n = m_x.size(), columns = m_columns.count;
        std::vector<Span> rows(n);  // where each vertex may be above or below
        for (std::size_t i = 0; i < n; ++i)
            rows[i] = {m_rows.at(m_y[i] - m_slack), m_rows.at(m_y[i] + m_slack)};
        const auto rowsOf = [&](std::size_t edge) {
            const Span a = rows[startOfEdge(edge, n)], b = rows[edge];
            return Span{std::min(a.first, b.first), std::max(a.last, b.last)};
        };
        std::vector<std::uint32_t> atRow0(n);  // the columns of edge i in a row: covered[atRow0[i] + row]
        std::uint32_t count = 0;
        for (std::size_t i = 0; i < n; ++i) {
            atRow0[i] = count - rowsOf(i).first;
            count += rowsOf(i).last - rowsOf(i).first + 1;
        }
        std::vector<Span> covered(count);
        m_cells.assign(m_rows.count * columns + 1, 0);
        std::vector<unsigned char> constants(m_cells.size());
        for (std::size_t i = 0; i < n; ++i) {
            const std::uint32_t start = rows[startOfEdge(i, n)].last, end = rows[i].last;
            const Span edge = rowsOf(i);
            for (std::uint32_t row = edge.first; row <= edge.last; ++row) {
                const Span span = covered[atRow0[i] + row] = columnsOf(i, row);
                for (std::size_t column = span.first; column <= span.last; ++column)
                    m_cells[row * columns + column] += 2;
                if (span.first > 0)
                    constants[row * columns + span.first - 1] ^= (start < row) != (end < row);
            }
        }
        for (std::size_t row = 0; row < m_rows.count; ++row)
            for (std::size_t column = columns - 1; column-- > 0;)
                constants[row * columns + column] ^= constants[row * columns + column + 1];
        for (std::size_t cell = 1; cell < m_cells.size(); ++cell)
            m_cells[cell] += m_cells[cell - 1];
        m_entries.resize(m_cells.back() / 2);
        for (std::size_t i = 0; i < n; ++i) {
            const std::size_t from = startOfEdge(i, n), next = i + 1 == n ? 0 : i + 1;
            const Span edge = rowsOf(i);
            for (std::uint32_t row = edge.first; row <= edge.last; ++row) {
                // An end is in the sum of the cells that have the other edge of that vertex on their right.
                const std::uint32_t start = rows[from].contains(row) ? covered[atRow0[from] + row].first : 0;
                const std::uint32_t end = rows[i].contains(row) ? covered[atRow0[next] + row].first : 0;
                const Span span = covered[atRow0[i] + row];
                for (std::size_t column = span.first; column <= span.last; ++column)
                    m_entries[(m_cells[row * columns + column] -= 2) / 2] =
                        static_cast<std::uint32_t>(4 * i) + 2 * (column < start) + (column < end);
            }
        }
        for (std::size_t cell = 0; cell + 1 < m_cells.size(); ++cell)
            m_cells[cell] += constants[cell];
    }

    static constexpr double kMostEntries = 16.0, kMostCells = 8.0;  // per edge: limits of memory

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
