// Horizontal angles are drawn from the middle of the area, so that it stays whole across the zero direction.
#include "pictures/scan_picture.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "common/text.h"
#include "pictures/plot.h"

namespace fs = std::filesystem;

namespace {

// What the colours mean.
constexpr const char *kInside = kBlue, *kOutside = kOrange, *kZero = kRed, *kShot = kGreen;

constexpr double kMostWidth = 960.0, kLeastWidth = 700.0;  // of the frame
constexpr double kMostHeight = 640.0, kLeastHeight = 300.0;

std::string degrees(double value, double step) { return stepLabel(value, step) + "°"; }

// The smallest step of round numbers that keeps the ticks as many pixels apart as hasRoom wants.
template <class HasRoom>
double degreeStep(HasRoom hasRoom) {
    for (double unit = 0.00001; unit < 10.0; unit *= 10.0)
        for (const double step : {unit, 2.0 * unit, 5.0 * unit})
            if (step < 15.0 && hasRoom(step))
                return step;
    for (const double step : {10.0, 15.0, 30.0, 45.0})
        if (hasRoom(step))
            return step;
    return 90.0;
}

template <class Label>
void addTicks(Axis& axis, double step, double from, double to, double origin, Label label) {
    for (int k = static_cast<int>(std::ceil(from / step)); k * step <= to; ++k)
        axis.ticks.push_back({k * step - origin, label(k)});
}

// The area and a margin of 15 % around it at equal scale; a flat strip is drawn higher, so that it can be
// read.
struct Axes {
    explicit Axes(const ScanJob& job) {
        constexpr double kMargin = 0.15;
        double width = std::min(360.0, job.width() * (1.0 + 2.0 * kMargin));
        elevation.first = job.top() + kMargin * job.height();
        elevation.last = job.bottom() - kMargin * job.height();
        const double height = elevation.first - elevation.last;
        horizontal.scale = std::min(kMostWidth / width, kMostHeight / height);
        width = std::min(360.0, std::max(width, kLeastWidth / horizontal.scale));
        horizontal.first = -width / 2.0;
        horizontal.last = width / 2.0;
        elevation.scale = std::max(horizontal.scale, kLeastHeight / height);

        const double middle = job.left() + job.width() / 2.0;
        const double stepX = degreeStep([&](double step) {
            return step * horizontal.scale >= std::max(64.0, widthOf(degrees(359.0, step)) + 16.0);
        });
        const int around = static_cast<int>(std::lround(360.0 / stepX));
        addTicks(horizontal, stepX, middle + horizontal.first, middle + horizontal.last, middle,
                 [&](int k) { return degrees((k + around) % around * stepX, stepX); });
        const double stepY = degreeStep([&](double step) { return step * elevation.scale >= 36.0; });
        addTicks(elevation, stepY, std::max(-90.0, elevation.last), std::min(90.0, elevation.first), 0.0,
                 [&](int k) { return degrees(k * stepY, stepY); });

        const double stretch = elevation.scale / horizontal.scale;
        if (stretch > 1.0)
            elevation.title += format(", drawn %.*f times as large", stretch < 10.0 ? 1 : 0, stretch);
    }

    Axis horizontal{"horizontal angle", 0.0, 0.0, 1.0, {}}, elevation{"elevation", 0.0, 0.0, 1.0, {}};
};

class Drawing : public Plot {
public:
    Drawing(const ScanJob& job, const Axes& axes)
        : Plot(axes.horizontal, axes.elevation, 1),
          m_job(job),
          m_scaleX(axes.horizontal.scale),
          m_scaleY(axes.elevation.scale) {}

    // Returns how many points lie beyond the view.
    int draw() {
        axes();
        if (shows(0.0, 0.0))
            line(frame().left, y(0.0), frame().right, y(0.0), kFrame, 1.0);  // the horizon
        const int beyond = points();
        cornerFrame();
        outline();
        zeroDirection();
        corners();
        shots();
        title(beyond);
        legend();
        return beyond;
    }

private:
    bool showsZero() const { return shows(m_job.fromMiddle(0.0), m_job.top()); }

    int points();
    void outline();
    void cornerFrame();
    void zeroDirection();
    void shots();
    void corners();
    void title(int beyond);
    void legend();

