// Horizontal angles are drawn from the middle of the area, so that it stays whole across the zero direction.
#include "pictures/scan_picture.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "common/text.h"
#include "pictures/scan_view.h"
#include "pictures/svg.h"

namespace fs = std::filesystem;

namespace {

// What the colours mean.
constexpr const char *kInside = kBlue, *kOutside = kOrange, *kZero = kRed, *kShot = kGreen;

int firstTick(double from, double step) { return static_cast<int>(std::ceil(from / step)); }

std::string degrees(double value, double step) {
    const int decimals = step >= 1.0 ? 0 : static_cast<int>(std::ceil(-std::log10(step) - 1e-9));
    const std::string digits = format("%.*f°", decimals, std::fabs(value));
    return value < 0.0 ? "−" + digits : digits;
}

class Drawing : public Svg {
public:
    Drawing(const ScanJob& job, const View& view)
        : Svg(view.paperWidth(), view.paperHeight()), m_job(job), m_view(view) {}

    // Returns how many points lie beyond the view.
    int draw() {
        axes();
        const int beyond = points();
        cornerFrame();
        outline();
        zeroDirection();
        shots();
        corners();
        title(beyond);
        legend();
        return beyond;
    }

private:
    bool showsZero() const {
        const double zero = m_job.fromMiddle(0.0);
        return zero >= m_view.left() && zero <= m_view.right();
    }

    void axes();
    int points();
    void outline();
    void cornerFrame();
    void zeroDirection();
    void shots();
    void corners();
    void title(int beyond);
    void legend();

