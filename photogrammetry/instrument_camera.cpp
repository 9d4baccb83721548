#include <fieldscan/instrument_camera.h>

COffset::COffset() = default;
COffset::COffset(const COffset& other) = default;
COffset::~COffset() = default;
COffset& COffset::operator=(const COffset& other) = default;
void COffset::Trace() {}

// v and h stay as the storage was: CArray has zeroed it, elsewhere the caller sets them.
CImgVH::CImgVH() {}
CImgVH::CImgVH(const CImgVH& other) = default;
CImgVH::~CImgVH() = default;
CImgVH& CImgVH::operator=(const CImgVH& other) = default;
void CImgVH::Trace() {}

CImgTS::CImgTS() : words1(), words2() {}
CImgTS::~CImgTS() = default;
void CImgTS::Trace() {}
