// Least squares, and what is fitted by it: plane transformations, distortion, images.
#include <fieldscan/image.h>
#include <fieldscan/precision.h>

#include "tests/adjustment/solvers.h"
#include "tests/digest/digest.h"

namespace {

// Columns that leave a common one by `spread`: the smaller, the worse the condition. The first unknown is
// tiny, so that it cancels in observations without noise.
const Family leastSquares("least_squares", 63, kExact, [](Results& out, Random& random, int i) {
    const double spreads[] = {1e3, 1.0, 0.1, 1e-3, 1e-6, 1e-9, 0.0}, spread = spreads[i % 7];
    const double noise = random.below(2) ? 1.0 : 1e-9, weights = random.below(2) ? 0.9 : 0.0;
    const int sizes[] = {4, 12, 30}, n = sizes[i % 3];
    CLeastSq equations(n), entered(0, n);
    for (int k = 0; k < n + n / 2; ++k) {
        const double common = random.around(10.0);
        double observation = random.around(noise);
        for (int j = 0; j < n; ++j) {
            const double coefficient = common + (j == k % n ? 30.0 : random.around(10.0)) * spread;
            observation += coefficient * (j == 0 ? 1e-9 : j * 100.0);
            equations.SetObeq(j, coefficient);
        }
        equations.SetObeq(n, observation);
        equations.SetWeight(1.0 + random.around(weights));
    }
    out << (equations.*kSolvers[i / 21].solve)() << equations.Noeq << equations.Bcor << equations.inverse
        << equations.CalStandard() << equations.CalStandard2() << equations.CalSigma2();
    equations.SetSigma(equations.CalSigma2());
    out << equations.CalVarianceOfEstimate() << equations.CalVarianceOfObservation() << equations.inverse
        << equations.Var;
    for (int k = 0; k < n * (n + 1); ++k)
        entered.SetNoeq(k / (n + 1), k % (n + 1), equations.Noeq[k]);
    out << entered.SolveWithReduc() << entered.Bcor << entered.inverse;
});

// Columns that are ever more alike; every other system has one that depends on others.
const Family precisions("precisions", 40, kExact, [](Results& out, Random& random, int i) {
    const int n = 3 + i % 5;
    double spread = 1.0;
    CLeastSq equations(n);
    for (int k = 0; k < i; ++k)
        spread *= 0.6;
    for (int k = 0; k < 2 * n; ++k) {
        const double common = random.around(10.0), first = common + random.around(spread);
        for (int j = 0; j < n; ++j)
            equations.SetObeq(j, j == 0            ? first
                                 : j == 2 && i % 2 ? 3.0 * first
                                                   : common + random.around(spread));
        equations.SetObeq(n, random.around(1.0));
        equations.SetWeight(k == 1 ? 0.0 : 2.0 + random.around(1.0));
    }
    CPrecision precision;
    CArray<int, int> undetermined;
    out << equations.Solve() << precision.CalFigures(equations, 0.5) << precision.largest
        << precision.estimatedSigma0 << precision.cofactors << CPrecision::CalDefect(equations, undetermined)
        << undetermined;
    for (int k = 0; k < precision.equations.GetSize(); ++k)
        out << precision.equations[k].residual << precision.equations[k].redundancy
            << precision.equations[k].standardized << precision.equations[k].tau
            << precision.equations[k].detectable << precision.equations[k].controlled;
});

// At the coordinates of a national grid, with names in another order.
template <class Transformation>
void fit(Results& out, Random& random, int i) {
    CArray<CXYZ, CXYZ&> source, target;
    for (int k = 0; k < i % 9; ++k) {
        CXYZ from = random.point(1e3) + CXYZ(4e6, 5e5, 0.0), to = random.point(0.02);
        to += CXYZ(0.8 * from.x - 0.6 * from.y, 0.8 * from.y + 0.6 * from.x, 7.0);
        from.name = to.name = CString(static_cast<unsigned short>('A' + k));
        source.Add(from);
        target.InsertAt(random.below(k + 1), to);
    }
    Transformation t;
    out << t.SetPoints(target, source) << t.CalPara() << t.parameters << t.residuals << t.RMS << t.maximum;
    CXYZ point = random.point(1e3);
    for (const int forward : {1, 0})
        out << t.Transform(point + CXYZ(3e6, 2e6, 0.0), point, forward) << point;
}

const Family helmerts("helmerts", 40, kExact, fit<CHelmert>);
const Family affines("affines", 40, kExact, fit<CPlaneAffine>);

CDist distortionOf(Random& random, int model) {
    CDist distortion;
    for (double& parameter : distortion.para)
        parameter = random.around(model == DIST_RADIAL4 ? 1e-12 : 1e-6);
    distortion.para[0] *= 1e2;
    distortion.SetDistModel(static_cast<DIST_MODEL>(model));
    return distortion;
}

const Family distortions("distortions", 60, kExact, [](Results& out, Random& random, int i) {
    CDist distortion = distortionOf(random, i % 5);
    for (int k = 0; k < 20; ++k) {
        const CXYZ p = random.point(18.0);
        double dx = 0.0, dy = 0.0;
        distortion.CalDist(p.x, p.y, dx, dy);
        out << dx << dy;
        for (const double tolerance : {1e-3, 1e-12, 0.0})
            out << distortion.CalDistInv(p.x, p.y, dx, dy, tolerance) << dx << dy;
    }
    out << distortion.ParaToDist(0.5, i) << distortion.radius << distortion.dist;
    for (int k = 0; k < i % 8; ++k)
        distortion.AddDist(20.0 + k, random.around(0.1));
    out << distortion.DistToPara();
    for (const double parameter : distortion.para)
        out << parameter;
});

// 36 mm by 24 mm with a pitch of 0.01 mm; each third one without marks, else two or four of them, measured a
// little turned.
CImage imageOf(Random& random, int i) {
    CImage image;
    image.width = 3600;
    image.height = 2400;
    image.SetResDPI(2540.0, 2539.0);
    image.center = random.point(100.0);
    image.camera.focal = 35.0;
    image.camera.pp = random.point(0.1);
    image.camera.dist = distortionOf(random, i % 5);
    image.camera.innType = i % 3 ? 1 : 0;
    for (int k = 0; k < (i % 7 ? 4 : 2); ++k) {
        CXYZ mark(k % 2 ? 17.0 : -17.0, k / 2 ? 11.0 : -11.0, 0.0), measured = random.point(0.5);
        measured += CXYZ(1800.0 + 100.0 * mark.x + mark.y, 1200.0 - 100.0 * mark.y + mark.x, 0.0);
        mark.name = CString(static_cast<unsigned short>('a' + k));
        image.camera.marks.Add(mark);
        image.markImc.Add(measured);
    }
    return image;
}

const Family images("images", 60, kExact, [](Results& out, Random& random, int i) {
    CImage image = imageOf(random, i);
    for (int k = 0; k < 10; ++k) {
        CXYZ point = random.point(1500.0) + CXYZ(1800.0, 1200.0, 0.0);
        image.imc.Add(point);
        out << image.PtInImage(point);
    }
    out << image.ImcToPhc(i % 2) << image.innOri << image.phc << image.PhcToImc(1, 1e-12) << image.imc;
    out << image.CalInnOri(INNORI_FIDUCIAL_HELMERT);
    for (int k = 0; k < 10; ++k) {
        CXYZ point = random.point(15.0), photo, pixel;
        image.rot = random.matrix();  // each call makes it that of wpk
        out << image.ObjToPhc(point, photo) << photo << image.PhcToImc(point, pixel, 1, 1e-10) << pixel
            << image.ImcToPhc(pixel, photo, 1) << photo;
    }
});

// Sums of 60 image coordinates, in pixels: the search for a distortion ends within 1e-12 mm, 1e-10 pixels.
const Family projections("projections", 60, 1e-8, [](Results& out, Random& random, int i) {
    CImage image = imageOf(random, i);
    (void)image.CalInnOri(INNORI_FIDUCIAL_HELMERT);  // the fit or none: both are in the sums
    image.wpk = random.angles(0.5);
    CRot back;
    back.SetMatrix(ROT_KPW, image.wpk);
    back.T();
    // 100 m and more before the camera.
    const CXYZ object = back * (random.point(40.0) - CXYZ(0.0, 0.0, 140.0)) + image.center;
    CXYZ first, second, pixel;
    (void)image.ObjToImc(object, first, pixel);  // zeros when it fails
    (void)image.ObjToPhc(object * 1000.0, second);
    out << first << second << pixel - CXYZ(1800.0, 1200.0, 0.0);
});

}  // namespace
