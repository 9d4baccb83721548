// CImage: inner orientation from fiducial marks, conversions between pixels and photo coordinates, projection
// of object points by the collinearity equations.
#include <fieldscan/image.h>

#include <utility>

#include "photogrammetry/mark_names.h"
#include "platform/framework/out_of_memory.h"

using namespace fieldscan;

namespace {

using Points = CArray<CXYZ, CXYZ&>;

constexpr int kLeastAffinePairs = 3;
constexpr int kLeastHelmertPairs = 2;
constexpr double kUndistortTolerance = 1e-12;  // mm, of ObjToImc

bool isPitch(const CXYZ& res) { return res.x > 0.0 && res.y > 0.0; }

// 0 when memory runs out: copying a long name allocates.
int copyPoint(const CXYZ& from, CXYZ& to) {
    return zeroIfOutOfMemory([&] {
        to = from;
        return 1;
    });
}

// Pixels, y downward, to millimetres, y upward, and back.
void toMillimetresUp(CXYZ& point, const CXYZ& res) {
    point.x = point.x * res.x;
    point.y = -(point.y * res.y);
}

void toPixelsDown(CXYZ& point, const CXYZ& res) {
    point.x = point.x / res.x;
    point.y = -(point.y / res.y);
}

// Pairs the camera's marks (targets) with the measured ones (sources), first by name, then by index the marks
// without a name on either side. A measured mark without a name takes that of the camera's mark of its index.
// Returns the number of pairs.
template <class Transformation>
int pairMarks(Transformation& transformation, const CImage& image) {
    Points named, namedMeasured, unnamed, unnamedMeasured;
    const int marks = image.camera.marks.GetSize(), measurements = image.markImc.GetSize();
    for (int i = 0; i < marks; ++i) {
        CXYZ mark = image.camera.marks[i];
        mark.name = markName(image.camera, i);
        if (!mark.name.IsEmpty())
            named.Add(mark);
        else if (i < measurements && image.markImc[i].name.IsEmpty())
            unnamed.Add(mark);
    }
    for (int i = 0; i < measurements; ++i) {
        CXYZ measured = image.markImc[i];
        toMillimetresUp(measured, image.res);
        if (measured.name.IsEmpty() && i < marks)
            measured.name = markName(image.camera, i);
        if (!measured.name.IsEmpty())
            namedMeasured.Add(measured);
        else if (i < marks)
            unnamedMeasured.Add(measured);
    }
    (void)transformation.SetPoints(named, namedMeasured);  // the marks without names may do
    transformation.targetPoints.Append(unnamed);
    transformation.sourcePoints.Append(unnamedMeasured);
    return transformation.targetPoints.GetSize();
}

template <class Transformation>
int fitToMarks(Transformation& transformation, const CImage& image, int leastPairs) {
    if (pairMarks(transformation, image) < leastPairs)
        return 0;
    if (transformation.CalPara())
        return 1;
    transformation.Init();
    return 0;
}

template <class Convert>
int convertAll(const Points& from, Points& to, Convert convert) {
    const int converted = zeroIfOutOfMemory([&] {
        to.SetSize(from.GetSize());
        for (int i = 0; i < from.GetSize(); ++i)
            if (!convert(from[i], to[i]))
                return 0;
        return 1;
    });
    if (!converted)
        to.RemoveAll();
    return converted;
}

}  // namespace

CImage::CImage() { Init(); }

CImage::CImage(const CImage& other) : CImage() { operator=(other); }

CImage::~CImage() {}

CImage& CImage::operator=(const CImage& other) {
    if (this != &other) {
        innOri = INNORI_NONE;  // in case copying the transformations runs out of memory
        identifier1 = other.identifier1;
        identifier2 = other.identifier2;
        width = other.width;
        height = other.height;
        res = other.res;
        camera = other.camera;
        word1 = other.word1;
        word2 = other.word2;
        markImc.Copy(other.markImc);
        imc.Copy(other.imc);
        phc.Copy(other.phc);
        center = other.center;
        wpk = other.wpk;
        rot = other.rot;
        planeTrans = other.planeTrans;
        helmert = other.helmert;
        innOri = other.innOri;
    }
    return *this;
}

void CImage::Init() {
    identifier1.Empty();
    identifier2.Empty();
    width = 0;
    height = 0;
    res.Init();
    SetRes(1.0, 1.0);
    camera.Init();
    word1 = 0;
    word2 = 0;
    markImc.RemoveAll();
    imc.RemoveAll();
    phc.RemoveAll();
    center.Init();
    wpk.Init();
    rot.I();
    innOri = INNORI_NONE;
    planeTrans.Init();
    helmert.Init();
}

void CImage::Trace() {}

int CImage::SetRes(double xres, double yres) {
    if (xres > 0.0 && yres > 0.0) {
        res.x = xres;
        res.y = yres;
    }
    return 0;
}

