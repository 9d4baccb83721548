#include <fieldscan/helmert.h>

#include <algorithm>

#include "adjustment/plane_fit.h"

using namespace fieldscan;

namespace {

constexpr int kParameters = 6;

}  // namespace

CPlaneAffine::CPlaneAffine() { Init(); }

CPlaneAffine::CPlaneAffine(const CPlaneAffine& other) { operator=(other); }

CPlaneAffine::~CPlaneAffine() {}

CPlaneAffine& CPlaneAffine::operator=(const CPlaneAffine& other) {
    if (this != &other)
        copyFit(other, *this);
    return *this;
}

void CPlaneAffine::Init() { clearFit(*this); }

void CPlaneAffine::Trace() {}

int CPlaneAffine::SetPoints(const CArray<CXYZ, CXYZ&>& first, const CArray<CXYZ, CXYZ&>& second) {
    return pairPoints(first, second, *this);
}

int CPlaneAffine::CalPara() {
    const auto equationsOf = [](const CXYZ& s, const CXYZ& t, double* x, double* y) {
        const double forX[] = {s.x, s.y, 0.0, 0.0, 1.0, 0.0, t.x},
                     forY[] = {0.0, 0.0, s.x, s.y, 0.0, 1.0, t.y};
        std::copy(forX, forX + kParameters + 1, x);
        std::copy(forY, forY + kParameters + 1, y);
    };
    if (!adjustParameters<kParameters>(*this, 3, equationsOf))
        return 0;
    CalResiduals();
    return 1;
}

int CPlaneAffine::CalResiduals() { return parameters.GetSize() == kParameters ? computeResiduals(*this) : 0; }

int CPlaneAffine::Transform(const CXYZ& in, CXYZ& out, int forward) const {
    if (parameters.GetSize() != kParameters)
        return 0;
    const double a = parameters[0], b = parameters[1], c = parameters[2], d = parameters[3];
    const double tx = parameters[4], ty = parameters[5];
    if (forward) {
        const double x = in.x, y = in.y;
        out.x = (a * x + b * y) + tx;
        out.y = (c * x + d * y) + ty;
        return 1;
    }
    const double determinant = a * d - b * c;
    if (determinant == 0.0)
        return 0;
    const double u = in.x - tx, v = in.y - ty;
    out.x = (d * u - b * v) / determinant;
    out.y = (a * v - c * u) / determinant;
    return 1;
}
