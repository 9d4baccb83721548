// CImage: one photograph between pixels, photo coordinates and object space.
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
    INNORI_NONE = 0,             // no fiducial transformation: pixel pitch and principal point alone
    INNORI_FIDUCIAL_LSQ = 1,     // plane affine transformation, at least 3 marks
    INNORI_FIDUCIAL_HELMERT = 2  // CHelmert, at least 2 marks
};

// Image coordinates: pixels, x to the right, y downward, origin at the top-left pixel.
// Photo coordinates: millimetres in the image plane from the principal point, x to the right, y upward.
// Object coordinates: metres in right-handed axes, x east, y north, z up. Surveying coordinates (survey.h: x
// north, y east) are left-handed, and no rotation turns them into a camera: exchange x and y first. The
// exterior orientation is `center` and `wpk`, whose matrix R = Rx(omega) Ry(phi) Rz(kappa) (ROT_KPW) turns
// object differences into the camera, where the lens looks along -z.
//
// Results: 1 success, 0 failure (memory exhaustion too); the output point may then be partly converted.
class FIELDSCAN_API CImage {
public:
    CImage();
    CImage(const CImage& other);
    ~CImage();
    CImage& operator=(const CImage& other);

    void Init();   // every field zero or empty, pixel pitch 1 mm
    void Trace();  // a hook for debugging, does nothing

    // The pixel pitch in mm, when both are greater than 0. Always returns 0, also when it was stored: do not
    // test it.
    int SetRes(double xres, double yres);
    // The same from dots per inch: 25.4 mm over each. Returns 1; 0, and nothing changes, unless both are
    // greater than 0.
    int SetResDPI(double xdpi, double ydpi);

    // Inner orientation: fits the transformation of the measured marks (markImc, times the pixel pitch, y
    // upward) to the camera's marks, paired by name: that in the camera's markNames, else the mark's own; a
    // measured mark without a name takes that of the camera's mark at its place, and two marks of one place
    // that have no name on either side are a pair. A camera without fiducial marks (innType 0) needs none:
    // INNORI_NONE, 1. Sets innOri and returns 1; 0 with INNORI_NONE when there are too few pairs, the fit
    // fails or `t` is no fit. The former fit is lost in any case.
    int CalInnOri(INNORI_TYPE t);

    // One point. Camera without marks: photo = pixel * pitch - principal point, y turned upward afterwards,
    // so the principal point counts downward here. With marks: pixel * pitch with y upward, through the
    // fitted transformation, minus the principal point. Nonzero `dist` then adds CalDist. Returns 0 when a
    // pixel pitch is not positive, innType is neither 0 nor 1, or no transformation is fitted.
    int ImcToPhc(const CXYZ& imc, CXYZ& phc, int dist) const;
    // The way back. Nonzero `dist` first adds the correction of CalDistInv with `tol` in mm, and the call
    // fails when that does not converge, or when the transformation has no inverse. An innType that is
    // neither 0 nor 1 gives the photo coordinates as they then are, and 1.
    int PhcToImc(const CXYZ& phc, CXYZ& imc, int dist, double tol) const;

    // All points of imc to phc, or of phc to imc. With fiducial marks the inner orientation is computed
    // anew: INNORI_FIDUCIAL_LSQ or, when that fails, INNORI_FIDUCIAL_HELMERT. innOri tells which. Returns
    // 1; 0 when both fail or a point does, and the target list is then empty.
    int ImcToPhc(int dist);
    int PhcToImc(int dist, double tol);

    // Object point, in millimetres, to photo coordinates, with the matrix `rot` as it stands:
    // q = rot (obj - center * 1000), photo = -(f / q.z) (q.x, q.y), z 0. Afterwards `rot` is that of `wpk`.
    // Returns 1, also where q.z is 0 and the result no number. Unlike ObjToImc in unit and matrix;
    // applications rely on both.
    int ObjToPhc(const CXYZ& obj, CXYZ& phc);

    // Object point, in metres, to photo and image coordinates: `rot` is made from `wpk`;
    // q = rot (obj - center), photo = -(f q.x) / q.z, -(f q.y) / q.z; then PhcToImc with distortion to 1e-12
    // mm, whose result is returned. Of `phc` name, x and y are set. A point behind the camera is projected
    // like one before it; one level with the projection centre gives 0.
    int ObjToImc(CXYZ obj, CXYZ& phc, CXYZ& imc);

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
    CRot rot;                     // its matrix, made by ObjToPhc and ObjToImc
    INNORI_TYPE innOri;           // the transformation in force
    CPlaneAffine planeTrans;      // of INNORI_FIDUCIAL_LSQ
    CHelmert helmert;             // of INNORI_FIDUCIAL_HELMERT

private:
    int transform(CXYZ& point, int forward) const;
    int calInnOriAny();
};

#endif
