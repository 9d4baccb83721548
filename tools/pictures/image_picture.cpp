// The image frame with signs, residuals as vectors at a scale of their own, and names where they have room.
#include "pictures/image_picture.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

#include "common/text.h"
#include "pictures/svg.h"

namespace fs = std::filesystem;

namespace {

constexpr double kLeft = 76.0, kRight = 34.0, kTop = 104.0, kBottom = 126.0;    // around the image
constexpr double kMostWidth = 960.0, kMostHeight = 720.0, kLeastPaper = 860.0;  // pixels of the paper
constexpr double kVector = 34.0;  // on paper, the longest residual that is not marked
constexpr double kBar = 110.0;    // the scale bar, at most

// What the colours mean.
constexpr const char *kMark = kRed, *kControl = kBlue, *kMarked = kOrange, *kNew = kGreen, *kTie = kFrame;

struct Box {
    double left, top, right, bottom;
};

struct Name {
    double x, y;
    std::string words;
};

class Drawing : public Svg {
public:
    Drawing(const Measurement& m, double scale)
        : Svg(std::max(kLeastPaper, kLeft + m.image.width * scale + kRight),
              kTop + m.image.height * scale + kBottom),
          m_measurement(m),
          m_image(m.image),
          m_scale(scale),
          m_right(x(m.image.width)),
          m_bottom(y(m.image.height)) {}

    // Returns how many names have no room.
    int draw() {
        axes();
        marks();
        measuredPoints();
        newPoints();
        title();
        legend();
        return names();
    }

private:
    double x(double pixel) const { return kLeft + pixel * m_scale; }
    double y(double pixel) const { return kTop + pixel * m_scale; }

    bool isFree(const Box& box) const;
    double enlargementOf(double longest) const;
    void vector(const CXYZ& from, double dx, double dy, double enlargement, const char* colour);
    // Marks the place of a sign as taken; names() draws its name after all signs.
    void sign(const CXYZ& pixel, double half, const CString& name);
    CXYZ markResidual(const CXYZ& mark) const;

    void axes();
    void marks();
    void measuredPoints();
    void newPoints();
    void title();
    void legend();
    int names();

