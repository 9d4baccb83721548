#include "polyline/edge_grid.h"

#include <algorithm>
#include <utility>

namespace fieldscan {

namespace {

constexpr double kMostEntries = 16.0, kMostCells = 8.0;  // per edge: limits of memory

}  // namespace

EdgeGrid::EdgeGrid(const std::vector<double>& x, const std::vector<double>& y, double slack, int points)
    : m_x(x), m_y(y), m_slack(slack) {
    setCells(points);
    listEdges();
}

void EdgeGrid::Intervals::divide(double wanted) {
    const double scale = std::floor(wanted) / (last - first);
    if (!(wanted >= 2.0 && std::isfinite(scale)))
        return;
    count = static_cast<std::uint32_t>(wanted);
    perUnit = scale;
    size = 1.0 / scale;
}

void EdgeGrid::setCells(int points) {
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
    // entry takes twice as long to make as to ask: 2 e + points 4 width height / e is least for this e.
    const double edges = static_cast<double>(n);
    const double entries = std::clamp(std::sqrt(2.0 * points * width * height), edges, kMostEntries * edges);
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
EdgeGrid::Span EdgeGrid::columnsOf(std::size_t i, std::uint32_t row) const {
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

void EdgeGrid::listEdges() {
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

}  // namespace fieldscan