    const ScanJob& m_job;
    const double m_scaleX, m_scaleY;  // pixels per degree
};

int Drawing::points() {
    std::string inside, outside;
    int beyond = 0;
    for (const Sight& sight : m_job.sights) {
        if (sight.place == SightPlace::atStation)
            continue;
        const double across = m_job.fromMiddle(sight.direction), up = signedElevation(sight.elevation);
        if (shows(across, up))
            (sight.place == SightPlace::inside ? inside : outside) += dotAt(x(across), y(up));
        else
            ++beyond;
    }
    const double size = m_job.sights.size() > 20000 ? 1.5 : 3.0;
    dots(outside, kOutside, size);
    dots(inside, kInside, size);
    return beyond;
}

void Drawing::cornerFrame() {
    const double left = x(m_job.width() / -2.0), top = y(m_job.top());
    add(
        format("<rect x=\"%.1f\" y=\"%.1f\" width=\"%.1f\" height=\"%.1f\" fill=\"none\" stroke=\"%s\" "
               "stroke-width=\"1.2\" stroke-dasharray=\"2 3\"/>",
               left, top, m_job.width() * m_scaleX, m_job.height() * m_scaleY, kFrame));
}

void Drawing::outline() {
    std::string way;
    const CPolyline& vertices = m_job.area.outlinePolyline;
    if (vertices.GetVertexSize() == 0)
        return;
    for (int i = 0; i < vertices.GetVertexSize(); ++i) {
        const CVertex* vertex = vertices.GetVertex(static_cast<unsigned int>(i));
        way += format("%c%.1f %.1f", i == 0 ? 'M' : 'L', x(m_job.fromMiddle(vertex->x)),
                      y(signedElevation(vertex->y)));
    }
    add(
        format("<path d=\"%sZ\" fill=\"%s\" fill-opacity=\"0.05\" stroke=\"%s\" stroke-width=\"2\" "
               "stroke-linejoin=\"round\"/>",
               way.c_str(), kInside, kLine));
}

void Drawing::zeroDirection() {
    if (!showsZero())
        return;
    const std::string words = "zero direction";
    const double px = x(m_job.fromMiddle(0.0)), half = widthOf(words) / 2.0;
    line(px, frame().top, px, frame().bottom, kZero, 1.5, "8 5");
    text(std::clamp(px, frame().left + half, frame().right - half), frame().top - 8.0, "middle", words,
         format("fill=\"%s\"", kZero).c_str());
}

// Crosses that shrink where the shots are close together.
void Drawing::shots() {
    const CPolyline& shots = m_job.area.shootPolyline;
    const auto half = [](double length, int count) {
        return count > 1 ? std::clamp(0.35 * length / (count - 1), 1.0, 6.0) : 6.0;
    };
    const CScanArea& area = m_job.area;
    const double size = std::min(half(m_job.width() * m_scaleX, area.columnCount),
                                 half(m_job.height() * m_scaleY, area.rowCount));
    std::string crosses;
    for (int i = 0; i < shots.GetVertexSize(); ++i) {
        const CVertex* shot = shots.GetVertex(static_cast<unsigned int>(i));
        const double px = x(m_job.fromMiddle(shot->x)), py = y(90.0 - shot->z);
        crosses +=
            format("M%.1f %.1fh%.1fM%.1f %.1fv%.1f", px - size, py, 2.0 * size, px, py - size, 2.0 * size);
    }
    path(crosses, kShot, std::max(0.8, size / 3.0));
}

// Labels go outside the corner frame, on white, because points may lie below them. The squares leave room for
// the shots at the corners.
void Drawing::corners() {
    const auto label = [&](double fromMiddle, double angle, double elevation, const char* name, bool above) {
        const double px = x(fromMiddle), py = y(elevation);
        const std::string words =
            std::string(name) + " " + degrees(angle, 0.0001) + ", " + degrees(elevation, 0.0001);
        const double width = widthOf(words) + 6.0;
        add(
            format("<rect x=\"%.1f\" y=\"%.1f\" width=\"%.1f\" height=\"16\" fill=\"white\" "
                   "fill-opacity=\"0.85\"/>",
                   above ? px - 3.0 : px - width + 3.0, above ? py - 29.0 : py + 13.0, width));
        text(px, above ? py - 17.0 : py + 25.0, above ? "start" : "end", words);
        add(
            format("<rect x=\"%.1f\" y=\"%.1f\" width=\"18\" height=\"18\" fill=\"none\" stroke=\"%s\" "
                   "stroke-width=\"1.5\"/>",
                   px - 9.0, py - 9.0, kLine));
    };
    label(m_job.width() / -2.0, m_job.left(), m_job.top(), "top left", true);
    label(m_job.width() / 2.0, m_job.right(), m_job.bottom(), "bottom right", false);
}

void Drawing::title(int beyond) {
    if (m_job.points.IsEmpty()) {
        const CScanArea& area = m_job.area;
        std::vector<std::string> parts;
        if (!area.outlineAngles.IsEmpty())
            parts.push_back(format("outline of %d vertices", area.outlineAngles.GetSize()));
        if (!area.shootAngles.IsEmpty())
            parts.push_back(format("%d shots in %d columns and %d rows", area.shootAngles.GetSize(),
                                   area.columnCount, area.rowCount));
        std::string words;
        for (const std::string& part : parts)
            words += (words.empty() ? "" : "; ") + part;
        heading("Scan area", {words});
        return;
    }
    const std::string station = toUtf8(m_job.station.name);
    std::string counts = format("%d points: %d inside the outline, %d outside", m_job.points.GetSize(),
                                m_job.pointsAt(SightPlace::inside), m_job.pointsAt(SightPlace::outside));
    if (const int atStation = m_job.pointsAt(SightPlace::atStation))
        counts += format(", %d straight above or below the station", atStation);
    if (beyond > 0)
        counts += format("; %d points lie beyond this view", beyond);
    heading(station.empty() ? "Scan job" : "Scan job from station " + station, {counts});
}

void Drawing::legend() {
    const double py = legendRow(0);
    double px = frame().left;
    const auto name = [&](const char* words) { px = nameSign(px, py, words); };
    if (!m_job.points.IsEmpty()) {
        dot(px + 10.0, py, 4.0, kInside);
        name("inside");
        dot(px + 10.0, py, 4.0, kOutside);
        name("outside");
    }
    if (m_job.area.outlinePolyline.GetVertexSize() > 0) {
        line(px, py, px + 20.0, py, kLine, 2.0);
        name("outline");
    }
    line(px, py, px + 20.0, py, kFrame, 1.2, "2 3");
    name("corner frame");
    if (m_job.area.shootPolyline.GetVertexSize() > 0) {
        cross(px + 10.0, py, kShot);
        name("shot");
    }
    if (showsZero()) {
        line(px, py, px + 20.0, py, kZero, 1.5, "8 5");
        name("zero direction");
    }
}

}  // namespace

int drawScanJob(const ScanJob& job, const fs::path& path) {
    Drawing drawing(job, Axes(job));
    const int beyond = drawing.draw();
    drawing.save(path);
    return beyond;
}