int CImage::SetResDPI(double xdpi, double ydpi) {
    if (!(xdpi > 0.0 && ydpi > 0.0))
        return 0;
    res.x = 25.4 / xdpi;
    res.y = 25.4 / ydpi;
    return 1;
}

int CImage::CalInnOri(INNORI_TYPE t) {
    planeTrans.Init();
    helmert.Init();
    innOri = INNORI_NONE;
    if (camera.innType == 0)
        return 1;
    return zeroIfOutOfMemory([&] {
        int fitted = 0;
        if (t == INNORI_FIDUCIAL_LSQ)
            fitted = fitToMarks(planeTrans, *this, kLeastAffinePairs);
        else if (t == INNORI_FIDUCIAL_HELMERT)
            fitted = fitToMarks(helmert, *this, kLeastHelmertPairs);
        if (fitted)
            innOri = t;
        return fitted;
    });
}

int CImage::transform(CXYZ& point, int forward) const {
    if (innOri == INNORI_FIDUCIAL_HELMERT)
        return helmert.Transform(point, point, forward);
    if (innOri == INNORI_FIDUCIAL_LSQ)
        return planeTrans.Transform(point, point, forward);
    return 0;
}

int CImage::ImcToPhc(const CXYZ& imc_, CXYZ& phc_, int dist) const {
    if (!isPitch(res) || !copyPoint(imc_, phc_))
        return 0;
    const CXYZ& pp = camera.pp;
    if (camera.innType == 0) {
        phc_.x = phc_.x * res.x - pp.x;
        phc_.y = (phc_.y * res.y - pp.y) * -1.0;
    } else if (camera.innType == 1) {
        toMillimetresUp(phc_, res);
        if (!transform(phc_, 1))
            return 0;
        phc_.x -= pp.x;
        phc_.y -= pp.y;
    } else {
        return 0;
    }
    if (dist) {
        double dx, dy;
        camera.dist.CalDist(phc_.x, phc_.y, dx, dy);
        phc_.x += dx;
        phc_.y += dy;
    }
    return 1;
}

int CImage::PhcToImc(const CXYZ& phc_, CXYZ& imc_, int dist, double tol) const {
    if (!isPitch(res) || !copyPoint(phc_, imc_))
        return 0;
    if (dist) {
        double cx, cy;
        if (!camera.dist.CalDistInv(imc_.x, imc_.y, cx, cy, tol))
            return 0;
        imc_.x += cx;
        imc_.y += cy;
    }
    const CXYZ& pp = camera.pp;
    if (camera.innType == 0) {
        imc_.y = imc_.y * -1.0;
        imc_.x = (imc_.x + pp.x) / res.x;
        imc_.y = (imc_.y + pp.y) / res.y;
    } else if (camera.innType == 1) {
        imc_.x += pp.x;
        imc_.y += pp.y;
        if (!transform(imc_, 0))
            return 0;
        toPixelsDown(imc_, res);
    }
    return 1;
}

int CImage::calInnOriAny() {
    if (camera.innType != 1)
        return 1;
    return CalInnOri(INNORI_FIDUCIAL_LSQ) || CalInnOri(INNORI_FIDUCIAL_HELMERT);
}

int CImage::ImcToPhc(int dist) {
    if (!calInnOriAny()) {
        phc.RemoveAll();
        return 0;
    }
    return convertAll(imc, phc, [&](const CXYZ& from, CXYZ& to) { return ImcToPhc(from, to, dist); });
}

int CImage::PhcToImc(int dist, double tol) {
    if (!calInnOriAny()) {
        imc.RemoveAll();
        return 0;
    }
    return convertAll(phc, imc, [&](const CXYZ& from, CXYZ& to) { return PhcToImc(from, to, dist, tol); });
}

int CImage::ObjToPhc(const CXYZ& obj, CXYZ& phc_) {
    const double f = camera.focal;
    double qx, qy, qz;
    rot.Rotate(obj.x - center.x * 1000.0, obj.y - center.y * 1000.0, obj.z - center.z * 1000.0, qx, qy, qz);
    const int copied = copyPoint(obj, phc_);
    phc_.SetXYZ(-(f / qz) * qx, -(f / qz) * qy, 0.0);
    rot.SetMatrix(ROT_KPW, wpk);
    return copied;
}

int CImage::ObjToImc(CXYZ obj, CXYZ& phc_, CXYZ& imc_) {
    const double f = camera.focal;
    rot.SetMatrix(ROT_KPW, wpk);
    double qx, qy, qz;
    rot.Rotate(obj.x - center.x, obj.y - center.y, obj.z - center.z, qx, qy, qz);
    phc_.x = -(f * qx) / qz;
    phc_.y = -(f * qy) / qz;
    phc_.name = std::move(obj.name);
    return PhcToImc(phc_, imc_, 1, kUndistortTolerance);
}

int CImage::PtInImage(const CXYZ& imc_) const {
    return 0 <= imc_.x && imc_.x < width && 0 <= imc_.y && imc_.y < height;
}
