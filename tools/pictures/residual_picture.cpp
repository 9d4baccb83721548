// Points to scale, x upward and y to the right; residuals as lines at a scale of their own.
#include "pictures/residual_picture.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "common/text.h"
#include "pictures/svg.h"

namespace {

struct Extent {
    double least = std::numeric_limits<double>::infinity(), most = -least;
    void add(double value) {
        least = std::min(least, value);
        most = std::max(most, value);
    }
    double size() const { return most - least; }
};

}  // namespace

void drawResiduals(const std::vector<Residual>& residuals, const std::filesystem::path& path) {
    constexpr double kLargest = 620.0, kSmallest = 200.0, kMargin = 90.0, kLongest = 60.0;  // pixels
    Extent north, east;
    double longest = 0.0;
    for (const Residual& r : residuals) {
        north.add(r.x);
        east.add(r.y);
        longest = std::max(longest, std::hypot(r.vx, r.vy));
    }
    const double size = std::max(north.size(), east.size());
    const double scale = size > 0.0 ? kLargest / size : 1.0;
    const double arrow = longest > 0.0 ? kLongest / longest : 0.0;
    const double width = std::max(kSmallest, east.size() * scale) + 2.0 * kMargin;
    const double height = north.size() * scale + 2.0 * kMargin;

    Svg picture(width, height);
    picture.text(20.0, 34.0, "start", "Residuals", "font-size=\"19\" font-weight=\"bold\"");
    picture.text(20.0, 54.0, "start", "x upward, y to the right");
    for (const Residual& r : residuals) {
        const double x = kMargin + (r.y - east.least) * scale, y = kMargin + (north.most - r.x) * scale;
        picture.dot(x, y, 3.0, kLine);
        picture.line(x, y, x + r.vy * arrow, y - r.vx * arrow, kRed, 2.0);
        picture.text(x + 7.0, y + 4.0, "start", r.name);
    }
    if (longest > 0.0) {
        const double length = roundStepBelow(longest), y = height - 24.0;
        picture.line(20.0, y, 20.0 + length * arrow, y, kRed, 2.0);
        picture.text(28.0 + length * arrow, y + 4.0, "start", format("%g", length));
    }
    picture.save(path);
}
