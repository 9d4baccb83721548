// The residuals of points in the plane as a picture.
#ifndef TOOLS_PICTURES_RESIDUAL_PICTURE_H
#define TOOLS_PICTURES_RESIDUAL_PICTURE_H

#include <filesystem>
#include <string>
#include <vector>

struct Residual {
    std::string name;
    double x, y, vx, vy;
};

// How the picture shows x and y.
struct ResidualView {
    std::string unit = "m";  // of coordinates and residuals
    bool xIsUpward = true;   // else it is to the right, and y upward
};

// Writes an SVG file; "-" is standard output. Throws DataError when it cannot be written.
void drawResiduals(const std::vector<Residual>& residuals, const ResidualView& view,
                   const std::filesystem::path& path);

#endif
