// Lens distortion.
#include <fieldscan/distortion.h>
#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace {

TEST(Distortion, FollowsTheFormulas) {
    CDist dist;
    for (int i = 0; i < 10; ++i)
        dist.para[i] = std::round(std::pow(10, i));
    // At (2, 3): r2 = 13, p0 r2 + p1 r2^2 = 1703, p2 r2^3 = 219700.
    const double rows[][4] = {
        {1, 4, 28782403 * 2, 28782403 * 3},
        {2, 4, 1703 * 2 + 100 * 21 + 1000 * 12, 1703 * 3 + 1000 * 31 + 100 * 12},
        {3, 5, 221403 * 2 + 1000 * 21 + 10000 * 12, 221403 * 3 + 10000 * 31 + 1000 * 12},
        {4, 8, 60000 + 900000 + 200 + 3000 + 1703 * 2, 1703 * 3 + 6000000 + 40000000},
        {7, 0, 0, 0}};
    for (const auto& row : rows) {
        double dx, dy;
        dist.SetDistModel(static_cast<DIST_MODEL>(row[0]));
        dist.CalDist(2, 3, dx, dy);
        EXPECT_EQ(dx, row[2]) << row[0];
        EXPECT_EQ(dy, row[3]) << row[0];
        EXPECT_EQ(dist.GetDistModel(), row[1] > 0 ? row[0] : 0);
        EXPECT_EQ(dist.GetNumPara(), row[1]);
    }
}

// The search without lanes and shortcuts. Returns the square of the residual that it ends with.
double searched(const CDist& dist, double x, double y, double& u, double& v, double tol) {
    double dx, dy, before = INFINITY;
    const auto squared = [&](double a, double b) {
        dist.CalDist(a, b, dx, dy);
        return (b + dy - y) * (b + dy - y) + (a + dx - x) * (a + dx - x);
    };
    dist.CalDist(x, y, dx, dy);
    u = x - dx;
    v = y - dy;
    double e = squared(u, v);
    for (int pass = 0; pass < 100 && !(e <= tol * tol) && e < before; ++pass) {
        const double u0 = u, v0 = v, s = std::sqrt(before = e), h = s * 0.5;
        for (int k = 0; k < 25 && !(e <= tol * tol); ++k) {
            const int row = k / 5;
            const double b = v0 - s + row * h, a = u0 - s + (k % 5) * h, there = squared(a, b);
            if (there < e) {
                e = there;
                u = a;
                v = b;
            }
        }
    }
    return e;
}

TEST(Distortion, IsInvertedByTheSearchPointByPoint) {
    std::mt19937_64 random(2);
    const auto uniform = [&] { return static_cast<double>(random()) * std::exp2(-63) - 1; };
    CDist dist;
    double cx, cy, u, v;
    for (int n = 0; n < 10000; ++n) {
        dist.SetDistModel(static_cast<DIST_MODEL>(n % 5));
        for (double& p : dist.para)
            p = std::exp2(n % 17 - 10) * uniform();  // from a lens to what folds the image
        if (n % 50 == 49)
            dist.para[2] = -0.99;  // shrinks x a hundredfold: the passes run out
        const double tolerances[] = {1e-12, 0, 1e-3, 1e-9, 0.25}, tol = tolerances[n / 5 % 5];
        const double x = uniform(), y = uniform();
        const int result = dist.CalDistInv(x, y, cx, cy, tol);
        ASSERT_EQ(result, searched(dist, x, y, u, v, tol) <= tol * tol) << n;
        ASSERT_EQ(cx, u - x) << n;
        ASSERT_EQ(cy, v - y) << n;
    }
    EXPECT_EQ(dist.CalDistInv(NAN, 1, cx, cy, 1), 0);
    EXPECT_EQ(dist.CalDistInv(1, -INFINITY, cx, cy, 1), 0);
}

TEST(Distortion, TableAndParameters) {
    const auto relative = [](double q) { return (((q * -0.0625 + 0.25) * q - 0.5) * q + 2) * q; };
    CDist dist;
    EXPECT_EQ(dist.ParaToDist(0.5, 4), 0) << "not radial";
    for (int n = 1; n <= 4; ++n) {
        EXPECT_EQ(dist.DistToPara(), 0) << n;
        EXPECT_EQ(dist.AddDist(n * 0.5, relative(n * n * 0.25)), n);
    }
    EXPECT_EQ(dist.DistToPara(), 1);
    EXPECT_EQ(dist.numPara, 0) << "the number stays";
    EXPECT_EQ(dist.ParaToDist(0.5, 4), 1);
    EXPECT_EQ(dist.radius[3], 1.5);
    EXPECT_EQ(dist.dist[0], 0.0);
    EXPECT_NEAR(dist.dist[3], 1.5 * relative(1.5 * 1.5), 1e-8) << "absolute";
    EXPECT_EQ(dist.DistToPara(), 0) << "radius 0 and three others determine no four unknowns";
    EXPECT_NEAR(dist.para[0], 2, 1e-9);
    EXPECT_EQ(dist.AddDist(2, 3), 5);
    const CDist copy(dist);
    EXPECT_EQ(copy.radius.GetSize(), 5);
    EXPECT_EQ(copy.dist[4], 3.0);
    EXPECT_EQ(copy.para[0], dist.para[0]);
    dist.dist.SetSize(4);
    EXPECT_EQ(dist.DistToPara(), 0);
    EXPECT_EQ(dist.ParaToDist(0.5, -1), 1);
    EXPECT_TRUE(dist.radius.IsEmpty());
    EXPECT_TRUE(dist.dist.IsEmpty());
}

}  // namespace