    const Measurement& m_measurement;
    const CImage& m_image;
    const double m_scale;  // pixels of the paper per pixel of the image
    const double m_right, m_bottom;
    // How many times residuals are enlarged; 0: they are not drawn.
    double m_pointEnlargement = 0.0, m_markEnlargement = 0.0;
    std::vector<Box> m_taken;
    std::vector<Name> m_names;
};

bool Drawing::isFree(const Box& box) const {
    return box.left >= kLeft && box.right <= m_right && box.top >= kTop && box.bottom <= m_bottom &&
           std::none_of(m_taken.begin(), m_taken.end(), [&](const Box& other) {
               return box.left < other.right && other.left < box.right && box.top < other.bottom &&
                      other.top < box.bottom;
           });
}

double Drawing::enlargementOf(double longest) const {
    constexpr double kLeast = 1e-6;  // pixels; shorter ones are rounding steps
    return longest > kLeast ? roundStepBelow(kVector / (longest * m_scale)) : 0.0;
}

// A line that ends at the frame where the residual is too long.
void Drawing::vector(const CXYZ& from, double dx, double dy, double enlargement, const char* colour) {
    const double px = x(from.x), py = y(from.y);
    const double along = dx * enlargement * m_scale, down = dy * enlargement * m_scale;
    const auto part = [](double start, double way, double low, double high) {
        return way == 0.0 ? 1.0 : std::min(1.0, ((way > 0.0 ? high : low) - start) / way);
    };
    const double shown = std::min(part(px, along, kLeft, m_right), part(py, down, kTop, m_bottom));
    line(px, py, px + shown * along, py + shown * down, colour, 1.6);
    const double length = std::sqrt(along * along + down * down);
    for (double way = 3.0; way < shown * length; way += 3.0) {
        const double cx = px + way * along / length, cy = py + way * down / length;
        m_taken.push_back({cx - 3.0, cy - 3.0, cx + 3.0, cy + 3.0});
    }
}

void Drawing::sign(const CXYZ& pixel, double half, const CString& name) {
    const double px = x(pixel.x), py = y(pixel.y);
    m_taken.push_back({px - half, py - half, px + half, py + half});
    m_names.push_back({px, py, utf8(name)});
}

void Drawing::axes() {
    const double step = roundStepBelow(160.0 / m_scale);
    for (int k = 0; k * step <= m_image.width; ++k) {
        line(x(k * step), kTop, x(k * step), m_bottom, kGrid, 1.0);
        line(x(k * step), m_bottom, x(k * step), m_bottom + 5.0, kLine, 1.0);
        text(x(k * step), m_bottom + 20.0, "middle", format("%g", k * step));
    }
    for (int k = 0; k * step <= m_image.height; ++k) {
        line(kLeft, y(k * step), m_right, y(k * step), kGrid, 1.0);
        line(kLeft - 5.0, y(k * step), kLeft, y(k * step), kLine, 1.0);
        text(kLeft - 9.0, y(k * step) + 4.0, "end", format("%g", k * step));
    }
    frame(kLeft, kTop, m_right - kLeft, m_bottom - kTop, kLine);
    text((kLeft + m_right) / 2.0, m_bottom + 44.0, "middle", "x (pixels)", "font-size=\"13\"");
    const double middle = (kTop + m_bottom) / 2.0;
    text(22.0, middle, "middle", "y (pixels)",
         format("font-size=\"13\" transform=\"rotate(-90 22 %.1f)\"", middle).c_str());
}

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
    m_markEnlargement = enlargementOf(longest);
    for (int i = 0; i < m_image.markImc.GetSize(); ++i) {
        const CXYZ& mark = m_image.markImc[i];
        const CXYZ& residual = residuals[static_cast<std::size_t>(i)];
        cross(x(mark.x), y(mark.y), kMark);
        vector(mark, residual.x, residual.y, m_markEnlargement, kLine);
        sign(mark, 7.0, mark.name);
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
    m_pointEnlargement = enlargementOf(longest);
    for (int i = 0; i < m_image.imc.GetSize(); ++i) {
        const CXYZ& point = m_image.imc[i];
        const Projection* p = projections[static_cast<std::size_t>(i)];
        const char* colour = p == nullptr ? kTie : p->marked ? kMarked : kControl;
        if (p != nullptr)
            vector(point, p->dx, p->dy, m_pointEnlargement, colour);
        dot(x(point.x), y(point.y), 2.5, colour);
        sign(point, 3.5, point.name);
    }
}

void Drawing::newPoints() {
    for (const Projection& p : m_measurement.projections) {
        if (p.measured >= 0 || p.place != PixelPlace::inside)
            continue;
        ring(x(p.pixel.x), y(p.pixel.y), kNew);
        sign(p.pixel, 5.5, p.pixel.name);
    }
}

void Drawing::title() {
    const std::string name = utf8(m_image.identifier1);
    text(kLeft, 36.0, "start", name.empty() ? "Image measurement" : "Image " + name,
         "font-size=\"19\" font-weight=\"bold\"");
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
    text(kLeft, 60.0, "start", words, "font-size=\"13\"");
    if (m_pointEnlargement > 0.0)
        text(kLeft, 80.0, "start",
             format("Lines show measured minus projected; marked is what exceeds %g times the RMS",
                    kMarkedFrom),
             "font-size=\"13\"");
}

void Drawing::legend() {
    double px = kLeft, py = m_bottom + 74.0;
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

    // A scale bar for the points and one for the marks, with its length in the image.
    px = kLeft;
    py += 28.0;
    const auto bar = [&](double enlargement, double unit, const char* words) {
        if (enlargement == 0.0)
            return;
        const double value = roundStepBelow(kBar / (m_scale * enlargement) * unit);
        const double length = value / unit * enlargement * m_scale;
        line(px, py, px + length, py, kLine, 2.0);
        for (const double end : {px, px + length})
            line(end, py - 4.0, end, py + 4.0, kLine, 2.0);
        px = nameSign(px + length - 16.0, py,
                      format("%g %s, enlarged %g times", value, words, enlargement).c_str());
    };
    bar(m_pointEnlargement, 1.0, "pixels at points");
    bar(m_markEnlargement, m_image.res.x * 1000.0, "µm at fiducial marks");
}

// Each name goes to the first free place around its sign.
int Drawing::names() {
    constexpr double kHeight = 9.0;  // of letters of size 10; widthOf, for size 12, leaves a margin
    constexpr int kPlaces[][2] = {{1, 0}, {-1, 0}, {0, -1}, {0, 1}, {1, -1}, {1, 1}, {-1, -1}, {-1, 1}};
    int unnamed = 0;
    for (const Name& name : m_names) {
        const double width = widthOf(name.words) + 2.0;
        Box box = {};
        const auto isPlaced = [&](double gap, int right, int down) {
            box.left = name.x + right * gap - (1 - right) * width / 2.0;
            box.top = name.y + down * gap - (1 - down) * kHeight / 2.0;
            box.right = box.left + width;
            box.bottom = box.top + kHeight;
            return isFree(box);
        };
        bool placed = false;
        for (const double gap : {5.0, 8.0, 14.0})
            for (const auto& [right, down] : kPlaces)
                placed = placed || isPlaced(gap, right, down);
        if (!placed) {
            ++unnamed;
            continue;
        }
        text(box.left + width / 2.0, box.bottom - 1.0, "middle", name.words, "font-size=\"10\"");
        m_taken.push_back(box);
    }
    return unnamed;
}

}  // namespace

int drawImageMeasurement(const Measurement& m, const fs::path& path) {
    Drawing drawing(m, std::min(kMostWidth / m.image.width, kMostHeight / m.image.height));
    const int unnamed = drawing.draw();
    drawing.save(path);
    return unnamed;
}
