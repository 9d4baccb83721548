// The image frame with signs, residuals as vectors at a scale of their own, and names where they have room.
#include "pictures/image_picture.h"

#include <algorithm>
#include <string>
#include <utility>

#include "common/text.h"
#include "pictures/plot.h"

namespace fs = std::filesystem;

namespace {

constexpr double kMostWidth = 960.0, kMostHeight = 720.0;  // of the frame

// What the colours mean.
constexpr const char *kMark = kRed, *kControl = kBlue, *kMarked = kOrange, *kNew = kGreen, *kTie = kFrame;

Axis axisOver(const char* title, int pixels, double scale) {
    Axis axis{title, 0.0, static_cast<double>(pixels), scale, {}};
    setDecimalTicks(axis);
    return axis;
}

class Drawing : public Plot {
public:
    Drawing(const Measurement& m, double scale)
        : Plot(axisOver("x (pixels)", m.image.width, scale), axisOver("y (pixels)", m.image.height, scale),
               2),
          m_measurement(m),
          m_image(m.image),
          m_scale(scale) {}

    // Returns how many names have no room.
    int draw() {
        axes();
        measuredPoints();
        newPoints();
        marks();
        title();
        legend();
        return names();
    }

private:
    void residual(const CXYZ& from, const CXYZ& difference, double enlargement, const char* colour) {
        const double scale = enlargement * m_scale;
        if (scale > 0.0)
            path(vector(x(from.x), y(from.y), difference.x * scale, difference.y * scale), colour,
                 m_image.imc.GetSize() > kMany ? 1.0 : 1.6);
    }
    void signAt(const CXYZ& pixel, double half, const CString& name, bool isMarked = false) {
        sign(x(pixel.x), y(pixel.y), half, toUtf8(name), isMarked);
    }
    CXYZ markResidual(const CXYZ& mark) const;

    void marks();
    void measuredPoints();
    void newPoints();
    void title();
    void legend();

    const Measurement& m_measurement;
    const CImage& m_image;
    const double m_scale;  // pixels of the paper per pixel of the image
    // How many times residuals are enlarged; 0: they are not drawn.
    double m_pointEnlargement = 0.0, m_markEnlargement = 0.0;
};

// The measured mark minus the calibrated one, brought into the image by the inner orientation: pixels.
CXYZ Drawing::markResidual(const CXYZ& mark) const {
    for (int i = 0; i < m_image.camera.marks.GetSize(); ++i) {
        CXYZ pixel;
        if (m_image.camera.markNames[i] == mark.name &&
            m_image.PhcToImc(m_image.camera.marks[i] - m_image.camera.pp, pixel, 0, 0.0) == 1)
            return mark - pixel;
    }
    return CXYZ();
}

void Drawing::marks() {
    std::vector<CXYZ> residuals;
    double longest = 0.0;
    for (int i = 0; i < m_image.markImc.GetSize(); ++i) {
        residuals.push_back(markResidual(m_image.markImc[i]));
        longest = std::max(longest, residuals.back().Len());
    }
    m_markEnlargement = enlargementOf(longest, m_scale, vectorLength(m_image.markImc.GetSize()));
    for (int i = 0; i < m_image.markImc.GetSize(); ++i) {
        const CXYZ& mark = m_image.markImc[i];
        cross(x(mark.x), y(mark.y), kMark);
        residual(mark, residuals[static_cast<std::size_t>(i)], m_markEnlargement, kLine);
        signAt(mark, 7.0, mark.name, true);
    }
}

void Drawing::measuredPoints() {
    std::vector<const Projection*> projections(static_cast<std::size_t>(m_image.imc.GetSize()));
    double longest = 0.0;
    for (const Projection& p : m_measurement.projections) {
        if (!p.isCompared())
            continue;
        projections[static_cast<std::size_t>(p.measured)] = &p;
        longest = std::max(longest, p.marked ? 0.0 : p.length());
    }
    const int count = m_image.imc.GetSize();
    m_pointEnlargement = enlargementOf(longest, m_scale, vectorLength(count));
    const double size = count > kMany ? kSmallDot : kDot;
    for (int i = 0; i < count; ++i) {
        const CXYZ& point = m_image.imc[i];
        const Projection* p = projections[static_cast<std::size_t>(i)];
        const char* colour = p == nullptr ? kTie : p->marked ? kMarked : kControl;
        if (p != nullptr)
            residual(point, CXYZ(p->dx, p->dy, 0.0), m_pointEnlargement, colour);
        dot(x(point.x), y(point.y), size / 2.0, colour);
        signAt(point, size / 2.0 + 1.0, point.name, p != nullptr && p->marked);
    }
}

void Drawing::newPoints() {
    for (const Projection& p : m_measurement.projections) {
        if (p.measured >= 0 || p.place != PixelPlace::inside)
            continue;
        ring(x(p.pixel.x), y(p.pixel.y), kNew);
        signAt(p.pixel, 5.5, p.pixel.name);
    }
}

void Drawing::title() {
    const std::string name = toUtf8(m_image.identifier1);
    const char* inner = m_image.innOri == INNORI_FIDUCIAL_LSQ       ? "affine inner orientation"
                        : m_image.innOri == INNORI_FIDUCIAL_HELMERT ? "Helmert inner orientation"
                                                                    : "no fiducial marks";
    const Comparison& c = m_measurement.comparison;
    std::string words =
        format("%d × %d pixels, %s; %d control points", m_image.width, m_image.height, inner, c.count);
    if (c.count > 0)
        words += format(", RMS %.2f pixels", c.length);
    if (c.markedCount > 0)
        words += format(", %.2f without the marked ones", c.others);
    std::vector<std::string> lines = {words};
    if (m_pointEnlargement > 0.0)
        lines.push_back(format("Lines show measured minus projected; marked is what exceeds %g times the RMS",
                               kMarkedFrom));
    heading(name.empty() ? "Image measurement" : "Image " + name, lines);
}

void Drawing::legend() {
    double px = frame().left, py = legendRow(0);
    const auto name = [&](const char* words) { px = nameSign(px, py, words); };
    if (!m_image.markImc.IsEmpty()) {
        cross(px + 10.0, py, kMark);
        name("fiducial mark");
    }
    for (const auto& [colour, words] :
         {std::pair(kControl, "control point"), std::pair(kMarked, "marked control point"),
          std::pair(kTie, "measured only")}) {
        dot(px + 10.0, py, 2.5, colour);
        name(words);
    }
    ring(px + 10.0, py, kNew);
    name("new point, projected");

    // The lengths of residuals: in the image, and for marks in the camera.
    px = frame().left;
    py = legendRow(1);
    if (m_pointEnlargement > 0.0)
        px = scaleBar(px, py, m_scale, "pixels", m_pointEnlargement, "at points");
    if (m_markEnlargement > 0.0)
        scaleBar(px, py, m_scale / (m_image.res.x * 1000.0), "µm", m_markEnlargement, "at fiducial marks");
}

}  // namespace

int drawImageMeasurement(const Measurement& m, const fs::path& path) {
    Drawing drawing(m, std::min(kMostWidth / m.image.width, kMostHeight / m.image.height));
    const int unnamed = drawing.draw();
    drawing.save(path);
    return unnamed;
}
