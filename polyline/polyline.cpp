// The vertices, flags and orientation of a polyline.
#include <fieldscan/polyline.h>

#include <algorithm>

#include "polyline/spline_kinds.h"

using namespace fieldscan;

namespace {

bool allSet(int flags, int mask) { return (flags & mask) == mask; }

}  // namespace

CPolyline::CPolyline(int flags_, int splineFlag_)
    : name(u"0"), reserved1(0.0), flags(flags_), splineFlag(splineFlag_), reserved2(0.0) {}

CPolyline::CPolyline(const CPolyline& other) : CPolyline() { operator=(other); }

CPolyline::~CPolyline() {}

CPolyline& CPolyline::operator=(const CPolyline& other) {
    if (this != &other) {
        name = other.name;
        flags = other.flags;
        splineFlag = other.splineFlag;
        reserved1 = other.reserved1;
        vertices.Copy(other.vertices);
        reserved2 = other.reserved2;
    }
    return *this;
}

const CVertex* CPolyline::GetVertex(unsigned int i) const {
    const int index = static_cast<int>(i);
    return index < 0 || index > vertices.GetUpperBound() ? nullptr : &vertices.GetAt(index);
}

CVertex* CPolyline::GetVertex(unsigned int i) {
    return const_cast<CVertex*>(static_cast<const CPolyline*>(this)->GetVertex(i));
}

int CPolyline::SetVertex(unsigned int i, const CVertex& v) {
    CVertex* vertex = GetVertex(i);
    if (!vertex)
        return 0;
    *vertex = v;
    return 1;
}

int CPolyline::AddVertex(const CVertex& v) { return vertices.Add(const_cast<CVertex&>(v)); }

int CPolyline::InsertVertex(unsigned int i, const CVertex& v) {
    if (!GetVertex(i))
        return 0;
    vertices.InsertAt(static_cast<int>(i), const_cast<CVertex&>(v));
    return 1;
}

int CPolyline::DelVertex(unsigned int i) {
    if (!GetVertex(i))
        return 0;
    vertices.RemoveAt(static_cast<int>(i));
    return 1;
}

void CPolyline::DelAllVertex() { vertices.SetSize(0); }

int CPolyline::GetVertexSize() const { return vertices.GetSize(); }

void CPolyline::SetVertexSize(unsigned int n) { vertices.SetSize(static_cast<int>(n)); }

int CPolyline::CheckPolylineFlag(int mask) const { return allSet(flags, mask); }

void CPolyline::Close() { flags |= kClosed; }

void CPolyline::Open() { flags &= ~kClosed; }

int CPolyline::IsClose() const { return allSet(flags, kClosed); }

int CPolyline::SetSplineFlag(int kind) {
    const bool known = kind == kCubicSpline || kind == kCatmullRomSpline;
    splineFlag = known ? kind : 0;
    return known;
}

int CPolyline::GetSplineFlag() const {
    if (allSet(splineFlag, kCubicSpline))
        return kCubicSpline;
    return allSet(splineFlag, kCatmullRomSpline) ? kCatmullRomSpline : 0;
}

void CPolyline::Trace() {}

void CPolyline::Reverse() { std::reverse(vertices.GetData(), vertices.GetData() + vertices.GetSize()); }

int CPolyline::CheckTurn() const {
    const int n = vertices.GetSize();
    if (n < 3)
        return 0;
    double sum = 0.0;
    for (int i = 0; i <= n - 2; ++i) {
        const CVertex& a = vertices[i];
        const CVertex& b = vertices[i + 1];
        const CVertex& c = vertices[i == n - 2 ? 0 : i + 2];
        sum += (c.x - a.x) * (b.y - a.y) - (b.x - a.x) * (c.y - a.y);
    }
    return sum > 0.0 ? 1 : sum < 0.0 ? -1 : 0;
}

void CPolyline::Normalize() {
    if (CheckTurn() != -1)
        Reverse();
}
