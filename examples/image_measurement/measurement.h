// An image measurement: one photograph, what was measured in it, and the points of the object in it.
#ifndef EXAMPLES_IMAGE_MEASUREMENT_MEASUREMENT_H
#define EXAMPLES_IMAGE_MEASUREMENT_MEASUREMENT_H

#include <fieldscan/image.h>

#include <filesystem>
#include <vector>

// unseen: not before the projection centre, or so far aside that the distortion cannot be taken out.
enum class Place { inside, outside, unseen };

// A point of the object, projected.
struct Projection {
    CXYZ photo;  // mm; without meaning for a point that is unseen
    CXYZ pixel;
    Place place = Place::unseen;
    int measured = -1;  // which point of CImage::imc it is, -1 for a new point
    double dx = 0.0;    // measured minus projected, pixels
    double dy = 0.0;
    bool marked = false;  // far beyond what the others show

    bool isCompared() const { return measured >= 0 && place != Place::unseen; }
    double length() const;
};

// Over the control points, pixels.
struct Comparison {
    int count = 0, markedCount = 0;
    CXYZ rms, largest;     // in x and y; the largest with its sign
    double length = 0.0;   // root mean square of the lengths
    double others = 0.0;   // the same without the points that are marked
    double inPhoto = 0.0;  // the same as `length` between photo coordinates, mm
};

struct Measurement {
    CImage image;  // camera, marks and points as measured, their photo coordinates, exterior orientation
    CPlaneAffine affine;  // both fitted to the fiducial marks, without parameters where that cannot be done
    CHelmert helmert;
    CArray<CXYZ, CXYZ&> objectPoints;
    std::vector<Projection> projections;  // one for each of them
    Comparison comparison;
};

// A control point is marked when its residual is longer than so many times the root mean square.
constexpr double kMarkedFrom = 3.0;

// A failure of one of these is a std::runtime_error with a text for the operator. They go in this order.
void readCamera(const std::filesystem::path& path, Measurement& m);
void readImagePoints(const std::filesystem::path& path, Measurement& m);
void readOrientation(const std::filesystem::path& path, Measurement& m);
// Both inner orientations, then photo coordinates by the one that is better suited.
void measurePhoto(Measurement& m);
void projectPoints(Measurement& m);

#endif
