// Points at equal scale, residuals as vectors at a scale of their own.
#include "pictures/residual_picture.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "common/text.h"
#include "pictures/plot.h"

namespace {

constexpr double kMostWidth = 960.0, kMostHeight = 720.0;  // of the frame
constexpr double kLeastSide = 260.0;
constexpr double kMargin = 44.0;      // from the outermost points to the frame
constexpr double kMarkedFrom = 3.0;   // times the root mean square
constexpr double kLeastVector = 9.0;  // of the longest, where points are close together

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
        const auto side = [&](double size) { return std::max(kLeastSide, size * scale + 2.0 * kMargin); };
        const double halfX = side(sizeX) / scale / 2.0, halfY = side(sizeY) / scale / 2.0;
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

// The longest vector: shorter where many points would otherwise be lost under those of their neighbours.
double vectorLength(const Axes& axes, std::size_t points) {
    const double spacing = std::sqrt(axes.across.length() * axes.up.length() / static_cast<double>(points));
    return std::clamp(1.2 * spacing, kLeastVector, kVector);
}

}  // namespace

void drawResiduals(const std::vector<Residual>& residuals, const ResidualView& view,
                   const std::filesystem::path& path) {
    std::vector<Arrow> arrows;
    for (const Residual& r : residuals)
        arrows.push_back(view.xIsUpward ? Arrow{&r, r.y, r.x, r.vy, r.vx, false}
                                        : Arrow{&r, r.x, r.y, r.vx, r.vy, false});
    const Statistics s = markLongOnes(arrows);
    // Marked ones last, above the others; their names first, because they are looked for.
    std::stable_partition(arrows.begin(), arrows.end(), [](const Arrow& a) { return !a.marked; });
    const Axes axes(arrows, view);
    const double scale = axes.across.scale;
    const double enlargement = enlargementOf(s.longest, scale, vectorLength(axes, arrows.size()));

    Plot plot(axes.across, axes.up, enlargement > 0.0 ? 2 : 1);
    plot.axes();
    const double dotSize = arrows.size() > 1000 ? 3.0 : 5.0;
    std::string points[2], vectors[2];
    for (const Arrow& a : arrows) {
        const double px = plot.x(a.across), py = plot.y(a.up);
        points[a.marked ? 1 : 0] += Svg::dotAt(px, py);
        if (enlargement > 0.0)
            vectors[a.marked ? 1 : 0] +=
                plot.vector(px, py, a.dx * scale * enlargement, -a.dy * scale * enlargement);
    }
    for (auto a = arrows.rbegin(); a != arrows.rend(); ++a)
        plot.sign(plot.x(a->across), plot.y(a->up), dotSize / 2.0 + 1.0, a->residual->name);
    for (const int marked : {0, 1}) {
        plot.path(vectors[marked], marked == 1 ? kOrange : kBlue, arrows.size() > 1000 ? 1.0 : 1.6);
        plot.dots(points[marked], marked == 1 ? kOrange : kLine, dotSize);
    }
    const int unnamed = plot.names();

    const char* unit = view.unit.c_str();
    std::string counts = format("%d points; RMS %.6g %s in x, %.6g in y, %.6g in length",
                                static_cast<int>(arrows.size()), s.rmsX, unit, s.rmsY, s.length);
    if (s.marked > 0)
        counts += format("; %.6g without the marked ones", s.others);
    std::string remarks;
    if (s.marked > 0)
        remarks = format("%d marked: longer than %g times the RMS", s.marked, kMarkedFrom);
    if (unnamed > 0)
        remarks += (remarks.empty() ? "" : "; ") + format("%d names have no room", unnamed);
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
