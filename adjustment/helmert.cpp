#include <fieldscan/helmert.h>

#include <algorithm>

#include "adjustment/plane_fit.h"

using namespace fieldscan;

namespace {

constexpr int kParameters = 4;

}  // namespace

CHelmert::CHelmert() { Init(); }

CHelmert::CHelmert(const CHelmert& other) { operator=(other); }

CHelmert::~CHelmert() {}

CHelmert& CHelmert::operator=(const CHelmert& other) {
    if (this != &other)
        copyFit(other, *this);
    return *this;
}

void CHelmert::Init() { clearFit(*this); }

void CHelmert::Trace() {}

int CHelmert::SetPoints(const CArray<CXYZ, CXYZ&>& first, const CArray<CXYZ, CXYZ&>& second) {
    return pairPoints(first, second, *this);
}

int CHelmert::CalPara() {
    const auto equationsOf = [](const CXYZ& s, const CXYZ& t, double* x, double* y) {
        const double forX[] = {s.x, -s.y, 1.0, 0.0, t.x}, forY[] = {s.y, s.x, 0.0, 1.0, t.y};
        std::copy(forX, forX + kParameters + 1, x);
        std::copy(forY, forY + kParameters + 1, y);
    };
    if (!adjustParameters<kParameters>(*this, 2, equationsOf))
        return 0;
    CalResiduals();
    return 1;
}

int CHelmert::CalResiduals() { return parameters.GetSize() == kParameters ? computeResiduals(*this) : 0; }

int CHelmert::Transform(const CXYZ& in, CXYZ& out, int forward) const {
    if (parameters.GetSize() != kParameters)
        return 0;
    const double a = parameters[0], b = parameters[1], tx = parameters[2], ty = parameters[3];
    if (forward) {
        const double x = in.x, y = in.y;
        out.x = (a * x - b * y) + tx;
        out.y = (y * a + b * x) + ty;
        return 1;
    }
    const double determinant = a * a + b * b;
    if (determinant == 0.0)
        return 0;
    const double u = in.x - tx, v = in.y - ty;
    out.x = (b * v + a * u) * (1.0 / determinant);
    out.y = (a * v - b * u) * (1.0 / determinant);
    return 1;
}
