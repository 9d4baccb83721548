// Measures in a photograph: fiducial marks give the inner orientation, which turns pixels into photo
// coordinates; the exterior orientation projects object points into the image. One residual shows a blunder.
//
// Prints:
//   inner orientation from 4 marks: RMS 0.99 and 0.63 micrometres
//   point       photo x  photo y     residual x       y
//   K101       -23.5289 -19.6242 mm      0.51    0.10 pixels
//   K109         8.8899  -9.6713 mm      0.34    0.03 pixels
//   K117       -13.7233  11.7343 mm      3.29   -2.14 pixels
//   N1 is at pixel 904.2 2707.2, in the image
#include <fieldscan/fieldscan.h>

#include <cstdio>

namespace {

constexpr double kDegree = 0.017453292519943295;  // radians

struct FiducialMark {
    const char* name;
    double x, y;                  // calibrated, millimetres
    double measuredX, measuredY;  // pixels
};
constexpr FiducialMark kMarks[] = {{"F1", -27.003, 27.001, 348.49, 355.16},
                                   {"F3", 26.998, 27.004, 4846.50, 330.73},
                                   {"F5", 27.002, -26.997, 4869.62, 4832.67},
                                   {"F7", -26.999, -27.002, 371.28, 4857.06}};

struct ControlPoint {
    const char* name;
    double measuredX, measuredY;  // pixels
    double east, north, height;   // metres
};
constexpr ControlPoint kControlPoints[] = {{"K101", 663.81, 4249.89, 412417.124, 319007.082, 186.452},
                                           {"K109", 3363.10, 3403.71, 412435.895, 318994.795, 193.885},
                                           {"K117", 1469.53, 1628.43, 412425.125, 319009.680, 211.035}};

void setCamera(CCamera& camera) {
    camera.focal = 99.871;  // millimetres, as the principal point
    camera.pp.SetXYZ(0.112, -0.087, 0.0);
    camera.dist.SetDistModel(DIST_RADIAL3_TANGENTIAL2);
    const double parameters[] = {-1.92e-6, 5.6e-10, -4.1e-14, 2.1e-6, -1.4e-6};
    for (int i = 0; i < camera.dist.GetNumPara(); ++i)
        camera.dist.para[i] = parameters[i];
    for (const FiducialMark& mark : kMarks) {
        CXYZ calibrated(mark.name, mark.x, mark.y, 0.0);
        camera.marks.Add(calibrated);
        camera.markNames.Add(calibrated.name);
    }
    camera.innType = 1;  // with fiducial marks
}

}  // namespace

int main() {
    CImage image;
    image.width = image.height = 5200;  // pixels
    image.SetRes(0.012, 0.012);         // millimetres a pixel
    setCamera(image.camera);
    for (const FiducialMark& mark : kMarks) {
        CXYZ measured(mark.name, mark.measuredX, mark.measuredY, 0.0);
        image.markImc.Add(measured);
    }
    if (image.CalInnOri(INNORI_FIDUCIAL_LSQ) != 1)
        return 1;
    const CXYZ& rms = image.planeTrans.RMS;
    std::printf("inner orientation from %d marks: RMS %.2f and %.2f micrometres\n",
                image.planeTrans.residuals.GetSize(), rms.x * 1000.0, rms.y * 1000.0);

    // Exterior orientation: projection centre in metres, and attitude; kappa is the first rotation.
    image.center.SetXYZ(412386.214, 318942.667, 187.352);
    image.wpk.SetWPK(-100.6359 * kDegree, 1.1275 * kDegree, 38.6432 * kDegree);

    std::printf("point       photo x  photo y     residual x       y\n");
    for (const ControlPoint& point : kControlPoints) {
        const CXYZ measured(point.measuredX, point.measuredY, 0.0),
            object(point.east, point.north, point.height);
        CXYZ photo, projectedPhoto, projected;
        if (image.ImcToPhc(measured, photo, 1) != 1 ||  // 1: corrected for lens distortion
            image.ObjToImc(object, projectedPhoto, projected) != 1)
            return 1;
        std::printf("%-8s  %9.4f %8.4f mm  %8.2f %7.2f pixels\n", point.name, photo.x, photo.y,
                    measured.x - projected.x, measured.y - projected.y);
    }

    // Where to look for a point of the plan.
    CXYZ photo, pixel;
    if (image.ObjToImc(CXYZ(u"N1", 412420.0, 319010.0, 200.0), photo, pixel) != 1)
        return 1;
    std::printf("N1 is at pixel %.1f %.1f, %s the image\n", pixel.x, pixel.y,
                image.PtInImage(pixel) == 1 ? "in" : "outside");
}
