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

    // Writes the file or replaces it as a whole: a failure keeps the old one. Six decimals are written, seven
    // digits of the distortion parameters; title and distortion table are not. A number of parameters outside
    // 0 to 10 is written as the nearest of these. A mark is written with its name in markNames or, if that is
    // empty, with its own. Returns 1; 0 when a mark has no name or one with white space, which would shift
    // its coordinates on reading, the path has no file name, the file cannot be opened, another writer has it
    // open, or writing fails.
    [[nodiscard]] int Write(CString path) const;

    // Init, then reads the file. A value is at the start of its line; the rest of the line is a comment. A
    // value that is no number reads as 0. Distortion parameters beyond the tenth are skipped; the number of
    // parameters becomes that of the model. The name of a mark goes to markNames and to the mark itself. A
    // distortion table after the marks is optional; lines of it without two numbers are skipped. innType
    // becomes 1 when there are marks.
    //
    // Returns 1; 0 when the file cannot be opened, with the record unchanged; 0 when a line before the table
    // is missing or blank, or the medium fails, also in the table. The record then holds what was read before
    // that.
    [[nodiscard]] int Read(CString path);

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
