#include <fieldscan/instrument_camera.h>

COffset::COffset() = default;
COffset::COffset(const COffset& other) = default;
COffset::~COffset() = default;
COffset& COffset::operator=(const COffset& other) = default;

// Sets neither v nor h: a constructor that did would take its zeros from CArray.
CImgVH::CImgVH() {}
CImgVH::CImgVH(const CImgVH& other) = default;
CImgVH::~CImgVH() = default;
CImgVH& CImgVH::operator=(const CImgVH& other) = default;

CImgTS::CImgTS() : words1(), words2() {}
CImgTS::~CImgTS() = default;
