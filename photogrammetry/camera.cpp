// CCamera: life of the record; its file is in camera_file.cpp.
#include <fieldscan/camera.h>

CCamera::CCamera() { Init(); }

CCamera::CCamera(const CCamera& other) : CCamera() { operator=(other); }

CCamera::~CCamera() {}

CCamera& CCamera::operator=(const CCamera& other) {
    if (this != &other) {
        title = other.title;
        innType = other.innType;
        focal = other.focal;
        pp = other.pp;
        res = other.res;
        dist = other.dist;
        marks.Copy(other.marks);
        markNames.Copy(other.markNames);
    }
    return *this;
}

void CCamera::Init() {
    title.Empty();
    innType = 0;
    focal = 0.0;
    pp.Init();
    res.Init();
    dist.Init();
    marks.RemoveAll();
    markNames.RemoveAll();
}

void CCamera::Trace() {}
