#include <fieldscan/distortion.h>
#include <fieldscan/least_squares.h>

#include <algorithm>
#include <cmath>
#include <iterator>

#include "platform/framework/line_text.h"

using namespace fieldscan;

namespace {

constexpr int kParameters[] = {0, 4, 4, 5, 8};  // of each model
constexpr int kRadialTerms = 4;
constexpr int kMostPasses = 100;
constexpr int kGridSide = 5;  // half a search radius apart, so the grid reaches one radius to every side

// An undistorted point, and the squared distance of its distorted position from the wanted one.
struct Candidate {
    double u;
    double v;
    double e;
};

}  // namespace

CDist::CDist() { Init(); }

CDist::CDist(const CDist& other) : CDist() { operator=(other); }

CDist::~CDist() {}

CDist& CDist::operator=(const CDist& other) {
    if (this != &other) {
        model = other.model;
        numPara = other.numPara;
        std::copy(std::begin(other.para), std::end(other.para), para);
        radius.Copy(other.radius);
        dist.Copy(other.dist);
    }
    return *this;
}

void CDist::Init() {
    model = DIST_NONE;
    radius.RemoveAll();
    dist.RemoveAll();
    numPara = 0;
    std::fill(std::begin(para), std::end(para), 0.0);
}

void CDist::SetDistModel(DIST_MODEL m) {
    model = m >= DIST_NONE && m <= DIST_POLY8 ? m : DIST_NONE;
    numPara = kParameters[model];
}

DIST_MODEL& CDist::GetDistModel() { return model; }

int CDist::GetNumPara() const { return numPara; }

void CDist::CalDist(double x, double y, double& dx, double& dy) const {
    const double* const p = para;
    const double r2 = x * x + y * y;
    switch (model) {
        case DIST_RADIAL4: {
            const double f = (((p[3] * r2 + p[2]) * r2 + p[1]) * r2 + p[0]) * r2;
            dx = f * x;
            dy = f * y;
            return;
        }
        case DIST_RADIAL2_TANGENTIAL2: {
            const double g = p[0] * r2 + p[1] * (r2 * r2);
            dx = g * x + p[2] * (2 * x * x + r2) + 2 * p[3] * x * y;
            dy = g * y + p[3] * (2 * y * y + r2) + 2 * p[2] * x * y;
            return;
        }
        case DIST_RADIAL3_TANGENTIAL2: {
            const double g = p[0] * r2 + p[1] * (r2 * r2) + p[2] * (r2 * r2 * r2);
            dx = g * x + p[3] * (2 * x * x + r2) + 2 * p[4] * x * y;
            dy = g * y + p[4] * (2 * y * y + r2) + 2 * p[3] * x * y;
            return;
        }
        case DIST_POLY8: {
            const double g = p[0] * r2 + p[1] * (r2 * r2);
            dx = p[4] * x * y + p[5] * y * y + p[2] * x + p[3] * y + g * x;
            dy = g * y + p[6] * x * y + p[7] * x * x;
            return;
        }
        case DIST_NONE:
            break;
    }
    dx = 0.0;
    dy = 0.0;
}

BOOL CDist::CalDistInv(double x, double y, double& cx, double& cy, double tol) const {
    const auto candidateAt = [&](double u, double v) {
        double dx, dy;
        CalDist(u, v, dx, dy);
        const double ey = v + dy - y;
        const double ex = u + dx - x;
        return Candidate{u, v, ey * ey + ex * ex};
    };

    double dx, dy;
    CalDist(x, y, dx, dy);
    Candidate best = candidateAt(x - dx, y - dy);
    const auto accepted = [&] { return best.e <= tol * tol; };
    // Takes the best of a grid around the best so far; false when none is better, which NaN never is.
    const auto searchGrid = [&] {
        const Candidate center = best;
        const double s = std::sqrt(center.e);
        const double h = s * 0.5;
        bool improved = false;
        for (int j = 0; j < kGridSide; ++j) {
            for (int i = 0; i < kGridSide; ++i) {
                const Candidate candidate = candidateAt(center.u - s + i * h, center.v - s + j * h);
                if (!(candidate.e < best.e))
                    continue;
                best = candidate;
                improved = true;
                if (accepted())
                    return true;
            }
        }
        return improved;
    };

    for (int pass = 0; pass < kMostPasses && !accepted(); ++pass)
        if (!searchGrid())
            break;
    cx = best.u - x;
    cy = best.v - y;
    return accepted();
}

int CDist::AddDist(double r, double d) {
    zeroIfOutOfMemory([&] {
        reserveDouble(radius);  // both before either changes
        reserveDouble(dist);
        radius.Add(r);
        dist.Add(d);
        return 1;
    });
    return radius.GetSize();
}

BOOL CDist::ParaToDist(double step, int n) {
    if (model != DIST_RADIAL4)
        return 0;
    return zeroIfOutOfMemory([&] {
        radius.Reserve(n);  // both before either changes
        dist.Reserve(n);
        radius.SetSize(std::max(n, 0));
        dist.SetSize(std::max(n, 0));
        for (int i = 0; i < n; ++i) {
            double dy;
            radius[i] = i * step;
            CalDist(radius[i], 0.0, dist[i], dy);
        }
        return 1;
    });
}

BOOL CDist::DistToPara() {
    const int n = radius.GetSize();
    if (n != dist.GetSize() || n < kRadialTerms)
        return 0;
    CLeastSq adjustment;
    if (!adjustment.Create(n, kRadialTerms))
        return 0;
    for (int i = 0; i < n; ++i) {
        const double q = radius[i] * radius[i];
        adjustment.SetObeq(0, q);
        adjustment.SetObeq(1, q * q);
        adjustment.SetObeq(2, q * q * q);
        adjustment.SetObeq(3, q * q * q * q);
        adjustment.SetObeq(kRadialTerms, dist[i]);
    }
    if (!adjustment.Solve())
        return 0;
    for (int term = 0; term < kRadialTerms; ++term)
        para[term] = adjustment.GetBcor(term);
    model = DIST_RADIAL4;
    return 1;
}

void CDist::Trace() {}
