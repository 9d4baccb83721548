// Vertices, polylines, key sort.
#include <fieldscan/key_sort.h>
#include <fieldscan/polyline.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numeric>
#include <random>
#include <tuple>
#include <vector>

namespace {

CPolyline ring(std::initializer_list<std::pair<double, double>> vertices) {
    CPolyline polyline;
    for (const auto& vertex : vertices)
        polyline.AddVertex(CVertex(vertex.first, vertex.second, 0, 0));
    return polyline;
}

CPolyline unitSquare() { return ring({{0, 0}, {1, 0}, {1, 1}, {0, 1}}); }

// The x coordinates, to see an order at a glance.
std::vector<double> xs(const CPolyline& polyline) {
    std::vector<double> result;
    for (int i = 0; i < polyline.GetVertexSize(); ++i)
        result.push_back(polyline.GetVertex(static_cast<unsigned>(i))->x);
    return result;
}

TEST(Vertex, CarriesFlags) {
    EXPECT_EQ(CVertex().flag, 0x20);
    CVertex vertex(1, 2, 3, 0x11);
    EXPECT_EQ(vertex.IsSplineFrame(), 1);
    EXPECT_EQ(vertex.CheckVertexFlag(0x11), 1);
    EXPECT_EQ(vertex.CheckVertexFlag(0x13), 0) << "not all of them";
    vertex.SetSplineVertex(5);
    vertex.SetSplineFrame(0);
    EXPECT_EQ(vertex.flag, 0x09);
    vertex.SetSplineVertex(0);
    vertex.SetSplineFrame(-1);
    EXPECT_EQ(vertex.flag, 0x11);
}

TEST(Vertex, CopiesEverything) {
    CVertex made, given(1, 2, 3, 0x11);
    EXPECT_EQ(made.name, CString(u"0"));
    EXPECT_EQ(given.name, CString(u"0"));
    given.name = u"V1";
    given.code = u"EDGE";
    const CVertex copy(given);
    made = copy;
    EXPECT_EQ(made.name, CString(u"V1"));
    EXPECT_EQ(made.code, CString(u"EDGE"));
    EXPECT_EQ(made.flag, 0x11);
    EXPECT_EQ(made.y, 2.0);
}

TEST(Polyline, RefusesIndicesThatDoNotExist) {
    CPolyline polyline;
    CVertex v(5, 0, 0, 0);
    EXPECT_EQ(polyline.InsertVertex(0, v), 0) << "empty";
    EXPECT_EQ(polyline.GetVertex(0), nullptr);
    EXPECT_EQ(polyline.AddVertex(v), 0);
    EXPECT_EQ(polyline.AddVertex(CVertex(6, 0, 0, 0)), 1);
    for (const unsigned i : {2u, 3u, 0x7fffffffu, 0x80000000u, 0xffffffffu}) {
        const int k = static_cast<int>(i);
        EXPECT_EQ(polyline.GetVertex(i), nullptr) << i;
        EXPECT_EQ(polyline.SetVertex(i, v), 0) << i;
        EXPECT_EQ(polyline.InsertVertex(i, v), 0) << i;
        EXPECT_EQ(polyline.DelVertex(i), 0) << i;
        EXPECT_EQ(polyline.GetDistance(0, k), 0.0) << i;
        EXPECT_EQ(polyline.GetDistanceXY(k, 0), 0.0) << i;
    }
    polyline.SetVertexSize(0xffffffffu);
    EXPECT_EQ(xs(polyline), (std::vector<double>{5, 6}));
}

TEST(Polyline, EditsItsVertices) {
    CPolyline polyline = ring({{1, 0}, {2, 0}, {3, 0}});
    EXPECT_EQ(polyline.InsertVertex(0, *polyline.GetVertex(2)), 1) << "a vertex of its own";
    EXPECT_EQ(polyline.SetVertex(1, CVertex(9, 0, 0, 0)), 1);
    EXPECT_EQ(polyline.DelVertex(2), 1);
    EXPECT_EQ(xs(polyline), (std::vector<double>{3, 9, 3}));
    polyline.SetVertexSize(5);
    EXPECT_EQ(polyline.GetVertex(4)->flag, 0x20);
    EXPECT_EQ(polyline.GetVertex(4)->x, 0.0);
    polyline.SetVertexSize(1);
    polyline.Reverse();
    EXPECT_EQ(xs(polyline), (std::vector<double>{3}));
    polyline.DelAllVertex();
    EXPECT_EQ(polyline.vertices.GetCapacity(), 0);
}

TEST(Polyline, CopiesEverything) {
    CPolyline a(8, 77), b;
    EXPECT_EQ(b.name, CString(u"0"));
    EXPECT_EQ(b.flags, 8);
    a.name = u"ridge";
    a.reserved1 = 1;
    a.reserved2 = 2;
    a.Close();
    a.AddVertex(CVertex(1, 2, 3, 0x10));
    b = CPolyline(a);
    b = *&b;
    EXPECT_EQ(b.name, CString(u"ridge"));
    EXPECT_EQ(b.reserved1, 1);
    EXPECT_EQ(b.reserved2, 2);
    EXPECT_EQ(b.flags, 9);
    EXPECT_EQ(b.splineFlag, 77);
    EXPECT_EQ(b.GetVertex(0)->flag, 0x10);
}

TEST(Polyline, Flags) {
    CPolyline polyline;
    EXPECT_EQ(polyline.IsClose(), 0);
    polyline.Close();
    EXPECT_EQ(polyline.IsClose(), 1);
    EXPECT_EQ(polyline.CheckPolylineFlag(9), 1);
    EXPECT_EQ(polyline.CheckPolylineFlag(11), 0);
    polyline.Open();
    EXPECT_EQ(polyline.flags, 8);
    for (const int kind : {6, 1000, 5, 1000, 0}) {
        const bool known = kind == 6 || kind == 1000;
        EXPECT_EQ(polyline.SetSplineFlag(kind), known);
        EXPECT_EQ(polyline.GetSplineFlag(), known ? kind : 0);
    }
    const std::pair<int, int> masks[] = {{7, 6}, {1006, 6}, {1001, 1000}, {992, 0}, {2, 0}};
    for (const auto& [bits, kind] : masks)
        EXPECT_EQ(CPolyline(8, bits).GetSplineFlag(), kind) << bits;
}

TEST(Polyline, TurnsBySumsOfTriples) {
    CPolyline square = unitSquare();
    EXPECT_EQ(square.CheckTurn(), -1);
    square.Normalize();
    EXPECT_EQ(xs(square), (std::vector<double>{0, 1, 1, 0})) << "kept";
    square.Reverse();
    EXPECT_EQ(square.CheckTurn(), 1);
    square.Normalize();
    EXPECT_EQ(square.CheckTurn(), -1);

    CPolyline line = ring({{1, 0}, {2, 0}});
    EXPECT_EQ(line.CheckTurn(), 0);
    line.Normalize();
    EXPECT_EQ(xs(line), (std::vector<double>{2, 1})) << "degenerate ones are reversed";
    EXPECT_EQ(ring({{0, 0}, {1, 0}, {0, 1}}).CheckTurn(), -1) << "-1 - 1";
    EXPECT_EQ(ring({{0, 0}, {1, 1}, {2, 2}}).CheckTurn(), 0);
    // Counter-clockwise; the triple that is left out (last, first, second) would have made it -1.
    EXPECT_EQ(ring({{0, 1}, {6, 3}, {1, 2}, {1, 5}}).CheckTurn(), 1);
    EXPECT_EQ(ring({{1, 4}, {0, 3}, {4, 0}, {1, 1}}).CheckTurn(), 1) << "-7 + 5 + 9: the last term decides";
}

// Of two polygons that share an edge, run through in the same sense, exactly one owns each of its points.
TEST(Polyline, PointsOnEdgesBelongToTheLeft) {
    const CPolyline left = ring({{0, 0}, {3, 0}, {5, 7}, {0, 7}}),
                    right = ring({{9, 0}, {3, 0}, {5, 7}, {9, 7}});
    for (int i = 0; i < 700; ++i) {
        const double y = i * 0.01, x = (5.0 - 3.0) / (7.0 - 0.0) * (y - 0.0) + 3.0;
        EXPECT_EQ(left.PtInPolyline(x, y) + right.PtInPolyline(x, y), 1) << y;
    }
}

// The count edge by edge, both ends compared.
int countedEdgeByEdge(const CPolyline& polyline, double x, double y) {
    const int n = polyline.GetVertexSize();
    int crossings = 0;
    for (int i = 0; i < n; ++i) {
        const CVertex p = polyline.vertices[i], q = polyline.vertices[i == n - 1 ? 0 : i + 1];
        if ((p.y <= y && y < q.y) || (q.y <= y && y < p.y))
            crossings += (q.x - p.x) / (q.y - p.y) * (y - p.y) + p.x >= x;
    }
    return crossings % 2;
}

TEST(Polyline, PointsInAnyPolygonAreCountedByItsEdgesOneByOneAndInLists) {
    std::mt19937 random(5);
    const double unusual[] = {NAN, INFINITY, -INFINITY, -0.0, 1e308, -1e308};
    constexpr int kPoints = 200;  // enough for a grid of the edges
    int steps = 10;
    const auto coordinate = [&] {
        const int value = static_cast<int>(random() % 2000);
        return value < 6 && steps == 10 ? unusual[value] : value % steps * 0.1;
    };
    for (int round = 0; round < 3000; ++round) {
        steps = round % 3 == 0 ? 1000 : 10;  // few, so that points meet vertices and edges
        CPolyline polyline;
        for (int i = round % 40; i > 0; --i)
            polyline.AddVertex(CVertex(coordinate(), coordinate(), 0, 0));
        CArray<double, double> x, y;
        for (int i = 0; i < kPoints; ++i) {
            x.Add(coordinate());
            y.Add(coordinate());
        }
        CArray<int, int> inside;
        ASSERT_EQ(polyline.PtInPolyline(x, y, inside), 1);
        ASSERT_EQ(inside.GetSize(), kPoints);
        for (int i = 0; i < kPoints; ++i) {
            const int expected = countedEdgeByEdge(polyline, x[i], y[i]);
            ASSERT_EQ(polyline.PtInPolyline(x[i], y[i]), expected) << x[i] << " " << y[i];
            ASSERT_EQ(inside[i], expected) << x[i] << " " << y[i];
        }
    }
}

// A back 0 < y < 1 with teeth over every second unit of x, each to its own height; turned, stretched, moved,
// begun at any vertex, in either sense. Points are half a unit from the edges.
TEST(Polyline, PointsInACombAreThoseOfItsBackAndTeeth) {
    std::mt19937_64 random(9);
    std::uniform_real_distribution<double> any(-1, 1);
    for (int round = 0; round < 500; ++round) {
        const int width = 2 * (1 + round % 30) - 1;
        std::vector<std::pair<double, double>> comb = {{0, 0}};
        std::vector<int> heights;
        for (int x = 0; x < width; x += 2) {
            heights.push_back(2 + static_cast<int>(random() % 8));
            comb.insert(comb.end(), {{x, 1}, {x, heights.back()}, {x + 1, heights.back()}, {x + 1, 1}});
        }
        comb.emplace_back(width, 0);
        const double turn = 3.2 * any(random), along = 60 + 50 * any(random), across = 60 + 50 * any(random);
        const double x0 = 1e5 * any(random), y0 = 1e5 * any(random);
        const auto moved = [&](double x, double y) {
            return CVertex(x0 + x * along * std::cos(turn) - y * across * std::sin(turn),
                           y0 + x * along * std::sin(turn) + y * across * std::cos(turn), 0, 0);
        };
        CPolyline polyline;
        const std::size_t begin = static_cast<std::size_t>(random() % comb.size());
        for (std::size_t i = 0; i < comb.size(); ++i) {
            const auto& [x, y] = comb[(begin + i) % comb.size()];
            polyline.AddVertex(moved(x, y));
        }
        if (round % 2)
            polyline.Reverse();
        for (int x = -1; x <= width; ++x) {
            for (int y = -1; y < 10; ++y) {
                const bool between = x >= 0 && x < width && y >= 0;
                const int height = x % 2 == 0 && between ? heights[static_cast<std::size_t>(x / 2)] : 1;
                const CVertex point = moved(x + 0.5, y + 0.5);
                ASSERT_EQ(polyline.PtInPolyline(point.x, point.y), between && y < height) << round;
            }
        }
    }
}

TEST(Polyline, MeasuresLengths) {
    CPolyline square = unitSquare(), line = ring({{0, 0}, {3, 4}}), one = ring({{3, 4}});
    EXPECT_EQ(square.GetTotalLength(), 3.0);
    for (CPolyline* polyline : {&square, &line, &one})
        polyline->Close();
    EXPECT_EQ(square.GetTotalLength(), 4.0);
    EXPECT_EQ(line.GetTotalLength(), 10.0) << "there and back";
    EXPECT_EQ(line.GetTotalLengthXY(), 10.0);
    EXPECT_EQ(one.GetTotalLength(), 0.0);
    EXPECT_EQ(CPolyline().GetTotalLength(), 0.0);
    square.GetVertex(2)->z = 2;
    EXPECT_EQ(square.GetDistance(0, 2), std::sqrt(6.0));
    EXPECT_EQ(square.GetDistanceXY(0, 2), std::sqrt(2.0));
    EXPECT_EQ(square.GetTotalLengthXY(), 4.0);
}

TEST(Polyline, HasARangeUnlessItIsEmpty) {
    CPolyline triangle = ring({{-3, 20}, {-1, 5}, {-8, 9}});
    triangle.GetVertex(1)->z = 2;
    std::vector<double> box(6, 7.0);
    EXPECT_EQ(triangle.GetRange(box[0], box[1], box[2], box[3], box[4], box[5]), 1);
    EXPECT_EQ(box, (std::vector<double>{-8, -1, 5, 20, 0, 2}));
    EXPECT_EQ(CPolyline().GetRange(box[0], box[1], box[2], box[3], box[4], box[5]), 0);
    EXPECT_EQ(box, std::vector<double>(6));
}

TEST(Polyline, Interpolates) {
    CPolyline line = ring({{0, 0}, {10, 0}});
    line.name = u"edge";
    EXPECT_EQ(line.InterpolateVertex(10), 1);
    EXPECT_EQ(line.GetVertexSize(), 2);
    CPolyline closed(line);
    closed.Close();
    EXPECT_EQ(line.InterpolateVertex(3), 1);
    EXPECT_EQ(xs(line), (std::vector<double>{0, 0.1 * 3 * 10, 0.1 * 6 * 10, 0.1 * 9 * 10, 10}));
    EXPECT_EQ(line.GetVertex(1)->name, CString(u"edge"));
    EXPECT_EQ(line.GetVertex(1)->flag, 0x20);
    EXPECT_EQ(line.GetVertex(4)->name, CString(u"0"));
    EXPECT_EQ(line.GetVertex(4)->flag, 0);
    EXPECT_EQ(closed.InterpolateVertex(3), 1);
    ASSERT_EQ(closed.GetVertexSize(), 8);
    EXPECT_NEAR(closed.GetVertex(7)->x, 1, 1e-12);
    CPolyline steep = ring({{0, 0}, {3, 0}});
    steep.GetVertex(1)->z = 4;
    EXPECT_EQ(steep.InterpolateVertex(2.5), 1);
    ASSERT_EQ(steep.GetVertexSize(), 3) << "by the distance in space";
    EXPECT_EQ(steep.GetVertex(1)->z, 2.0);
    EXPECT_EQ(CPolyline().InterpolateVertex(1), 1);
}

TEST(Polyline, RefusesToInterpolateWithoutEnd) {
    CPolyline line = ring({{0, 0}, {10, 0}}), endless = ring({{0, 0}, {INFINITY, 0}});
    for (const double step : {0.0, -1.0, 1e-18})
        EXPECT_EQ(line.InterpolateVertex(step), 0) << step;
    EXPECT_EQ(line.GetVertexSize(), 2);
    EXPECT_EQ(endless.InterpolateVertex(1), 0);
    EXPECT_EQ(endless.GetVertexSize(), 2);
}

using Order = std::vector<int>;

Order orderOf(const std::vector<double>& input, int ascending) {
    CArray<double, double> keys;
    CArray<int, int> order;
    for (const double key : input)
        keys.Add(key);
    QuickSortKey(keys, order, ascending);
    for (int k = 0; k < keys.GetSize(); ++k)
        EXPECT_EQ(std::memcmp(&keys[k], &input[static_cast<std::size_t>(order[k])], sizeof(double)), 0) << k;
    return Order(order.GetData(), order.GetData() + order.GetSize());
}

TEST(KeySort, KeepsTheOrderOfEqualKeysAndPutsNanAboveAll) {
    const double nan = std::nan("");
    const std::tuple<std::vector<double>, Order, Order> rows[] = {
        {{}, {}, {}},
        {{5}, {0}, {0}},
        {{std::nextafter(1.0, 2.0), 1, 3}, {1, 0, 2}, {2, 0, 1}},
        {{-nan, nan, INFINITY, 2, 2, 0.0, -0.0, -1}, {7, 5, 6, 3, 4, 2, 0, 1}, {0, 1, 2, 3, 4, 5, 6, 7}},
        {{2, -0.0, nan, -1, 0.0, 2, -nan, -INFINITY}, {7, 3, 1, 4, 0, 5, 2, 6}, {2, 6, 0, 5, 1, 4, 3, 7}}};
    for (const auto& [keys, up, down] : rows) {
        EXPECT_EQ(orderOf(keys, 1), up);
        EXPECT_EQ(orderOf(keys, 0), down);
    }
}

// As many as are sorted by digits, with doubles among them.
TEST(KeySort, SortsManyKeysOfEverySize) {
    for (const int size : {63, 64, 3000}) {
        std::mt19937_64 random(4);
        std::vector<double> keys;
        Order up(static_cast<std::size_t>(size)), down;
        for (int k = 0; k < size; ++k)
            keys.push_back(std::ldexp(static_cast<double>(random() % 9) - 4.0, k % 50 * 41 - 1070));
        std::iota(up.begin(), up.end(), 0);
        down = up;
        const auto key = [&](int k) { return keys[static_cast<std::size_t>(k)]; };
        std::stable_sort(up.begin(), up.end(), [&](int a, int b) { return key(a) < key(b); });
        std::stable_sort(down.begin(), down.end(), [&](int a, int b) { return key(a) > key(b); });
        EXPECT_EQ(orderOf(keys, 1), up);
        EXPECT_EQ(orderOf(keys, 0), down);
    }
}

}  // namespace
