// A vertex: a point with flags, named "0".
#include <fieldscan/polyline.h>

#include <utility>

namespace {

const char16_t kUnnamed[] = u"0";

void setBit(int& flag, int bit, int on) { flag = on ? flag | bit : flag & ~bit; }

}  // namespace

CVertex::CVertex(int flag_) : flag(flag_) { name = kUnnamed; }

CVertex::CVertex(double x_, double y_, double z_, int flag_) : CXYZ(x_, y_, z_), flag(flag_) {
    name = kUnnamed;
}

CVertex::CVertex(const CVertex& other) : CXYZ(other), flag(other.flag) {}

CVertex::CVertex(CVertex&& other) noexcept : CXYZ(std::move(other)), flag(other.flag) {}

CVertex& CVertex::operator=(const CVertex& other) {
    CXYZ::operator=(other);
    flag = other.flag;
    return *this;
}

CVertex& CVertex::operator=(CVertex&& other) noexcept {
    flag = other.flag;
    CXYZ::operator=(std::move(other));
    return *this;
}

int CVertex::CheckVertexFlag(int mask) const { return (flag & mask) == mask; }

int CVertex::IsSplineFrame() const { return CheckVertexFlag(kSplineFrame); }

void CVertex::SetSplineFrame(int on) { setBit(flag, kSplineFrame, on); }

void CVertex::SetSplineVertex(int on) { setBit(flag, kSplineVertex, on); }
