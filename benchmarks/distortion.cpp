// Races of CDist::CalDistInv against OpenCV's undistortPoints: the point whose distortion leads to a given
// one.
#include <fieldscan/distortion.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <opencv2/calib3d.hpp>
#include <random>
#include <utility>

#include "benchmarks/race.h"

namespace {

using fieldscan::InstructionSet;

constexpr double kTolerance = 1e-12;  // mm
constexpr int kPoints = 1000;

// A wide-angle lens on a sensor of 36 mm by 24 mm: 0.7 mm in the corners.
const double kParameters[4] = {8.0e-5, -4.0e-8, 2.0e-6, -3.0e-6};

struct Job {
    Job() : camera(cv::Mat::eye(3, 3, CV_64F)), model(1, 4, CV_64F), measured(kPoints, 1, CV_64FC2) {
        ours.SetDistModel(DIST_RADIAL2_TANGENTIAL2);
        std::copy(std::begin(kParameters), std::end(kParameters), ours.para);
        // OpenCV has the decentring terms in the other order.
        const double parameters[4] = {kParameters[0], kParameters[1], kParameters[3], kParameters[2]};
        std::copy(std::begin(parameters), std::end(parameters), model.ptr<double>());
        std::mt19937_64 engine(5);
        std::uniform_real_distribution<double> x(-18.0, 18.0), y(-12.0, 12.0);
        for (int k = 0; k < kPoints; ++k) {
            const double u = x(engine), v = y(engine);
            measured.at<cv::Vec2d>(k) = {u, v};
        }
    }
    CDist ours;
    cv::Mat camera, model, measured;
    // The default ends after five iterations, with errors of a hundredth of a unit.
    cv::TermCriteria criteria{cv::TermCriteria::COUNT + cv::TermCriteria::EPS, 100, kTolerance};
};

// The largest residual of the undistorted points, mm.
double residual(const Job& job, const cv::Mat& points) {
    double largest = 0.0;
    for (int k = 0; k < kPoints; ++k) {
        const cv::Vec2d &p = points.at<cv::Vec2d>(k), &wanted = job.measured.at<cv::Vec2d>(k);
        double dx = 0.0, dy = 0.0;
        job.ours.CalDist(p[0], p[1], dx, dy);
        largest = std::max(largest, std::hypot(p[0] + dx - wanted[0], p[1] + dy - wanted[1]));
    }
    return largest;
}

}  // namespace

void raceDistortion(Races& races) {
    const std::string row = "CalDistInv, 1e-12 mm";
    const Job job;
    cv::Mat found(kPoints, 1, CV_64FC2), all, one;
    const Contender ours = {"CDist", [&] {
                                for (int k = 0; k < kPoints; ++k) {
                                    const cv::Vec2d& p = job.measured.at<cv::Vec2d>(k);
                                    cv::Vec2d& to = found.at<cv::Vec2d>(k);
                                    (void)job.ours.CalDistInv(p[0], p[1], to[0], to[1], kTolerance);
                                    to += p;
                                }
                            }};
    const Contender singly = {"OpenCV, a point a call", [&] {
                                  for (int k = 0; k < kPoints; ++k)
                                      cv::undistortPoints(job.measured.row(k), one, job.camera, job.model,
                                                          cv::noArray(), cv::noArray(), job.criteria);
                              }};
    const Contender together = {"OpenCV, all in a call", [&] {
                                    cv::undistortPoints(job.measured, all, job.camera, job.model,
                                                        cv::noArray(), cv::noArray(), job.criteria);
                                }};
    ours.run();
    together.run();
    require(residual(job, found) <= 1.01 * kTolerance && residual(job, all) <= 1.01 * kTolerance, row);
    require(cv::norm(found, all, cv::NORM_INF) <= 10.0 * kTolerance, row);
    const std::pair<const char*, InstructionSet> paths[] = {{", AVX-512", InstructionSet::avx512},
                                                            {", AVX2", InstructionSet::avx2},
                                                            {", SSE2", InstructionSet::baseline}};
    for (const auto& [name, set] : paths) {
        const std::string named = row + name;
        if (races.wanted(named))
            onInstructionSet(set, [&] { races.race(named, ours, {Peers{singly}, Peers{together}}); });
    }
}
