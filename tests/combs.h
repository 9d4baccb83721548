// Outlines whose interior is known from how they are made.
#ifndef FIELDSCAN_TESTS_COMBS_H
#define FIELDSCAN_TESTS_COMBS_H

#include <random>
#include <utility>
#include <vector>

using Place = std::pair<double, double>;

// A back 0 < y < 1 from which teeth rise over every second unit of x, each to its own height up to 9.
struct Comb {
    Comb(int teeth, std::mt19937_64& random) : width(2 * teeth - 1), outline{{0, 0}} {
        for (int left = 0; left < width; left += 2) {
            heights.push_back(2 + static_cast<int>(random() % 8));
            outline.insert(outline.end(), {{left, 1}, {left, heights.back()}});
            outline.insert(outline.end(), {{left + 1, heights.back()}, {left + 1, 1}});
        }
        outline.emplace_back(width, 0);
    }

    // A place on the comb or around it, at least 0.05 from every edge.
    Place somewhere(std::mt19937_64& random) const {
        std::uniform_real_distribution<double> within(0.05, 0.95);
        const int column = static_cast<int>(random() % static_cast<unsigned>(width + 2)) - 1;
        const int row = static_cast<int>(random() % 11) - 1;
        return {column + within(random), row + within(random)};
    }

    bool contains(const Place& place) const {
        const auto& [x, y] = place;
        if (x < 0 || x > width || y < 0)
            return false;
        const auto column = static_cast<std::size_t>(x);
        return y < 1 || (column % 2 == 0 && y < heights[column / 2]);
    }

    int width;
    std::vector<Place> outline;
    std::vector<int> heights;
};

#endif
