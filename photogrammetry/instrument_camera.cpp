// COffset, CImgVH and CImgTS hold data only.
#include <fieldscan/instrument_camera.h>

COffset::COffset() = default;
COffset::COffset(const COffset& other) = default;
COffset::~COffset() = default;
COffset& COffset::operator=(const COffset& other) = default;
void COffset::Trace() {}

// v and h are not initialized: CArray zeroes its storage, elsewhere the caller sets them.
CImgVH::CImgVH() {}
CImgVH::CImgVH(const CImgVH& other) = default;
CImgVH::~CImgVH() = default;
CImgVH& CImgVH::operator=(const CImgVH& other) = default;
void CImgVH::Trace() {}

CImgTS::CImgTS() : words1(), words2() {}
CImgTS::~CImgTS() = default;
void CImgTS::Trace() {}
