// Points at equal scale, residuals as vectors at a scale of their own.
#include "pictures/residual_picture.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "common/text.h"
#include "pictures/plot.h"

namespace {

constexpr double kMostWidth = 960.0, kMostHeight = 720.0;  // of the frame
constexpr double kLeastWidth = 560.0, kLeastHeight = 260.0;
constexpr double kMargin = 44.0;     // from the outermost points to the frame
constexpr double kMarkedFrom = 3.0;  // times the root mean square

// A residual as it is drawn.
struct Arrow {
    const Residual* residual;
    double across, up, dx, dy;
    bool marked;
};

struct Extent {
    double least = std::numeric_limits<double>::infinity(), most = -least;

    void add(double value) {
        least = std::min(least, value);
        most = std::max(most, value);
    }
    double size() const { return most - least; }
    double middle() const { return least + size() / 2.0; }
    double magnitude() const { return std::max(std::fabs(least), std::fabs(most)); }
};

struct Statistics {
    double rmsX = 0.0, rmsY = 0.0, length = 0.0, others = 0.0;
    double longest = 0.0;  // of those that are not marked
    int marked = 0;
};

Statistics markLongOnes(std::vector<Arrow>& arrows) {
    Statistics s;
    const double count = static_cast<double>(arrows.size());
    for (const Arrow& a : arrows) {
        s.rmsX += a.residual->vx * a.residual->vx / count;
        s.rmsY += a.residual->vy * a.residual->vy / count;
    }
    s.length = std::sqrt(s.rmsX + s.rmsY);
    s.rmsX = std::sqrt(s.rmsX);
    s.rmsY = std::sqrt(s.rmsY);
    for (Arrow& a : arrows) {
        const double length = std::hypot(a.dx, a.dy);
        a.marked = length > kMarkedFrom * s.length;
        s.marked += a.marked ? 1 : 0;
        s.others += a.marked ? 0.0 : length * length;
        s.longest = std::max(s.longest, a.marked ? 0.0 : length);
    }
    s.others = std::sqrt(s.others / (count - s.marked));  // less than one in nine can be marked
    return s;
}

struct Axes {
    Axes(const std::vector<Arrow>& arrows, const ResidualView& view) {
        Extent width, height;
        for (const Arrow& a : arrows) {
            width.add(a.across);
            height.add(a.up);
        }
        // Points at one place, or nearly so for doubles, get an area of their own.
        const double magnitude = std::max(width.magnitude(), height.magnitude());
        const double least = std::max(width.size(), height.size()) > 1e-9 * magnitude ? 0.0
                             : magnitude > 1e6                                        ? 1e-6 * magnitude
                                                                                      : 1.0;
        const double sizeX = std::max(width.size(), least), sizeY = std::max(height.size(), least);
        const double roomX = kMostWidth - 2.0 * kMargin, roomY = kMostHeight - 2.0 * kMargin;
        const double scale = sizeX * roomY > sizeY * roomX ? roomX / sizeX : roomY / sizeY;
        const double halfX = std::max(kLeastWidth, sizeX * scale + 2.0 * kMargin) / scale / 2.0;
        const double halfY = std::max(kLeastHeight, sizeY * scale + 2.0 * kMargin) / scale / 2.0;
        across = {(view.xIsUpward ? "y (" : "x (") + view.unit + ")",
                  width.middle() - halfX,
                  width.middle() + halfX,
                  scale,
                  {}};
        up = {(view.xIsUpward ? "x (" : "y (") + view.unit + ")",
              height.middle() + halfY,
              height.middle() - halfY,
              scale,
              {}};
        setDecimalTicks(across);
        setDecimalTicks(up);
    }
    Axis across, up;
};

std::string lengthText(double length) { return format(length < 1e4 ? "%.4g" : "%.0f", length); }

}  // namespace

void drawResiduals(const std::vector<Residual>& residuals, const ResidualView& view,
                   const std::filesystem::path& path) {
    std::vector<Arrow> arrows;
    arrows.reserve(residuals.size());
    for (const Residual& r : residuals)
        arrows.push_back(view.xIsUpward ? Arrow{&r, r.y, r.x, r.vy, r.vx, false}
                                        : Arrow{&r, r.x, r.y, r.vx, r.vy, false});
    const Statistics s = markLongOnes(arrows);
    // Marked ones last, above the others; their names first, because they are looked for.
    std::stable_partition(arrows.begin(), arrows.end(), [](const Arrow& a) { return !a.marked; });
    const Axes axes(arrows, view);
    const double scale = axes.across.scale;

    Plot plot(axes.across, axes.up, s.longest > 0.0 ? 2 : 1);
    plot.axes();
    const int count = static_cast<int>(arrows.size());
    const double enlargement = enlargementOf(s.longest, scale, plot.vectorLength(count));
    const bool many = count > kMany;
    const double dotSize = many ? kSmallDot : kDot;
    std::string points[2], vectors[2];
    for (const Arrow& a : arrows) {
        const double px = plot.x(a.across), py = plot.y(a.up);
        points[a.marked ? 1 : 0] += Svg::dotAt(px, py);
        if (enlargement > 0.0)
            vectors[a.marked ? 1 : 0] +=
                plot.vector(px, py, a.dx * scale * enlargement, -a.dy * scale * enlargement);
    }
    for (auto a = arrows.rbegin(); a != arrows.rend(); ++a)
        plot.sign(plot.x(a->across), plot.y(a->up), dotSize / 2.0 + 1.0, a->residual->name, a->marked);
    for (const int marked : {0, 1}) {
        plot.path(vectors[marked], marked == 1 ? kOrange : kBlue, many ? 1.0 : 1.6);
        plot.dots(points[marked], marked == 1 ? kOrange : kLine, dotSize);
    }
    const int unnamed = plot.names();

    const char* unit = view.unit.c_str();
    std::string counts =
        format("%d points; RMS %s %s in x, %s in y, %s in length", count, lengthText(s.rmsX).c_str(), unit,
               lengthText(s.rmsY).c_str(), lengthText(s.length).c_str());
    if (s.marked > 0)
        counts += "; " + lengthText(s.others) + " without the marked ones";
    std::string remarks = s.marked > 0
                              ? format("%d marked: longer than %g times the RMS", s.marked, kMarkedFrom)
                              : "no point marked";
    if (many)
        remarks += "; only marked points have names";
    else if (unnamed > 0)
        remarks += format("; %d names have no room", unnamed);
    plot.heading("Residuals", {counts, remarks});

    double px = plot.frame().left, py = plot.legendRow(0);
    plot.dot(px + 10.0, py, 2.5, kLine);
    px = plot.nameSign(px, py, "point");
    if (s.marked > 0) {
        plot.dot(px + 10.0, py, 2.5, kOrange);
        px = plot.nameSign(px, py, "marked point");
    }
    px = plot.scaleBar(px + 8.0, py, scale, unit, 1.0, "between points");
    if (enlargement > 0.0)
        plot.scaleBar(plot.frame().left, plot.legendRow(1), scale, unit, enlargement, "of a residual");
    plot.save(path);
}
