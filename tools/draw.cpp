// draw: a scan area, or the residuals of helmert, as a picture.
#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>

#include "area.h"
#include "common/svg.h"
#include "common/text.h"
#include "options.h"
#include "points.h"
#include "scan_job/picture.h"
#include "subcommands.h"

namespace {

struct Options {
    std::string file, out = "-", page;
};

struct Residual {
    std::string name;
    double x, y, vx, vy;
};

bool isResidualTable(const TextFile& file) { return file.line(0).rfind("pairs,", 0) == 0; }

std::vector<Residual> residualsOf(const TextFile& file) {
    std::vector<Residual> residuals;
    for (std::size_t i = 0; i < file.lines().size(); ++i) {
        const auto fields = fieldsOf(file.line(i));
        if (fields[0] != "residual")
            continue;
        double values[4] = {};
        bool good = fields.size() == 6;
        for (std::size_t k = 0; good && k < 4; ++k) {
            const auto value = numberOf(fields[k + 2]);
            good = value.has_value();
            values[k] = value.value_or(0.0);
        }
        if (!good)
            file.fail(static_cast<int>(i) + 1, "expected residual,NAME,X,Y,VX,VY");
        residuals.push_back({std::string(fields[1]), values[0], values[1], values[2], values[3]});
    }
    if (residuals.empty())
        file.fail(0, "expected lines residual,NAME,X,Y,VX,VY");
    return residuals;
}

struct Extent {
    double least = std::numeric_limits<double>::infinity(), most = -least;
    void add(double value) {
        least = std::min(least, value);
        most = std::max(most, value);
    }
    double size() const { return most - least; }
};

// The largest of 1, 2 and 5 times a power of ten that does not exceed the value.
double roundBelow(double value) {
    const double unit = std::pow(10.0, std::floor(std::log10(value)));
    for (const double step : {5.0, 2.0})
        if (step * unit <= value)
            return step * unit;
    return unit;
}

// Points with x upward and y to the right, residuals as arrows at a scale of their own.
void drawResiduals(const std::vector<Residual>& residuals, const std::string& out) {
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
        const double length = roundBelow(longest), y = height - 24.0;
        picture.line(20.0, y, 20.0 + length * arrow, y, kRed, 2.0);
        picture.text(28.0 + length * arrow, y + 4.0, "start", format("%g", length));
    }
    picture.save(out);
}

void run(const Options& options) {
    useCodePage(options.page);
    const TextFile file(options.file);
    if (isResidualTable(file))
        return drawResiduals(residualsOf(file), options.out);
    ScanJob job;
    readArea(file, job, false);
    drawPicture(job, options.out);
}

}  // namespace

void addDraw(CLI::App& program, int&) {
    const auto options = std::make_shared<Options>();
    CLI::App* command = program.add_subcommand("draw", "Draws a scan area, or the residuals of helmert");
    command->footer("The picture is SVG. \"fieldscan helmert FROM TO | fieldscan draw -\" draws residuals.");
    command
        ->add_option("FILE", options->file,
                     "a scan-area file, an outline (lines name,horizontal angle,zenith angle,0 in degrees),\n"
                     "or what helmert gives")
        ->required();
    command->add_option("--out", options->out, "the picture, \"-\" for standard output")
        ->capture_default_str();
    addCodePageOption(*command, "--page", options->page, "code page of the file");
    command->callback([options] { run(*options); });
}
