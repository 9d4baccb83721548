// CImgTS, COffset, CImgVH: what the application knows about the instrument's camera. Only data; the
// application gives fields without a comment their meaning.
#ifndef FIELDSCAN_INSTRUMENT_CAMERA_H
#define FIELDSCAN_INSTRUMENT_CAMERA_H

#include <fieldscan/attitude.h>
#include <fieldscan/camera.h>
#include <fieldscan/framework/array.h>
#include <fieldscan/framework/moves_as_bytes.h>
#include <fieldscan/framework/string.h>
#include <fieldscan/points.h>

// Offset of the camera from the instrument.
class FIELDSCAN_API COffset {
public:
    COffset();
    COffset(const COffset& other);
    ~COffset();
    COffset& operator=(const COffset& other);

    void Trace();  // a hook for debugging, does nothing

    // The application gives each its meaning.
    CXYZ point0;
    CXYZ point1;
    CXYZ point2;
    CWPK angles;
};

// One image taken at a named direction. v and h of a new object are not initialized: set them. Those of
// elements that a CArray makes are 0.0.
class FIELDSCAN_API CImgVH {
public:
    CImgVH();
    CImgVH(const CImgVH& other);
    ~CImgVH();
    CImgVH& operator=(const CImgVH& other);

    void Trace();  // a hook for debugging, does nothing

    // Name and direction (v, h) of the image; the other fields are the application's.
    CString name;
    double v;
    double h;
    CString text;
    CXYZ point;
    CWPK angles;
};

// The instrument with its camera. Not copied.
class FIELDSCAN_API CImgTS {
public:
    CImgTS();
    CImgTS(const CImgTS&) = delete;
    CImgTS& operator=(const CImgTS&) = delete;
    virtual ~CImgTS();

    void Trace();  // a hook for debugging, does nothing

    int words1[3];                   // 0 until the application sets them
    CArray<CXYZ, CXYZ&> pointList1;  // the application's
    CArray<CXYZ, CXYZ&> pointList2;  // the application's
    int words2[5];                   // 0 until the application sets them
    CCamera camera;                  // its calibration
    COffset offset;                  // of the camera from the instrument
    CArray<CImgVH, CImgVH&> images;  // images taken
};

template <>
struct fieldscan::MovesAsBytes<CImgVH> : std::true_type {};

#endif
