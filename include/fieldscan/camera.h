// CCamera: the calibration record of a camera.
#ifndef FIELDSCAN_CAMERA_H
#define FIELDSCAN_CAMERA_H

#include <fieldscan/distortion.h>
#include <fieldscan/framework/array.h>
#include <fieldscan/framework/string.h>
#include <fieldscan/points.h>

// Focal length, principal point, pixel pitch, lens distortion and fiducial marks of one camera, and their
// file.
class FIELDSCAN_API CCamera {
public:
    CCamera();
    CCamera(const CCamera& other);
    ~CCamera();
    CCamera& operator=(const CCamera& other);

    void Init();   // every field zero or empty
    void Trace();  // a hook for debugging, does nothing

    // ---- Camera file: docs/file_formats.md ----

    // Makes the file or replaces it as a whole: a failure keeps the old one. Six decimals are kept, of the
    // distortion parameters seven digits; title and distortion table are not written. Returns 1; 0 when a
    // mark has no name or one with white space, whose coordinates would come back shifted, or the path has no
    // file name (nothing is touched then), the file cannot be opened, another writer keeps it, or writing
    // fails.
    int Write(CString path) const;

    // Init, then what the file holds: each value from the start of its line, what follows is a comment. A
    // value that is no number leaves its field at zero. Of the distortion parameters those beyond the tenth
    // are read over; the number of parameters is that of the model. Each mark's name goes to markNames and to
    // the mark itself. A distortion table behind the marks is read when there is one; lines of it that hold
    // no two numbers are skipped. innType becomes 1 when there are marks.
    //
    // Returns 1; 0 when the file cannot be opened (the record is then as it was), or when a line is missing
    // or blank or the medium fails, and then the record holds what was read before that.
    int Read(CString path);

    // ---- Data ----

    CString title;              // identifier of the camera
    int innType;                // 1: with fiducial marks, 0: without
    double focal;               // focal length, mm
    CXYZ pp;                    // principal point: x, y in mm
    CXYZ res;                   // pixel pitch: x, y in mm per pixel
    CDist dist;                 // lens distortion, parameters for mm
    CArray<CXYZ, CXYZ&> marks;  // fiducial marks in camera coordinates: x, y in mm
    CStringArray markNames;     // their names, in the same order
};

#endif
