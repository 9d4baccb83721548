// Margins grow with the labels; names are placed after all signs.
#include "pictures/plot.h"

#include <algorithm>

#include "common/text.h"

namespace {

constexpr double kLeastLeft = 76.0, kRight = 34.0, kTop = 104.0;  // around the frame
constexpr double kAxis = 60.0, kLegendRow = 28.0,
                 kBelow = 12.0;        // below it: labels and title, rows, the rest
constexpr double kTitle = 22.0;        // of the axis at the left, from the edge
constexpr double kLeastPaper = 860.0;  // room for the heading and the legend
constexpr double kBar = 110.0;         // a scale bar, at most

double widest(const std::vector<Tick>& ticks) {
    double width = 0.0;
    for (const Tick& tick : ticks)
        width = std::max(width, widthOf(tick.label));
    return width;
}

Box frameFor(const Axis& across, const Axis& down) {
    const double left = std::max(kLeastLeft, kTitle + 8.0 + widest(down.ticks) + 13.0);
    return {left, kTop, left + across.length(), kTop + down.length()};
}

double paperWidth(const Axis& across, const Axis& down) {
    return std::max(kLeastPaper, frameFor(across, down).right + kRight);
}

double paperHeight(const Axis& down, int legendRows) {
    return kTop + down.length() + kAxis + legendRows * kLegendRow + kBelow;
}

}  // namespace

std::string stepLabel(double value, double step) {
    const int decimals = std::max(0, static_cast<int>(std::ceil(-std::log10(step) - 1e-9)));
    const std::string digits = format("%.*f", decimals, std::fabs(value));
    return value < 0.0 ? "−" + digits : digits;
}

void setDecimalTicks(Axis& axis) {
    const double low = std::min(axis.first, axis.last), high = std::max(axis.first, axis.last);
    double step = roundStepBelow(80.0 / axis.scale);
    const auto hasRoom = [&] {
        const double label = std::max(widthOf(stepLabel(low, step)), widthOf(stepLabel(high, step)));
        return step * axis.scale >= std::max(80.0, label + 24.0);
    };
    for (int i = 0; i < 3 && !hasRoom(); ++i)
        step = roundStepBelow(2.6 * step);  // 1, 2, 5, 10
    for (double k = std::ceil(low / step); k * step <= high; ++k)
        axis.ticks.push_back({k * step, stepLabel(k * step, step)});
}

double enlargementOf(double longest, double scale, double pixels) {
    constexpr double kLeast = 1e-6;  // the last decimal of the files; shorter ones are rounding
    return longest >= kLeast ? roundStepBelow(pixels / (longest * scale)) : 0.0;
}

Plot::Plot(const Axis& across, const Axis& down, int legendRows)
    : Svg(paperWidth(across, down), paperHeight(down, legendRows)),
      m_across(across),
      m_down(down),
      m_frame(frameFor(across, down)),
      m_taken(m_frame) {}

bool Plot::shows(double across, double down) const {
    const auto isOn = [](const Axis& axis, double value) {
        return value >= std::min(axis.first, axis.last) && value <= std::max(axis.first, axis.last);
    };
    return isOn(m_across, across) && isOn(m_down, down);
}

void Plot::axes() {
    const auto& [left, top, right, bottom] = m_frame;
    for (const Tick& tick : m_across.ticks) {
        const double px = x(tick.value);
        line(px, top, px, bottom, kGrid, 1.0);
        line(px, bottom, px, bottom + 5.0, kLine, 1.0);
        text(px, bottom + 20.0, "middle", tick.label);
    }
    for (const Tick& tick : m_down.ticks) {
        const double py = y(tick.value);
        line(left, py, right, py, kGrid, 1.0);
        line(left - 5.0, py, left, py, kLine, 1.0);
        text(left - 12.0, py + 4.0, "end", tick.label);
    }
    rectangle(m_frame.left, top, right - left, bottom - top, kLine);
    text((left + right) / 2.0, bottom + 44.0, "middle", m_across.title, "font-size=\"13\"");
    const double middle = (top + bottom) / 2.0;
    text(kTitle, middle, "middle", m_down.title,
         format("font-size=\"13\" transform=\"rotate(-90 %g %.1f)\"", kTitle, middle).c_str());
}

