// CDist: parameters, table of distortion by radius, and the fit of radial parameters to it by least squares.
// The formulas are in distortion_model.h, their inverse in distortion_search.cpp.
#include <fieldscan/distortion.h>
#include <fieldscan/least_squares.h>

#include <algorithm>
#include <iterator>

#include "photogrammetry/distortion_model.h"
#include "photogrammetry/distortion_search.h"
#include "platform/framework/array_growth.h"
#include "platform/framework/out_of_memory.h"

using namespace fieldscan;

namespace {

constexpr int kParameters[] = {0, 4, 4, 5, 8};  // of each model
constexpr int kRadialTerms = 4;

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
    distortionAt(model, para, x, y, dx, dy);
}

BOOL CDist::CalDistInv(double x, double y, double& cx, double& cy, double tol) const {
    const Undistorted found = FIELDSCAN_CHOSEN(searchUndistorted)(model, para, x, y, tol * tol);
    cx = found.u - x;
    cy = found.v - y;
    return found.accepted;
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
