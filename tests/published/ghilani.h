// Ghilani, Adjustment Computations: a levelling network (chapter 12) and the two-dimensional conformal
// transformation of example 18.1.
#ifndef FIELDSCAN_TESTS_PUBLISHED_GHILANI_H
#define FIELDSCAN_TESTS_PUBLISHED_GHILANI_H

namespace ghilani {

// clang-format off
// A bench mark and six lines between it, B, C and D: coefficients of the four heights, the observation in
// metres, its standard deviation in millimetres.
const struct { double heights[4], observed, deviation; } kLevelling[] = {
    {{1, 0, 0, 0}, 437.596, 1},
    {{-1, 1, 0, 0}, 10.509, 6}, {{0, -1, 1, 0}, 5.360, 4}, {{0, 0, -1, 1}, -8.523, 5},
    {{1, 0, 0, -1}, -7.348, 3}, {{0, -1, 0, 1}, -3.167, 4}, {{-1, 0, 1, 0}, 15.881, 12}};
const double kHeights[] = {437.596, 448.1087, 453.4685, 444.9436};  // as printed

// The same by elimination in fractions of this denominator: heights in mm, cofactors in mm^2, v^T P v.
const double kDenominator = 130849;
const double kExactHeights[] = {57258999004, 58634576821, 59335895541, 58220425814};
const double kExactCofactors[4][4] = {{130849, 130849, 130849, 130849}, {130849, 1756609, 1314097, 828097},
                                      {130849, 1314097, 2275441, 878641}, {130849, 828097, 878641, 1087441}};
const double kExactSumOfSquares = 166456;

// Points in both systems and, computed from them in fractions, the residuals: transformed minus target.
const struct { const char* name; double x, y, targetX, targetY, vx, vy; } kPairs[] = {
    {"A", 121.622, -128.066, 1049422.40, 51089.20, 0.0038375990, -0.0291330458},
    {"B", 141.228, 187.718, 1049413.95, 49659.30, 0.1008666369, -0.0767424208},
    {"C", 175.802, 135.728, 1049244.95, 49884.95, -0.1047042359, 0.1058754665}};
const double kExactRms[] = {0.0839678165172, 0.0773471566126};
const double kConformal[] = {-4.51249, -0.25371, 1050003.715, 50542.131};  // a, b, Tx, Ty as printed
// clang-format on

}  // namespace ghilani

#endif
