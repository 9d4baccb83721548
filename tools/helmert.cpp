// helmert: a plane similarity or affine transformation from two point files, by CHelmert and CPlaneAffine.
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "common/angles.h"
#include "common/point_output.h"
#include "common/text.h"
#include "formats/checked_files.h"
#include "options/example.h"
#include "options/file_options.h"
#include "subcommands.h"

namespace {

struct Options {
    std::string from, to, apply, out = "-", page;
    bool isAffine = false;
};

using Points = CArray<CXYZ, CXYZ&>;

// Of a pair, coordinates from the centroids: the equations of x' and of y', coefficients and observation.
template <class Transformation>
std::vector<std::vector<double>> equationsOf(const CXYZ& s, const CXYZ& t);
template <>
std::vector<std::vector<double>> equationsOf<CHelmert>(const CXYZ& s, const CXYZ& t) {
    return {{s.x, -s.y, 1.0, 0.0, t.x}, {s.y, s.x, 0.0, 1.0, t.y}};
}
template <>
std::vector<std::vector<double>> equationsOf<CPlaneAffine>(const CXYZ& s, const CXYZ& t) {
    return {{s.x, s.y, 0.0, 0.0, 1.0, 0.0, t.x}, {0.0, 0.0, s.x, s.y, 0.0, 1.0, t.y}};
}

CXYZ centroid(const Points& points) {
    CXYZ sum;
    for (int i = 0; i < points.GetSize(); ++i)
        sum += points[i];
    return sum * (1.0 / points.GetSize());
}

// Redundancy and standardised residuals: equation 2 i is x of pair i, 2 i + 1 its y. Returns false when no
// coordinate is controlled, or the pairs fit to the six decimals shown, where residuals are rounding errors.
// About the centroids the equations have their figures at coordinates of a national grid too.
template <class Transformation>
bool standardise(const Transformation& fit, CPrecision& precision) {
    constexpr double kExact = 0.5e-6;
    const int pairs = fit.targetPoints.GetSize(), parameters = fit.parameters.GetSize();
    const CXYZ source = centroid(fit.sourcePoints), target = centroid(fit.targetPoints);
    CLeastSq adjustment(2 * pairs, parameters);
    for (int i = 0; i < pairs; ++i)
        for (const auto& row :
             equationsOf<Transformation>(fit.sourcePoints[i] - source, fit.targetPoints[i] - target))
            for (int column = 0; column <= parameters; ++column)
                adjustment.SetObeq(column, row[static_cast<std::size_t>(column)]);
    return adjustment.Solve() == 1 && precision.CalFigures(adjustment, 1.0) == 1 &&
           precision.estimatedSigma0 >= kExact;
}

// CEquationPrecision has the other sign: target minus transformed source.
std::string standardised(const CEquationPrecision& equation) {
    return equation.controlled ? "," + fixedText(-equation.tau, 2) : ",";
}

template <class Transformation>
void printResiduals(const Transformation& fit) {
    CPrecision precision;
    const bool isControlled = standardise(fit, precision);
    for (int i = 0; i < fit.residuals.GetSize(); ++i) {
        const CXYZ &target = fit.targetPoints[i], &residual = fit.residuals[i];
        std::printf("residual,%s,%.6f,%.6f,%.6f,%.6f", toUtf8(target.name).c_str(), target.x, target.y,
                    residual.x, residual.y);
        if (isControlled)
            std::printf("%s%s%s", standardised(precision.equations[2 * i]).c_str(),
                        standardised(precision.equations[2 * i + 1]).c_str(),
                        precision.largest >= 0 && precision.largest / 2 == i ? ",largest" : "");
        std::printf("\n");
    }
    std::printf("rms,%.6f,%.6f\n", fit.RMS.x, fit.RMS.y);
    std::printf("maximum,%.6f,%.6f\n", fit.maximum.x, fit.maximum.y);
    if (isControlled)
        std::printf("sigma0,%.6f\n", precision.estimatedSigma0);
}

double degrees(double y, double x) { return std::atan2(y, x) * kDegreesPerRadian; }

void printParameters(const CHelmert& fit) {
    static const char* const kNames[] = {"a", "b", "tx", "ty"};
    for (int i = 0; i < 4; ++i)
        std::printf("%s,%.15g\n", kNames[i], fit.parameters[i]);
    const double a = fit.parameters[0], b = fit.parameters[1];
    std::printf("scale,%.12f\nrotation,%.9f\n", std::hypot(a, b), degrees(b, a));
}

void printParameters(const CPlaneAffine& fit) {
    static const char* const kNames[] = {"a", "b", "c", "d", "tx", "ty"};
    for (int i = 0; i < 6; ++i)
        std::printf("%s,%.15g\n", kNames[i], fit.parameters[i]);
    const double a = fit.parameters[0], b = fit.parameters[1], c = fit.parameters[2], d = fit.parameters[3];
    std::printf("scale,%.12f,%.12f\n", std::hypot(a, c), std::hypot(b, d));
    std::printf("rotation,%.9f,%.9f\n", degrees(c, a), degrees(-b, d));
}

// Other fields than name, coordinates and code would be lost.
void readPointsToMove(const TextFile& file, Points& points) {
    const bool mayHaveCode = readCheckedPoints(file, points) == Format::scanResult;
    for (std::size_t i = 0; i < file.lines().size() && static_cast<int>(i) < points.GetSize(); ++i) {
        const std::size_t fields = fieldsOf(file.line(i)).size();
        if (fields != 4 && !(mayHaveCode && fields == 5))
            file.fail(static_cast<int>(i) + 1,
                      "expected name,x,y,z or name,x,y,z,code; the rest would be lost");
    }
}

[[noreturn]] void failFor(int reason, const TextFile& from) {
    if (reason == -2)
        from.fail(0, "expected points at different places");
    if (reason == -3)
        from.fail(0, "expected points that are not on one line");
    from.fail(0, "expected coordinates whose transformation can be computed");
}

template <class Transformation>
ExitCode fitPoints(const Options& options, const char* fewest) {
    useCodePage(options.page);
    Points source, target;
    const TextFile from(options.from), to(options.to);
    readCheckedPoints(from, source);
    readCheckedPoints(to, target);
    Transformation fit;
    const int pairs = fit.SetPoints(target, source);
    const int reason = fit.CheckPairs();
    if (reason == -1)
        from.fail(0, std::string("expected ") + fewest + " points at least with the names of " + to.name() +
                         ", found " + std::to_string(pairs));
    if (fit.CalPara() != 1)
        failFor(reason, from);
    const bool hasReport = options.apply.empty() || options.out != "-";
    if (!options.apply.empty()) {
        Points points;
        if (options.apply == options.from)  // both may be standard input, which is read only once
            readPointsToMove(from, points);
        else
            readPointsToMove(TextFile(options.apply), points);
        for (int i = 0; i < points.GetSize(); ++i)
            if (fit.Transform(points[i], points[i], 1) != 1)
                from.fail(0, "expected points that can be transformed");
        writePoints(points, options.out);
    }
    if (hasReport) {
        std::printf("pairs,%d\n", pairs);
        printParameters(fit);
        printResiduals(fit);
    }
    return kFine;
}

ExitCode run(const Options& options) {
    return options.isAffine ? fitPoints<CPlaneAffine>(options, "three") : fitPoints<CHelmert>(options, "two");
}

}  // namespace

