// Moves points from the grid of a site into the national grid: a plane similarity transformation (CHelmert)
// from the points known in both, with its residuals. CheckPairs says whether these points determine it.
//
// Prints:
//   4 pairs: the points spread over the plane
//   scale 0.999906, rotation -12.3056 degrees, shift 5533879.226 461801.331
//   residual of 101    0.0028   0.0018
//   residual of 103   -0.0003  -0.0021
//   residual of 104   -0.0034   0.0013
//   residual of 102    0.0010  -0.0011
//   RMS                0.0023   0.0016
//   corner A  5534274.429 461970.977
//   corner B  5534306.395 462117.517
//   well      5534379.029 462022.568
//   axis 3    358.143 332.665 on the site
#include <fieldscan/fieldscan.h>

#include <cmath>
#include <cstdio>
#include <string>

namespace {

using Points = CArray<CXYZ, CXYZ&>;

struct Row {
    const char* name;
    double x, y;  // north and east, metres
};
constexpr Row kSiteControl[] = {{"101", 512.334, 208.911},
                                {"102", 498.870, 431.226},
                                {"103", 287.415, 455.083},
                                {"104", 301.748, 187.650}};
constexpr Row kNationalControl[] = {{"101", 5534424.259, 461896.240},
                                    {"103", 5534256.992, 462184.669},
                                    {"104", 5534214.006, 461920.347},
                                    {"102", 5534458.484, 462116.299},
                                    {"330", 5534805.104, 462377.958}};  // not known on the site
constexpr Row kSitePoints[] = {
    {"corner A", 350.000, 250.000}, {"corner B", 350.000, 400.000}, {"well", 441.210, 322.705}};

template <int N>
void fill(Points& points, const Row (&rows)[N]) {
    for (const Row& row : rows) {
        CXYZ point(row.name, row.x, row.y, 0.0);
        points.Add(point);
    }
}

std::string narrow(const CString& text) {
    char buffer[64];
    CStringToChar(text, buffer, sizeof buffer);
    return buffer;
}

const char* meaningOf(int checkPairs) {
    switch (checkPairs) {
        case 1:
            return "the points spread over the plane";
        case 3:
            return "the points are on one line: nothing checks the direction across";
        case -1:
            return "fewer than two points have a partner";
        case -2:
            return "the points coincide";
        default:
            return "a coordinate is not finite";
    }
}

void printTransformation(const CHelmert& helmert) {
    const double a = helmert.parameters[0], b = helmert.parameters[1];
    std::printf("scale %.6f, rotation %.4f degrees, shift %.3f %.3f\n", std::hypot(a, b),
                std::atan2(b, a) * 57.29577951308232, helmert.parameters[2], helmert.parameters[3]);
    for (int i = 0; i < helmert.residuals.GetSize(); ++i)
        std::printf("residual of %s  %8.4f %8.4f\n", narrow(helmert.residuals[i].name).c_str(),
                    helmert.residuals[i].x, helmert.residuals[i].y);
    std::printf("RMS              %8.4f %8.4f\n", helmert.RMS.x, helmert.RMS.y);
}

}  // namespace

int main() {
    Points site, national, points;
    fill(site, kSiteControl);
    fill(national, kNationalControl);
    fill(points, kSitePoints);

    CHelmert helmert;
    const int pairs = helmert.SetPoints(national, site);  // from the site to the national grid, by name
    const int check = helmert.CheckPairs();
    std::printf("%d pairs: %s\n", pairs, meaningOf(check));
    if (check != 1 || helmert.CalPara() != 1)
        return 1;
    printTransformation(helmert);

    for (int i = 0; i < points.GetSize(); ++i) {
        CXYZ moved(points[i]);
        if (!helmert.Transform(points[i], moved, 1))
            return 1;
        std::printf("%-8s  %.3f %.3f\n", narrow(moved.name).c_str(), moved.x, moved.y);
    }

    // And back, to set out a point of the national grid.
    CXYZ planned(u"axis 3", 5534300.0, 462050.0, 0.0);
    if (helmert.Transform(planned, planned, 0))
        std::printf("%-8s  %.3f %.3f on the site\n", narrow(planned.name).c_str(), planned.x, planned.y);
}
