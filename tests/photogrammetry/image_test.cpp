// Images: inner orientation, conversions, projection.
#include <fieldscan/image.h>
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <tuple>

#include "tests/published/aerial_block.h"
#include "tests/published/opencv_chessboard.h"

namespace {

void expectNear(const CXYZ& point, double x, double y, double tolerance = 1e-12) {
    EXPECT_NEAR(point.x, x, tolerance);
    EXPECT_NEAR(point.y, y, tolerance);
}

TEST(Image, PitchesAreAboveZero) {
    CImage image;
    CXYZ point;
    EXPECT_EQ(image.SetResDPI(254, 127), 1);
    EXPECT_EQ(image.SetResDPI(254, 0), 0);
    EXPECT_EQ(image.SetResDPI(0, 254), 0);
    EXPECT_EQ(image.SetRes(3, 0), 0);
    EXPECT_EQ(image.SetRes(0, 3), 0);
    expectNear(image.res, 0.1, 0.2);
    EXPECT_EQ(image.SetRes(0.01, 0.02), 0) << "although it is stored";
    expectNear(image.res, 0.01, 0.02);
    for (double* pitch : {&image.res.x, &image.res.y}) {
        *pitch = 0;
        EXPECT_EQ(image.ImcToPhc(point, point, 0), 0);
        EXPECT_EQ(image.PhcToImc(point, point, 0, 0), 0);
        *pitch = 1;
    }
}

TEST(Image, ConvertsWithoutMarks) {
    CImage image;
    image.SetRes(0.01, 0.02);
    image.camera.pp.SetXYZ(1, -1, 0);
    image.camera.dist.SetDistModel(DIST_RADIAL4);
    image.camera.dist.para[0] = 0.001;
    CXYZ point(u"P", 200, 25, 7);
    for (const int dist : {0, 1}) {
        EXPECT_EQ(image.ImcToPhc(point, point, dist), 1);
        expectNear(point, 1 + dist * 0.00325, -1.5 - dist * 0.004875);
        EXPECT_EQ(image.PhcToImc(point, point, dist, 1e-12), 1);
        expectNear(point, 200, 25, 1e-9);
    }
    EXPECT_EQ(point.z, 7.0);
    EXPECT_EQ(point.name, CString(u"P"));
    image.camera.dist.para[0] = -0.01;  // folds the image: nothing lands at 5 mm
    EXPECT_EQ(image.PhcToImc(CXYZ(5, 0, 0), point, 1, 1e-12), 0);
    EXPECT_EQ(image.PhcToImc(CXYZ(5, 0, 0), point, 1, 100.0), 1);
}

TEST(Image, HasItsFirstEdgesInside) {
    CImage image;
    image.width = 100;
    image.height = 50;
    const std::tuple<double, double, int> rows[] = {{0, 0, 1},    {99.5, 49.5, 1}, {-0.5, 10, 0},
                                                    {100, 10, 0}, {10, -0.5, 0},   {10, 50, 0}};
    for (const auto& [x, y, inside] : rows)
        EXPECT_EQ(image.PtInImage(CXYZ(x, y, 0)), inside) << x << ", " << y;
}

TEST(Image, ListsConvertAllPointsOrNone) {
    CImage image;
    CXYZ point(200, 25, 0);
    EXPECT_EQ(image.ImcToPhc(0), 1) << "no points";
    image.imc.InsertAt(0, point, 2);
    EXPECT_EQ(image.ImcToPhc(0), 1);
    image.phc[1].x = NAN;
    EXPECT_EQ(image.PhcToImc(1, 1e-9), 0);
    EXPECT_TRUE(image.imc.IsEmpty()) << "one fails";
    image.camera.innType = 2;
    EXPECT_EQ(image.PhcToImc(0, 0), 1);
    EXPECT_EQ(image.imc[0].x, image.phc[0].x) << "copies";
    EXPECT_EQ(image.ImcToPhc(0), 0);
    EXPECT_TRUE(image.phc.IsEmpty());
}

TEST(Image, CopiesEverythingAndInitLeavesNothing) {
    CImage image;
    const auto numbers = {&CImage::width, &CImage::height, &CImage::word1, &CImage::word2};
    const auto texts = {&CImage::identifier1, &CImage::identifier2};
    const auto lists = {&CImage::markImc, &CImage::imc, &CImage::phc};
    for (const auto number : numbers)
        image.*number = 100;
    for (const auto text : texts)
        image.*text = u"P";
    for (const auto list : lists)
        (image.*list).SetSize(1);
    image.camera.focal = image.center.x = image.wpk.omega = image.rot.m[0][0] = 7;
    image.innOri = INNORI_FIDUCIAL_LSQ;
    image.helmert.parameters.SetSize(4);
    image.planeTrans.parameters.SetSize(6);
    image.SetRes(3, 3);
    const CImage copy(image);
    image.Init();
    for (const auto number : numbers) {
        EXPECT_EQ(copy.*number, 100);
        EXPECT_EQ(image.*number, 0);
    }
    for (const auto text : texts) {
        EXPECT_EQ(copy.*text, CString(u"P"));
        EXPECT_TRUE((image.*text).IsEmpty());
    }
    for (const auto list : lists) {
        EXPECT_EQ((copy.*list).GetSize(), 1);
        EXPECT_TRUE((image.*list).IsEmpty());
    }
    EXPECT_EQ(image.camera.focal, 0.0);
    EXPECT_EQ(image.center.x, 0.0);
    EXPECT_EQ(image.wpk.omega, 0.0);
    EXPECT_EQ(image.rot.m[0][0], 1.0);
    EXPECT_EQ(image.innOri, INNORI_NONE);
    EXPECT_TRUE(image.helmert.parameters.IsEmpty());
    EXPECT_TRUE(image.planeTrans.parameters.IsEmpty());
    EXPECT_EQ(image.res.y, 1.0);
}

// Marks A, B, C, turned and doubled: A has its name itself, the others have it in markNames; measured in the
// other order, B of three without a name.
CImage imageWithMarks(int marks, bool onOneLine) {
    CImage image;
    image.SetRes(0.5, 0.25);
    image.camera.innType = 1;
    image.camera.pp.SetXYZ(1, 2, 0);
    for (int i = 0; i < marks; ++i) {
        CXYZ measured(CString(u"ABC").Mid(i, 1), 9 * i, 40 - 14 * i * (onOneLine ? 1 : i), 0);
        const double x = measured.x * 0.5, y = measured.y * -0.25;
        CXYZ mark(i ? CString(u"hidden") : measured.name, 2 * x - 0.5 * y + 3, 0.5 * x + 2 * y - 1, 0);
        image.camera.marks.Add(mark);
        image.camera.markNames.Add(i ? measured.name : CString());
        if (marks == 3 && i == 1)
            measured.name.Empty();
        image.markImc.InsertAt(0, measured);
    }
    return image;
}

const struct {
    int marks;
    bool onOneLine;
    int affine, helmert;
} kMarkRows[] = {{3, false, 1, 1}, {3, true, 0, 1}, {2, false, 0, 1}, {1, false, 0, 0}};

TEST(Image, AFitTakesThreeMarksOffOneLineOrTwo) {
    for (const auto& row : kMarkRows) {
        CImage image = imageWithMarks(row.marks, row.onOneLine);
        EXPECT_EQ(image.CalInnOri(INNORI_FIDUCIAL_LSQ), row.affine) << row.marks;
        EXPECT_EQ(image.innOri, row.affine ? INNORI_FIDUCIAL_LSQ : INNORI_NONE) << row.marks;
        EXPECT_EQ(image.CalInnOri(INNORI_FIDUCIAL_HELMERT), row.helmert) << row.marks;
        EXPECT_EQ(image.innOri, row.helmert ? INNORI_FIDUCIAL_HELMERT : INNORI_NONE) << row.marks;
        EXPECT_EQ(image.CalInnOri(static_cast<INNORI_TYPE>(3)), 0);
        EXPECT_EQ(image.innOri, INNORI_NONE);
    }
    CImage line = imageWithMarks(3, true);
    EXPECT_EQ(line.CalInnOri(INNORI_FIDUCIAL_LSQ), 0);
    EXPECT_TRUE(line.planeTrans.targetPoints.IsEmpty()) << "nothing is left of a failed fit";
}

TEST(Image, AFitEmptiesTheOther) {
    CImage image = imageWithMarks(3, false);
    EXPECT_EQ(image.CalInnOri(INNORI_FIDUCIAL_HELMERT), 1);
    EXPECT_EQ(image.CalInnOri(INNORI_FIDUCIAL_LSQ), 1);
    EXPECT_EQ(image.planeTrans.parameters.GetSize(), 6);
    EXPECT_TRUE(image.helmert.parameters.IsEmpty());
    EXPECT_TRUE(image.helmert.sourcePoints.IsEmpty());
    EXPECT_EQ(image.CalInnOri(INNORI_FIDUCIAL_HELMERT), 1);
    EXPECT_EQ(image.helmert.parameters.GetSize(), 4);
    EXPECT_TRUE(image.planeTrans.parameters.IsEmpty());
    EXPECT_TRUE(image.planeTrans.sourcePoints.IsEmpty());
    image.camera.innType = 0;
    EXPECT_EQ(image.CalInnOri(INNORI_FIDUCIAL_LSQ), 1) << "needs none";
    EXPECT_EQ(image.innOri, INNORI_NONE);
    EXPECT_TRUE(image.helmert.parameters.IsEmpty());
}

TEST(Image, ListsConvertByTheBestFitOfTheMarks) {
    for (const auto& row : kMarkRows) {
        CImage image = imageWithMarks(row.marks, row.onOneLine);
        CXYZ point(8, 12, 0);
        image.imc.Add(point);
        EXPECT_EQ(image.ImcToPhc(point, point, 0), 0) << "no fit yet";
        EXPECT_EQ(image.ImcToPhc(0), row.helmert) << row.marks;
        EXPECT_EQ(CImage(image).PhcToImc(0, 0), row.helmert) << row.marks;
        if (!row.helmert)
            continue;
        EXPECT_EQ(image.innOri, row.affine ? INNORI_FIDUCIAL_LSQ : INNORI_FIDUCIAL_HELMERT) << row.marks;
        expectNear(image.phc[0], 12.5 - 1, -5 - 2);
        CImage copy;
        copy = image;
        EXPECT_EQ(copy.PhcToImc(image.phc[0], point, 0, 0), 1) << row.marks;
        expectNear(point, 8, 12);
        copy.helmert.parameters.RemoveAll();
        copy.planeTrans.parameters.RemoveAll();
        EXPECT_EQ(copy.PhcToImc(image.phc[0], point, 0, 0), 0) << "nothing to convert by";
    }
}

TEST(Image, MarksWithoutNamesArePairedByTheirPlaces) {
    CImage image;
    image.camera.innType = 1;
    for (int i = 0; i < 4; ++i) {
        CXYZ measured(i % 2 ? 8 : 0, i < 2 ? 0 : 16, 0);
        CXYZ mark(2 * measured.x + 3, 2 * -measured.y - 1, 0);
        image.camera.marks.Add(mark);
        image.markImc.Add(measured);
    }
    for (const INNORI_TYPE t : {INNORI_FIDUCIAL_LSQ, INNORI_FIDUCIAL_HELMERT}) {
        CXYZ photo;
        ASSERT_EQ(image.CalInnOri(t), 1) << t;
        EXPECT_EQ(image.ImcToPhc(CXYZ(4, 20, 0), photo, 0), 1);
        expectNear(photo, 11, -41);
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
    EXPECT_EQ(image.ObjToPhc(millimetres, phc), 1);
    expectNear(phc, 5, -7.5);  // by the identity
    EXPECT_EQ(phc.z, 0.0);
    EXPECT_EQ(phc.name, millimetres.name);
    EXPECT_EQ(CImage(image).ObjToPhc(millimetres, phc), 1);
    expectNear(phc, inCamera.x, inCamera.y);  // by the matrix that the first call left
    image.rot.I();
    EXPECT_EQ(image.ObjToImc(CXYZ(u"T1", 1.2, 1.7, 1), phc, imc), 1);
    EXPECT_EQ(imc.name, CString(u"T1"));
    expectNear(phc, inCamera.x, inCamera.y);
    expectNear(imc, phc.x, -phc.y);
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