void addHelmert(Program& program, ExitCode& exitCode) {
    auto [command, options] = addSubcommand(
        program, exitCode, "helmert",
        "Adjusts a plane similarity or affine transformation between point files",
        "x' = a x - b y + tx, y' = b x + a y + ty, from points of FROM to those of TO with the same name.\n"
        "Standard output: pairs,N; a, b, tx, ty, scale and rotation (degrees, from x toward y) with their\n"
        "value; residual,NAME,X,Y,VX,VY for each pair, transformed minus TO; rms and maximum with x,y. "
        "Where\n"
        "the pairs control each other, WX,WY follow, the residuals divided by their standard deviations, "
        "and\n"
        "\"largest\" after the largest of them; and sigma0, the standard deviation of a coordinate.\n"
        "--affine: x' = a x + b y + tx, y' = c x + d y + ty; scale and rotation of the x axis and the y "
        "axis.\n"
        "--apply: names, z and codes are kept. The points go to --out, and the report to standard output; "
        "without\n"
        "--out the points go there, and there is no report.",
        run);
    command.option("FROM", options->from, "the points to transform").required();
    command.option("TO", options->to, "the points they are to fit").required();
    command.flag("--affine", options->isAffine, "six parameters instead of four");
    const Option apply =
        command.option("--apply", options->apply, "transforms these points").valueName("FILE");
    command.option("--out", options->out, "the transformed points, \"-\" for standard output")
        .valueName("FILE")
        .showsDefault()
        .needs(apply);
    addPageOption(command, options->page);
    addExample(command, "helmert @site_points.csv @station_control.csv --apply @site_points.csv");
}
