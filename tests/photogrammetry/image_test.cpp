// Images: inner orientation, conversions, projection.
#include <fieldscan/image.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

#include "tests/published/aerial_block.h"
#include "tests/published/opencv_chessboard.h"

namespace {

bool isNear(const CXYZ& point, double x, double y, double tolerance = 1e-12) {
    return std::hypot(point.x - x, point.y - y) <= tolerance;
}

TEST(Image, ConvertsWithoutMarks) {
    CImage image;
    EXPECT_TRUE(image.SetResDPI(254, 127) && !image.SetResDPI(254, 0) && !image.SetResDPI(0, 254));
    EXPECT_TRUE(!image.SetRes(3, 0) && !image.SetRes(0, 3) && isNear(image.res, 0.1, 0.2));
    EXPECT_EQ(image.SetRes(0.01, 0.02), 0) << "although it is stored";
    image.camera.pp.SetXYZ(1, -1, 0);
    image.camera.dist.SetDistModel(DIST_RADIAL4);
    image.camera.dist.para[0] = 0.001;
    CXYZ point(u"P", 200, 25, 7);
    for (const int dist : {0, 1}) {
        EXPECT_EQ(image.ImcToPhc(point, point, dist), 1);
        EXPECT_TRUE(isNear(point, 1 + dist * 0.00325, -1.5 - dist * 0.004875)) << dist;
        EXPECT_TRUE(image.PhcToImc(point, point, dist, 1e-12) && isNear(point, 200, 25, 1e-9)) << dist;
    }
    EXPECT_EQ(point.z + point.name.GetLength(), 8);
    image.width = image.word1 = 100;
    image.height = image.word2 = 50;
    image.identifier1 = image.identifier2 = u"P";
    const CImage copy(image);
    EXPECT_EQ(copy.word1 + copy.word2 + (copy.identifier1 + copy.identifier2).GetLength(), 152);
    for (const double x : {-0.5, 0.0, 99.5, 100.0})
        for (const double y : {-0.5, 0.0, 49.5, 50.0})
            EXPECT_EQ(copy.PtInImage(CXYZ(x, y, 0)), x >= 0 && x < 100 && y >= 0 && y < 50) << x << y;

    EXPECT_EQ(image.ImcToPhc(0), 1) << "no points";
    image.imc.InsertAt(0, point, 2);
    EXPECT_EQ(image.ImcToPhc(0), 1);
    image.phc[1].x = NAN;
    EXPECT_TRUE(!image.PhcToImc(1, 1e-9) && image.imc.IsEmpty()) << "one fails";
    image.camera.innType = 2;
    EXPECT_TRUE(image.PhcToImc(0, 0) && image.imc[0].x == image.phc[0].x) << "copies";
    EXPECT_TRUE(!image.ImcToPhc(0) && image.phc.IsEmpty());
    image.camera.innType = 0;
    image.camera.dist.para[0] = -0.01;  // folds the image: nothing lands at 5 mm
    for (const double tolerance : {1e-12, 100.0})
        EXPECT_EQ(image.PhcToImc(CXYZ(5, 0, 0), point, 1, tolerance), tolerance > 1);
    for (double* pitch : {&image.res.x, &image.res.y}) {
        *pitch = 0;
        EXPECT_EQ(image.ImcToPhc(point, point, 0) + image.PhcToImc(point, point, 0, 0), 0);
        *pitch = 1;
    }
    image.center = image.markImc[image.markImc.Add(point)];
    image.rot.m[0][0] = image.wpk.omega = 7;
    image.innOri = INNORI_FIDUCIAL_LSQ;
    image.phc.Add(point);
    image.imc.Add(point);
    image.helmert.parameters.SetSize(4);
    image.planeTrans.parameters.SetSize(6);
    image.Init();
    EXPECT_TRUE(image.markImc.IsEmpty() && image.imc.IsEmpty() && image.phc.IsEmpty());
    EXPECT_TRUE(image.helmert.parameters.IsEmpty() && image.planeTrans.parameters.IsEmpty());
    EXPECT_EQ(image.word1 + image.word2 + image.innOri + image.center.Len() + image.wpk.omega, 0);
    EXPECT_EQ(image.camera.pp.x * 100 + image.rot.m[0][0] * 10 + image.res.y, 11);
}

TEST(Image, FitsFiducialMarks) {
    // Count of marks, whether they are off one line, the best fit.
    for (const auto& [marks, bent, best] : {std::array{3, 1, 1}, {3, 0, 2}, {2, 1, 2}, {1, 1, 0}}) {
        CImage image;
        image.SetRes(0.5, 0.25);
        image.camera.innType = 1;
        image.camera.pp.SetXYZ(1, 2, 0);
        CXYZ point(8, 12, 0);
        image.imc.Add(point);
        for (int i = 0; i < marks; ++i) {
            CXYZ measured(CString(u"ABC").Mid(i, 1), 9 * i, 40 - 14 * i * (bent ? i : 1), 0);
            const double x = measured.x * 0.5, y = measured.y * -0.25;
            CXYZ mark(i ? CString(u"hidden") : measured.name, 2 * x - 0.5 * y + 3, 0.5 * x + 2 * y - 1, 0);
            image.camera.marks.Add(mark);
            image.camera.markNames.Add(i ? measured.name : CString());
            if (marks == 3 && i == 1)
                measured.name.Empty();  // goes by its place
            image.markImc.InsertAt(0, measured);
        }
        for (const int t : {2, 1, 3}) {
            const int fits = t < 3 && best && t >= best;  // Helmert fits wherever the affine one does
            EXPECT_EQ(image.CalInnOri(static_cast<INNORI_TYPE>(t)), fits) << marks << t;
            EXPECT_EQ(image.innOri, fits * t) << marks << t;
            const bool isReset = image.planeTrans.targetPoints.IsEmpty();
            EXPECT_TRUE(t != 1 || marks != 3 || isReset == !fits) << "a failed fit";
        }
        EXPECT_EQ(image.ImcToPhc(point, point, 0), 0) << "no fit";
        CImage copy(image);
        EXPECT_EQ(copy.ImcToPhc(0), best != 0);
        EXPECT_TRUE(CImage(copy).PhcToImc(0, 0) == (best != 0));
        EXPECT_EQ((image = copy).innOri, best);
        if (!best)
            continue;
        EXPECT_TRUE(isNear(image.phc[0], 12.5 - 1, -5 - 2)) << marks;
        EXPECT_TRUE(image.PhcToImc(image.phc[0], point, 0, 0) && isNear(point, 8, 12)) << marks;
        image.helmert.parameters.RemoveAll();
        image.planeTrans.parameters.RemoveAll();
        EXPECT_EQ(image.PhcToImc(image.phc[0], point, 0, 0), 0);
        image.camera.innType = 0;
        EXPECT_TRUE(image.CalInnOri(INNORI_FIDUCIAL_LSQ) && !image.innOri) << "needs none";
        EXPECT_EQ(image.helmert.parameters.GetSize() + image.planeTrans.parameters.GetSize(), 0);
    }
}

TEST(Image, MarksWithoutNamesArePairedByTheirPlaces) {
    CImage image;
    image.SetRes(0.5, 0.25);
    image.camera.innType = 1;
    for (int i = 0; i < 4; ++i) {
        CXYZ measured(i % 2 ? 8 : 0, i < 2 ? 0 : 16, 0);
        CXYZ mark(2 * measured.x * 0.5 + 3, 2 * measured.y * -0.25 - 1, 0);
        image.camera.marks.Add(mark);
        image.markImc.Add(measured);
    }
    for (const INNORI_TYPE t : {INNORI_FIDUCIAL_LSQ, INNORI_FIDUCIAL_HELMERT}) {
        CXYZ photo;
        ASSERT_EQ(image.CalInnOri(t), 1) << t;
        EXPECT_TRUE(image.ImcToPhc(CXYZ(4, 20, 0), photo, 0) && isNear(photo, 7, -11)) << t;
    }
    EXPECT_EQ(image.helmert.residuals.GetSize(), 4);

    image.camera.marks[1].name = u"B";
    image.markImc[2].name = u"stray";
    EXPECT_EQ(image.CalInnOri(INNORI_FIDUCIAL_HELMERT), 1);
    EXPECT_EQ(image.helmert.targetPoints.GetSize(), 3) << "the named mark has none to go with at its place";
    image.markImc.SetSize(2);
    EXPECT_EQ(image.CalInnOri(INNORI_FIDUCIAL_LSQ), 0) << "two measured";
}

TEST(Image, ProjectsInMillimetresAndInMetres) {
    CImage image;
    image.camera.focal = 50;
    image.center.SetXYZ(1, 2, 3);
    image.wpk.SetWPK(0.1, 0.2, 0.3);
    CRot rot;
    rot.SetMatrix(ROT_KPW, image.wpk);
    const CXYZ q = rot * CXYZ(0.2, -0.3, -2), inCamera = q * (-50 / q.z), millimetres(u"T", 1200, 1700, 1000);
    CXYZ phc(0, 0, 9), imc;
    EXPECT_TRUE(image.ObjToPhc(millimetres, phc) == 1 && phc.z == 0 && phc.name == millimetres.name);
    EXPECT_TRUE(isNear(phc, 5, -7.5)) << "by the identity";
    CImage(image).ObjToPhc(millimetres, phc);
    EXPECT_TRUE(isNear(phc, inCamera.x, inCamera.y)) << "by the matrix that the first call left";
    image.rot.I();
    CImage copy(image);
    EXPECT_TRUE(copy.ObjToImc(CXYZ(u"T1", 1.2, 1.7, 1), phc, imc) && imc.name == CString(u"T1"));
    EXPECT_TRUE(isNear(phc, inCamera.x, inCamera.y) && isNear(imc, phc.x, -phc.y));
    EXPECT_EQ(image.ObjToImc(image.center, phc, imc), 0);
}

TEST(Image, ProjectsAsPublishedByABundleAdjustment) {
    for (const auto& published : aerial::kImages) {
        CImage image;
        image.camera.focal = aerial::kFocalLength;
        image.camera.pp.SetXYZ(aerial::kPrincipalPoint[0], aerial::kPrincipalPoint[1], 0);
        image.SetRes(aerial::kPitch, aerial::kPitch);
        image.center.SetXYZ(published.centre[0], published.centre[1], published.centre[2]);
        CRot fromGround;
        fromGround.SetDIMatInv(published.angles);
        fromGround.CalAngle(ROT_KPW, image.wpk);
        CXYZ photo, pixel;
        for (const auto& point : published.points) {
            const double* const ground = point.ground;
            ASSERT_EQ(image.ObjToImc(CXYZ(ground[0], ground[1], ground[2]), photo, pixel), 1);
            EXPECT_NEAR(pixel.x - point.measured[0], point.residual[0], 0.001) << point.name;
            EXPECT_NEAR(point.measured[1] - pixel.y, point.residual[1], 0.001) << point.name;
        }
    }
}

void expectPixel(const CXYZ& pixel, const double (&published)[2], const std::string& which) {
    EXPECT_NEAR(pixel.x, published[0], 1e-8) << which;
    EXPECT_NEAR(pixel.y, published[1], 1e-8) << which;
}

// With any pitch. OpenCV calls the correction that ObjToImc applies undistorting: its own projection is
// CalDist added. Its y is downward, which turns the sign of p1.
TEST(Image, ProjectsAndDistortsAsOpenCv) {
    const double pitch = 0.0074, f = opencv::kFocalLength * pitch;
    const double* const k = opencv::kDistortion;
    const double parameters[] = {k[0] / (f * f), k[1] / std::pow(f, 4), k[4] / std::pow(f, 6), k[3] / f,
                                 -k[2] / f};
    for (const auto& view : opencv::kViews) {
        CImage image;
        image.camera.focal = f;
        image.camera.pp.SetXYZ(opencv::kCentre[0] * pitch, opencv::kCentre[1] * pitch, 0);
        image.SetRes(pitch, pitch);
        image.camera.dist.SetDistModel(DIST_RADIAL3_TANGENTIAL2);
        std::copy(parameters, parameters + 5, image.camera.dist.para);
        image.center.SetXYZ(view.centre[0], view.centre[1], view.centre[2]);
        image.wpk.SetWPK(view.angles[0], view.angles[1], view.angles[2]);
        CXYZ photo, pixel, lens;
        for (const auto& corner : view.corners) {
            ASSERT_EQ(image.ObjToImc(CXYZ(corner.x, corner.y, 0), photo, pixel), 1);
            expectPixel(pixel, corner.corrected, "corrected");
            ASSERT_EQ(image.PhcToImc(photo, pixel, 0, 0), 1);
            expectPixel(pixel, corner.undistorted, "undistorted");
            image.camera.dist.CalDist(photo.x, photo.y, lens.x, lens.y);
            ASSERT_EQ(image.PhcToImc(photo + lens, pixel, 0, 0), 1);
            expectPixel(pixel, corner.distorted, "distorted");
        }
    }
}

}  // namespace
