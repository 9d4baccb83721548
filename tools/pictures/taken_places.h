// Which places on the paper are taken, so that names do not cover signs or one another.
#ifndef TOOLS_PICTURES_TAKEN_PLACES_H
#define TOOLS_PICTURES_TAKEN_PLACES_H

#include <algorithm>
#include <cstddef>
#include <vector>

struct Box {
    double left, top, right, bottom;

    bool overlaps(const Box& other) const {
        return left < other.right && other.left < right && top < other.bottom && other.top < bottom;
    }
};

// Boxes by the square cells that they touch: 5000 points with their vectors are some 50 000 boxes, and each
// of 5000 names tries up to 24 places.
class TakenPlaces {
public:
    explicit TakenPlaces(const Box& frame) : m_frame(frame), m_columns(cell(frame.right - frame.left) + 1) {
        m_cells.resize(m_columns * (cell(frame.bottom - frame.top) + 1));
    }

    void take(const Box& box) {
        visitCells(box, [&](std::vector<Box>& boxes) { boxes.push_back(box); });
    }

    // True where a box is within the frame and overlaps none that is taken.
    bool isFree(const Box& box) {
        bool free = box.left >= m_frame.left && box.right <= m_frame.right && box.top >= m_frame.top &&
                    box.bottom <= m_frame.bottom;
        if (free)
            visitCells(box, [&](const std::vector<Box>& boxes) {
                free = free && std::none_of(boxes.begin(), boxes.end(),
                                            [&](const Box& other) { return box.overlaps(other); });
            });
        return free;
    }

private:
    static std::size_t cell(double pixels) { return static_cast<std::size_t>(pixels / 32.0); }

    template <class Visit>
    void visitCells(const Box& box, Visit visit) {
        const auto within = [](double pixels, double size) { return cell(std::clamp(pixels, 0.0, size)); };
        const double width = m_frame.right - m_frame.left, height = m_frame.bottom - m_frame.top;
        const std::size_t right = within(box.right - m_frame.left, width);
        const std::size_t bottom = within(box.bottom - m_frame.top, height);
        for (std::size_t row = within(box.top - m_frame.top, height); row <= bottom; ++row)
            for (std::size_t column = within(box.left - m_frame.left, width); column <= right; ++column)
                visit(m_cells[row * m_columns + column]);
    }

    Box m_frame;
    std::size_t m_columns;
    std::vector<std::vector<Box>> m_cells;
};

#endif