    const ScanJob& m_job;
    const View& m_view;
};

void Drawing::axes() {
    const double left = m_view.x(m_view.left()), right = m_view.x(m_view.right());
    const double top = m_view.y(m_view.top()), bottom = m_view.y(m_view.bottom());

    const double middle = m_job.left() + m_job.width() / 2.0;
    const double stepX = tickStep(m_view.scaleX(), 64.0);
    const int around = static_cast<int>(std::lround(360.0 / stepX));
    for (int k = firstTick(middle + m_view.left(), stepX); k * stepX <= middle + m_view.right(); ++k) {
        const double x = m_view.x(k * stepX - middle);
        line(x, top, x, bottom, kGrid, 1.0);
        line(x, bottom, x, bottom + 5.0, kLine, 1.0);
        text(x, bottom + 20.0, "middle", degrees((k + around) % around * stepX, stepX));
    }
    const double stepY = tickStep(m_view.scaleY(), 36.0);
    const double zenith = std::min(90.0, m_view.top()), nadir = std::max(-90.0, m_view.bottom());
    for (int k = firstTick(nadir, stepY); k * stepY <= zenith; ++k) {
        const double y = m_view.y(k * stepY);
        line(left, y, right, y, k == 0 ? kFrame : kGrid, 1.0);
        line(left - 5.0, y, left, y, kLine, 1.0);
        text(left - 9.0, y + 4.0, "end", degrees(k * stepY, stepY));
    }
    frame(left, top, right - left, bottom - top, kLine);

    text((left + right) / 2.0, bottom + 44.0, "middle", "horizontal angle", "font-size=\"13\"");
    const double stretch = m_view.scaleY() / m_view.scaleX();
    const std::string words =
        stretch > 1.0 ? format("elevation, drawn %.1f times as large", stretch) : "elevation";
    const std::string turned =
        format("font-size=\"13\" transform=\"rotate(-90 22 %.1f)\"", (top + bottom) / 2.0);
    text(22.0, (top + bottom) / 2.0, "middle", words, turned.c_str());
}

// Dots: lines of no length with round ends, which take less room in the file than circles.
int Drawing::points() {
    std::string inside, outside;
    int beyond = 0;
    for (const Sight& sight : m_job.sights) {
        if (sight.place == SightPlace::atStation)
            continue;
        const double x = m_job.fromMiddle(sight.direction), y = signedElevation(sight.elevation);
        if (m_view.shows(x, y))
            (sight.place == SightPlace::inside ? inside : outside) +=
                format("M%.1f %.1fh0", m_view.x(x), m_view.y(y));
        else
            ++beyond;
    }
    const double size = m_job.sights.size() > 20000 ? 1.5 : 3.0;
    for (const auto& [dots, colour] : {std::pair(outside, kOutside), std::pair(inside, kInside)})
        if (!dots.empty())
            add(format("<path d=\"%s\" stroke=\"%s\" stroke-width=\"%.1f\" stroke-linecap=\"round\"/>",
                       dots.c_str(), colour, size));
    return beyond;
}

void Drawing::cornerFrame() {
    const double left = m_view.x(m_job.width() / -2.0), top = m_view.y(m_job.top());
    add(
        format("<rect x=\"%.1f\" y=\"%.1f\" width=\"%.1f\" height=\"%.1f\" fill=\"none\" stroke=\"%s\" "
               "stroke-width=\"1.2\" stroke-dasharray=\"2 3\"/>",
               left, top, m_job.width() * m_view.scaleX(), m_job.height() * m_view.scaleY(), kFrame));
}

void Drawing::outline() {
    std::string way;
    const CPolyline& vertices = m_job.area.outlinePolyline;
    if (vertices.GetVertexSize() == 0)
        return;
    for (int i = 0; i < vertices.GetVertexSize(); ++i) {
        const CVertex* vertex = vertices.GetVertex(static_cast<unsigned int>(i));
        way += format("%c%.1f %.1f", i == 0 ? 'M' : 'L', m_view.x(m_job.fromMiddle(vertex->x)),
                      m_view.y(signedElevation(vertex->y)));
    }
    add(
        format("<path d=\"%sZ\" fill=\"%s\" fill-opacity=\"0.05\" stroke=\"%s\" stroke-width=\"2\" "
               "stroke-linejoin=\"round\"/>",
               way.c_str(), kInside, kLine));
}

void Drawing::zeroDirection() {
    if (!showsZero())
        return;
    const double x = m_view.x(m_job.fromMiddle(0.0)), top = m_view.y(m_view.top());
    line(x, top, x, m_view.y(m_view.bottom()), kZero, 1.5, "8 5");
    text(x, top - 8.0, "middle", "zero direction", format("fill=\"%s\"", kZero).c_str());
}

void Drawing::shots() {
    const CPolyline& shots = m_job.area.shootPolyline;
    for (int i = 0; i < shots.GetVertexSize(); ++i) {
        const CVertex* shot = shots.GetVertex(static_cast<unsigned int>(i));
        cross(m_view.x(m_job.fromMiddle(shot->x)), m_view.y(90.0 - shot->z), kShot);
    }
}

// Labels go outside the corner frame, on white, because points may lie below them.
void Drawing::corners() {
    const auto label = [&](double fromMiddle, double angle, double elevation, const char* name, bool above) {
        const double x = m_view.x(fromMiddle), y = m_view.y(elevation);
        const std::string words =
            std::string(name) + " " + degrees(angle, 0.01) + ", " + degrees(elevation, 0.01);
        const double width = widthOf(words) + 6.0;
        add(
            format("<rect x=\"%.1f\" y=\"%.1f\" width=\"%.1f\" height=\"16\" fill=\"white\" "
                   "fill-opacity=\"0.85\"/>",
                   above ? x - 3.0 : x - width + 3.0, above ? y - 23.0 : y + 7.0, width));
        text(x, above ? y - 11.0 : y + 19.0, above ? "start" : "end", words);
        add(
            format("<rect x=\"%.1f\" y=\"%.1f\" width=\"8\" height=\"8\" fill=\"white\" stroke=\"%s\" "
                   "stroke-width=\"2\"/>",
                   x - 4.0, y - 4.0, kLine));
    };
    label(m_job.width() / -2.0, m_job.left(), m_job.top(), "top left", true);
    label(m_job.width() / 2.0, m_job.right(), m_job.bottom(), "bottom right", false);
}

void Drawing::title(int beyond) {
    const std::string station = utf8(m_job.station.name);
    if (m_job.points.IsEmpty()) {
        text(View::kLeft, 36.0, "start", "Scan area", "font-size=\"19\" font-weight=\"bold\"");
        text(View::kLeft, 60.0, "start",
             format("%d shots; outline of %d vertices", m_job.area.shootAngles.GetSize(),
                    m_job.area.outlineAngles.GetSize()),
             "font-size=\"13\"");
        return;
    }
    text(View::kLeft, 36.0, "start", station.empty() ? "Scan job" : "Scan job from station " + station,
         "font-size=\"19\" font-weight=\"bold\"");
    std::string counts = format("%d points: %d inside the outline, %d outside", m_job.points.GetSize(),
                                m_job.pointsAt(SightPlace::inside), m_job.pointsAt(SightPlace::outside));
    if (const int atStation = m_job.pointsAt(SightPlace::atStation))
        counts += format(", %d straight above or below the station", atStation);
    if (beyond > 0)
        counts += format("; %d points lie beyond this view", beyond);
    text(View::kLeft, 60.0, "start", counts, "font-size=\"13\"");
}

void Drawing::legend() {
    const double y = m_view.paperHeight() - 24.0;
    double x = View::kLeft;
    const auto name = [&](const char* words) { x = nameSign(x, y, words); };
    if (!m_job.points.IsEmpty()) {
        dot(x + 10.0, y, 4.0, kInside);
        name("inside");
        dot(x + 10.0, y, 4.0, kOutside);
        name("outside");
    }
    line(x, y, x + 20.0, y, kLine, 2.0);
    name("outline");
    line(x, y, x + 20.0, y, kFrame, 1.2, "2 3");
    name("corner frame");
    cross(x + 10.0, y, kShot);
    name("shot");
    if (showsZero()) {
        line(x, y, x + 20.0, y, kZero, 1.5, "8 5");
        name("zero direction");
    }
}

}  // namespace

int drawScanJob(const ScanJob& job, const fs::path& path) {
    const View view(job);
    Drawing drawing(job, view);
    const int beyond = drawing.draw();
    drawing.save(path);
    return beyond;
}
