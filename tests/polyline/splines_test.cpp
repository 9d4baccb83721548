// Splines.
#include <fieldscan/polyline.h>
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "tests/print_text.h"

namespace {

using Smooth = int (CPolyline::*)(int);

CPolyline polylineOf(std::initializer_list<CXYZ> points, bool closed) {
    CPolyline polyline;
    polyline.name = u"outline";
    for (const CXYZ& point : points) {
        CVertex vertex(point.x, point.y, point.z, 0x41);
        vertex.name = u"given";
        polyline.AddVertex(vertex);
    }
    if (closed)
        polyline.Close();
    return polyline;
}

const CVertex& at(const CPolyline& polyline, int i) { return *polyline.GetVertex(static_cast<unsigned>(i)); }

TEST(Splines, KeepTheFrameAndSmoothItAgain) {
    for (const Smooth smooth : {&CPolyline::Spline, &CPolyline::CtmlRomSpline}) {
        for (const bool closed : {false, true}) {
            CPolyline curve =
                polylineOf({{500000.25, 4000000, 7}, {500001.5, 4000003, 8}, {500000, 4000007, 5}}, closed);
            const CPolyline given = curve;
            ASSERT_EQ((curve.*smooth)(4), 1);
            ASSERT_EQ(curve.GetVertexSize(), closed ? 12 : 9);
            for (int i = 0; i < curve.GetVertexSize(); ++i) {
                const bool frame = i % 4 == 0;
                EXPECT_EQ(at(curve, i).flag, frame ? 0x51 : 0x28);
                EXPECT_EQ(at(curve, i).name, CString(frame ? u"given" : u"outline"));
                if (frame) {
                    EXPECT_EQ(at(curve, i).Len(at(given, i / 4)), 0.0);
                }
            }
            EXPECT_EQ(curve.GetSplineFlag(), smooth == &CPolyline::Spline ? 6 : 1000);
            const CPolyline once = curve;
            ASSERT_EQ((curve.*smooth)(1), 1);
            EXPECT_EQ(curve.GetVertexSize(), 3) << "only the frame";
            ASSERT_EQ((curve.*smooth)(4), 1);
            for (int i = 0; i < curve.GetVertexSize(); ++i)
                EXPECT_EQ(at(curve, i).Len(at(once, i)), 0.0);
        }
    }
}

TEST(Splines, KnownCurves) {
    // Middle of the lower side of the unit square: by the (1, 23, 23, 1) / 48 and (-1, 9, 9, -1) / 16 rules.
    for (const bool cubic : {true, false}) {
        CPolyline square = polylineOf({{0, 0, 2}, {1, 0, 2}, {1, 1, 2}, {0, 1, 2}}, true);
        ASSERT_EQ(cubic ? square.Spline(2) : square.CtmlRomSpline(2), 1);
        EXPECT_NEAR(at(square, 1).x, 0.5, 1e-15);
        EXPECT_NEAR(at(square, 1).y, cubic ? -0.1875 : -0.125, 1e-15);
        EXPECT_NEAR(at(square, 1).z, 2.0, 1e-15);
        EXPECT_NEAR(at(square, 7).x, cubic ? -0.1875 : -0.125, 1e-15) << "the closing edge";

        CPolyline line = polylineOf({{0, 0, 0}, {1, 2, -1}, {10, 20, -10}, {11, 22, -11}}, false);
        ASSERT_EQ(cubic ? line.Spline(7) : line.CtmlRomSpline(7), 1);
        for (int i = 0; i < line.GetVertexSize(); ++i) {
            EXPECT_NEAR(at(line, i).y, 2 * at(line, i).x, 1e-12);
            EXPECT_NEAR(at(line, i).z, -at(line, i).x, 1e-12);
            if (!cubic && i > 0) {
                EXPECT_GT(at(line, i).x, at(line, i - 1).x) << "no loop beside the long edge";
            }
        }
    }
}

TEST(Splines, CatmullRomIsCentripetal) {
    // Knots 0, 1, 3, 6: the roots of edges of 1, 4 and 9. The line continues to -1 and to 23.
    CPolyline line = polylineOf({{0, 0, 0}, {1, 0, 0}, {5, 0, 0}, {14, 0, 0}}, false);
    ASSERT_EQ(line.CtmlRomSpline(2), 1);
    EXPECT_NEAR(at(line, 1).x, 11.0 / 24.0, 1e-14);
    EXPECT_NEAR(at(line, 3).x, 41.0 / 15.0, 1e-14);
    EXPECT_NEAR(at(line, 5).x, 371.0 / 40.0, 1e-14);
}

// Middles of the edges, (p + q) / 2 - (P + Q) / 16, by the equations for the second derivatives P: 0 at the
// ends of an open line, else O + 4 P + Q = 6 (o - 2 p + q) for neighbours o, p, q. In fractions.
TEST(Splines, SecondDerivativesAgreeAcrossVertices) {
    const std::vector<double> open = {1527, -1333, -2635, 2241}, closed = {147, -211, -568, 591, 393};
    for (const bool isClosed : {false, true}) {
        CPolyline curve = polylineOf({{0, 0, 0}, {10, 3, 1}, {12, -8, 5}, {30, 0, -4}, {31, 9, 0}}, isClosed);
        ASSERT_EQ(curve.Spline(2), 1);
        int edge = 0;
        for (const double middle : isClosed ? closed : open)
            EXPECT_NEAR(at(curve, 2 * edge++ + 1).y, middle / (isClosed ? 88 : 448), 1e-13) << edge;
    }
}

TEST(Splines, RefuseDegenerateInput) {
    for (const Smooth smooth : {&CPolyline::Spline, &CPolyline::CtmlRomSpline}) {
        for (CPolyline bad : {polylineOf({}, true), polylineOf({{0, 0, 0}, {1, 1, 1}}, true),
                              polylineOf({{0, 0, 0}, {1, 1, 1}, {1, 1, 1}}, false),
                              polylineOf({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 0, 0}}, true),
                              polylineOf({{0, 0, 0}, {1, INFINITY, 1}, {2, 0, 0}}, false),
                              polylineOf({{0, 0, 0}, {1, 0, 1e308}, {2, 0, -1e308}, {3, 0, 1e308}}, false)}) {
            EXPECT_EQ((bad.*smooth)(4), 0);
            EXPECT_EQ(bad.GetSplineFlag(), 0);
            if (!bad.vertices.IsEmpty()) {
                EXPECT_EQ(at(bad, 0).flag, 0x41) << "as it was";
            }
        }
        CPolyline good = polylineOf({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 0, 0}}, false);
        for (const int pieces : {0, -1, 300000000})
            EXPECT_EQ((good.*smooth)(pieces), 0);
        good.GetVertex(1)->flag = CVertex::kSplineVertex | CVertex::kSplineFrame;  // of an earlier run
        EXPECT_EQ((good.*smooth)(1), 1) << "the ends of an open one may meet";
        EXPECT_EQ(good.GetVertexSize(), 4);
    }
}

}  // namespace
