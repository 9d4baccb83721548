// Demo data of the survey program GeoEasy: a plane similarity transformation with the figures of its manual.
#ifndef FIELDSCAN_TESTS_PUBLISHED_GEOEASY_H
#define FIELDSCAN_TESTS_PUBLISHED_GEOEASY_H

namespace geoeasy {

// clang-format off
const struct { const char* name; double x, y, targetX, targetY, vx, vy; } kPairs[] = {
    {"11", 91515.44, 2815.22, 653199.72, 249226.07, -0.007, 0.007},
    {"12", 90661.58, 1475.28, 652345.85, 247886.15, 0.001, -0.007},
    {"13", 84862.54, 3865.36, 646546.83, 250276.24, 0.002, -0.003},
    {"14", 91164.16, 4415.08, 652848.44, 250825.94, -0.001, -0.006},
    {"15", 86808.18, 347.66, 648492.46, 246758.54, -0.004, -0.001},
    {"16", 90050.24, 3525.12, 651734.51, 249935.97, 0.009, 0.010}};
const double kConformal[] = {0.999997669, -0.000003434, 561684.477, 246411.178};  // a, b, tx, ty

// Other points, which it transforms with up to 0.7 mm of its own.
const struct { double x, y, targetX, targetY; } kTransformed[] = {
    {88568.240, 2281.760, 650252.518, 248692.628}, {89929.872, 3250.011, 651614.150, 249660.872},
    {90260.032, 3267.535, 651944.309, 249678.395}, {90043.364, 3181.377, 651727.642, 249592.238},
    {90257.670, 3134.414, 651941.947, 249545.275}, {89398.550, 2775.210, 651082.828, 249186.074}};
// clang-format on

}  // namespace geoeasy

#endif
