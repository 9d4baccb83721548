// The edges of a polygon sorted into bands of the ordinate, for many points against one polygon: the bins of
// Haines, Point in Polygon Strategies, Graphics Gems IV, 1994.
#ifndef FIELDSCAN_POLYLINE_EDGE_BANDS_H
#define FIELDSCAN_POLYLINE_EDGE_BANDS_H

#include <cmath>
#include <cstddef>
#include <utility>
#include <vector>

namespace fieldscan {

// Edge i of a closed polygon of n vertices runs from vertex i - 1 (edge 0 from the last) to vertex i.
inline std::size_t startOfEdge(std::size_t i, std::size_t n) { return i == 0 ? n - 1 : i - 1; }

// Every band lists the edges that reach into it. The band of an ordinate, rounding included, is a monotone
// function of it. So that band lists every edge that begins at or below the ordinate and ends at or above it.
class EdgeBands {
public:
    // `ordinates`: of the vertices, at least one, all finite. Edges count as longer by `slack` at both ends.
    EdgeBands(const std::vector<double>& ordinates, double slack) {
        const std::size_t n = ordinates.size();
        std::vector<std::pair<double, double>> edges(n);
        m_lowest = m_highest = ordinates[0];
        for (std::size_t i = 0; i < n; ++i) {
            double low = ordinates[startOfEdge(i, n)], high = ordinates[i];
            if (low > high)
                std::swap(low, high);
            edges[i] = {low - slack, high + slack};
            m_lowest = std::fmin(m_lowest, low - slack);
            m_highest = std::fmax(m_highest, high + slack);
        }
        // As many bands as edges, but fewer if many edges reach through many bands.
        std::size_t entries = 0;
        for (m_bands = n;; m_bands /= 2) {
            m_scale = static_cast<double>(m_bands) / (m_highest - m_lowest);
            if (m_bands == 1 || !std::isfinite(m_scale) || m_scale == 0.0) {
                m_bands = 1;
                m_scale = 0.0;
                entries = n;
                break;
            }
            entries = 0;
            for (const auto& [low, high] : edges)
                entries += bandOf(high) - bandOf(low) + 1;
            if (entries <= kMostEntries * n)
                break;
        }
        m_begin.assign(m_bands + 1, 0);
        for (const auto& [low, high] : edges)
            for (std::size_t b = bandOf(low); b <= bandOf(high); ++b)
                ++m_begin[b];
        for (std::size_t b = 1; b <= m_bands; ++b)
            m_begin[b] += m_begin[b - 1];
        m_edges.resize(entries);
        for (std::size_t i = 0; i < n; ++i)
            for (std::size_t b = bandOf(edges[i].first); b <= bandOf(edges[i].second); ++b)
                m_edges[--m_begin[b]] = static_cast<int>(i);
    }

    // Calls visit(edge) for all edges that may cross the ordinate, and for some others near it.
    template <class Visit>
    void visit(double ordinate, Visit visit) const {
        if (!(ordinate >= m_lowest && ordinate <= m_highest))
            return;
        const std::size_t band = bandOf(ordinate);
        for (std::size_t k = m_begin[band]; k < m_begin[band + 1]; ++k)
            visit(static_cast<std::size_t>(m_edges[k]));
    }

private:
    static constexpr std::size_t kMostEntries = 8;  // per edge, on average

    std::size_t bandOf(double ordinate) const {
        if (m_bands == 1)  // the span of the ordinates may be infinite
            return 0;
        const auto band = static_cast<std::size_t>((ordinate - m_lowest) * m_scale);
        return band < m_bands ? band : m_bands - 1;
    }

    double m_lowest, m_highest, m_scale;
    std::size_t m_bands;
    std::vector<std::size_t> m_begin;  // where each band's edges begin in m_edges, and the end
    std::vector<int> m_edges;
};

}  // namespace fieldscan

#endif