void Plot::heading(const std::string& title, const std::vector<std::string>& lines) {
    text(m_frame.left, 36.0, "start", title, "font-size=\"19\" font-weight=\"bold\"");
    double py = 60.0;
    for (const std::string& words : lines) {
        text(m_frame.left, py, "start", words, "font-size=\"13\"");
        py += 20.0;
    }
}

double Plot::vectorLength(int points) const {
    constexpr double kLeast = 15.0, kMost = 34.0;
    const double spacing = std::sqrt(m_across.length() * m_down.length() / std::max(points, 1));
    return std::clamp(1.2 * spacing, kLeast, kMost);
}

std::string Plot::vector(double px, double py, double along, double down) {
    const auto part = [](double start, double way, double low, double high) {
        return way == 0.0 ? 1.0 : std::min(1.0, ((way > 0.0 ? high : low) - start) / way);
    };
    const double shown =
        std::min(part(px, along, m_frame.left, m_frame.right), part(py, down, m_frame.top, m_frame.bottom));
    const double length = std::hypot(along, down);
    for (double way = 3.0; way < shown * length; way += 3.0) {
        const double cx = px + way * along / length, cy = py + way * down / length;
        m_taken.take({cx - 3.0, cy - 3.0, cx + 3.0, cy + 3.0});
    }
    return format("M%.1f %.1fL%.1f %.1f", px, py, px + shown * along, py + shown * down);
}

void Plot::sign(double px, double py, double half, const std::string& name, bool isMarked) {
    m_taken.take({px - half, py - half, px + half, py + half});
    if (!name.empty())
        m_names.push_back({px, py, name, isMarked});
}

int Plot::names() {
    constexpr double kSize = 10.0, kHeight = 9.0;  // of the letters
    constexpr int kPlaces[][2] = {{1, 0}, {-1, 0}, {0, -1}, {0, 1}, {1, -1}, {1, 1}, {-1, -1}, {-1, 1}};
    const bool many = m_names.size() > kMany;
    int unnamed = 0;
    for (const Name& name : m_names) {
        if (many && !name.isMarked) {
            ++unnamed;
            continue;
        }
        const double width = widthOf(name.words, kSize) + 3.0;
        Box box = {};
        const auto isPlaced = [&](double gap, int right, int down) {
            box.left = name.x + right * gap - (1 - right) * width / 2.0;
            box.top = name.y + down * gap - (1 - down) * kHeight / 2.0;
            box.right = box.left + width;
            box.bottom = box.top + kHeight;
            return m_taken.isFree(box);
        };
        bool placed = false;
        for (const double gap : {5.0, 8.0, 14.0})
            for (const auto& [right, down] : kPlaces)
                placed = placed || isPlaced(gap, right, down);
        if (!placed && !name.isMarked) {
            ++unnamed;
            continue;
        }
        if (!placed) {
            const bool toLeft = name.x + 5.0 + width > m_frame.right;
            isPlaced(5.0, toLeft ? -1 : 1, 0);
            add(format("<rect x=\"%.1f\" y=\"%.1f\" width=\"%.1f\" height=\"%.1f\" fill=\"white\"/>",
                       box.left, box.top - 1.0, width, kHeight + 2.0));
        }
        text(box.left + width / 2.0, box.bottom - 1.0, "middle", name.words, "font-size=\"10\"");
        m_taken.take(box);
    }
    return unnamed;
}

double Plot::scaleBar(double px, double py, double scale, const char* unit, double enlargement,
                      const char* what) {
    const double value = roundStepBelow(kBar / (scale * enlargement));
    const double length = value * scale * enlargement;
    line(px, py, px + length, py, kLine, 2.0);
    for (const double end : {px, px + length})
        line(end, py - 4.0, end, py + 4.0, kLine, 2.0);
    const std::string drawn = enlargement > 1.0   ? format(", enlarged %.10g times", enlargement)
                              : enlargement < 1.0 ? format(", shortened to %g", enlargement)
                                                  : std::string();
    return nameSign(px + length - 16.0, py, format("%g %s %s", value, unit, what) + drawn);
}
