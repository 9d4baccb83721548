// CImage: one photograph, and conversions between pixels, photo coordinates and object space.
#ifndef FIELDSCAN_IMAGE_H
#define FIELDSCAN_IMAGE_H

#include <fieldscan/attitude.h>
#include <fieldscan/camera.h>
#include <fieldscan/framework/array.h>
#include <fieldscan/framework/string.h>
#include <fieldscan/helmert.h>
#include <fieldscan/points.h>
#include <fieldscan/rotation.h>

// The way from pixels to photo coordinates.
enum INNORI_TYPE : int {
    INNORI_NONE = 0,             // no fiducial transformation: only pixel pitch and principal point
    INNORI_FIDUCIAL_LSQ = 1,     // CPlaneAffine, at least 3 marks
    INNORI_FIDUCIAL_HELMERT = 2  // CHelmert, at least 2 marks
};

// An image with its camera and exterior orientation.
//
// Image coordinates: pixels, x to the right, y downward, origin at the top-left pixel.
// Photo coordinates: millimetres in the image plane from the principal point, x to the right, y upward.
// Object coordinates: metres in right-handed axes, x east, y north, z up. Surveying coordinates (survey.h: x
// north, y east) are left-handed, and no rotation makes them right-handed: exchange x and y first. The
// exterior orientation is `center` and `wpk`. The matrix of `wpk`, R = Rx(omega) Ry(phi) Rz(kappa) (ROT_KPW),
// turns object differences into the axes of the camera, which looks along -z. The collinearity equations
// (Kraus, Photogrammetry) with q = R (object - center):
//
//   photo x = -f q.x / q.z         photo y = -f q.y / q.z
//
// Results: 1 success, 0 failure, also when memory runs out; the output point may then be partly converted.
class FIELDSCAN_API CImage {
public:
    CImage();
    CImage(const CImage& other);
    ~CImage();
    CImage& operator=(const CImage& other);

    void Init();   // every field zero or empty, pixel pitch 1 mm
    void Trace();  // a hook for debugging, does nothing

    // Sets the pixel pitch in mm when both are greater than 0. Always returns 0, also when it was set: do not
    // test the result.
    int SetRes(double xres, double yres);
    // Sets the pixel pitch from dots per inch, as 25.4 mm over each. Returns 1; 0, and nothing changes,
    // unless both are greater than 0.
    int SetResDPI(double xdpi, double ydpi);

    // Inner orientation: fits the transformation of the measured marks (markImc, times the pixel pitch, y
    // upward) to the camera's marks. They are paired by name. The name of a camera's mark is that in
    // markNames, else its own; a measured mark without a name takes that of the camera's mark of the same
    // index. Marks of the same index without a name on either side are a pair, too. A camera without fiducial
    // marks (innType 0) needs no fit: INNORI_NONE, and 1. Otherwise sets innOri to `t` and returns 1; 0 with
    // INNORI_NONE when there are too few pairs, the fit fails or `t` is no fit. A former fit is lost in any
    // case.
    [[nodiscard]] int CalInnOri(INNORI_TYPE t);

    // Pixels to photo coordinates, one point. Camera without marks: pixel * pitch - principal point, then y
    // is turned upward; so y of the principal point counts downward here. With marks: pixel * pitch with y
    // upward, transformed by the fit, minus the principal point. Nonzero `dist` then adds CalDist. Returns 0
    // when a pixel pitch is not positive, innType is neither 0 nor 1, or no transformation is fitted.
    [[nodiscard]] int ImcToPhc(const CXYZ& imc, CXYZ& phc, int dist) const;
    // The way back. Nonzero `dist` first adds the correction of CalDistInv with `tol` in mm. Returns 0 when a
    // pixel pitch is not positive, that search fails, or the transformation is not fitted or has no inverse.
    // With an innType that is neither 0 nor 1 the photo coordinates are not transformed, and the result is 1.
    [[nodiscard]] int PhcToImc(const CXYZ& phc, CXYZ& imc, int dist, double tol) const;

    // All points of imc to phc, or of phc to imc. With fiducial marks the inner orientation is computed anew,
    // INNORI_FIDUCIAL_LSQ or, when that fails, INNORI_FIDUCIAL_HELMERT; innOri says which. Returns 1; 0 when
    // both fits fail or a point fails, and the target list is then empty.
    [[nodiscard]] int ImcToPhc(int dist);
    [[nodiscard]] int PhcToImc(int dist, double tol);

    // Object point in millimetres to photo coordinates, with `rot` as it was before the call:
    // q = rot (obj - center * 1000), photo = -(f / q.z) (q.x, q.y), z 0. Afterwards `rot` is that of `wpk`.
    // Returns 1, also where q.z is 0 and the result is no number; 0 when memory runs out. ObjToImc differs in
    // unit and matrix; applications rely on both.
    [[nodiscard]] int ObjToPhc(const CXYZ& obj, CXYZ& phc);

    // Object point in metres to photo and image coordinates: `rot` becomes that of `wpk`, q = rot (obj -
    // center), photo = -(f q.x) / q.z, -(f q.y) / q.z; then PhcToImc with distortion to 1e-12 mm, whose
    // result is returned. Only name, x and y of `phc` are set. A point at the back of the camera is projected
    // as if in front; a point in the plane of the centre, q.z = 0, returns 0.
    [[nodiscard]] int ObjToImc(CXYZ obj, CXYZ& phc, CXYZ& imc);

    // 1 when 0 <= x < width and 0 <= y < height, else 0.
    int PtInImage(const CXYZ& imc) const;

    // ---- Data ----

    CString identifier1;          // the application's
    CString identifier2;          // the application's
    int width;                    // pixels
    int height;                   // pixels
    CXYZ res;                     // pixel pitch: x, y in mm per pixel
    CCamera camera;               // that took the photograph
    int word1;                    // the application's
    int word2;                    // the application's
    CArray<CXYZ, CXYZ&> markImc;  // fiducial marks as measured, pixels
    CArray<CXYZ, CXYZ&> imc;      // image points, pixels
    CArray<CXYZ, CXYZ&> phc;      // photo points, mm
    CXYZ center;                  // projection centre, metres
    CWPK wpk;                     // exterior attitude, radians
    CRot rot;                     // its matrix, set by ObjToPhc and ObjToImc
    INNORI_TYPE innOri;           // the transformation in use
    CPlaneAffine planeTrans;      // of INNORI_FIDUCIAL_LSQ
    CHelmert helmert;             // of INNORI_FIDUCIAL_HELMERT

private:
    int transform(CXYZ& point, int forward) const;
    int calInnOriAny();
};

#endif
