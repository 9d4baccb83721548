// An image measurement: one photograph, what was measured in it, and the points of the object in it.
#ifndef TOOLS_IMAGE_MEASUREMENT_H
#define TOOLS_IMAGE_MEASUREMENT_H

#include <fieldscan/image.h>

#include <filesystem>
#include <vector>

// unseen: behind the camera, or so far aside that the distortion cannot be computed.
enum class PixelPlace { inside, outside, unseen };

// A point of the object, projected.
struct Projection {
    CXYZ photo;  // mm; meaningless for a point that is unseen
    CXYZ pixel;
    PixelPlace place = PixelPlace::unseen;
    int measured = -1;  // its index in CImage::imc; -1: a new point
    double dx = 0.0;    // measured minus projected, pixels
    double dy = 0.0;
    bool marked = false;  // its residual is longer than kMarkedFrom allows

    bool isCompared() const { return measured >= 0 && place != PixelPlace::unseen; }
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
    CPlaneAffine affine;  // both fitted to the fiducial marks; without parameters where the fit fails
    CHelmert helmert;
    CArray<CXYZ, CXYZ&> objectPoints;
    std::vector<Projection> projections;  // one for each of them
    Comparison comparison;
};

// A control point is marked when its residual is longer than so many times the root mean square.
constexpr double kMarkedFrom = 3.0;

// The steps that read a file and those of other sources share. setCamera throws DataError unless focal length
// and pixel pitch are greater than 0; `name` is that of its file. Angles in degrees.
void setCamera(const CCamera& camera, const std::filesystem::path& name, Measurement& m);
// Measured points to `imc`, those with the name of a fiducial mark to `markImc`.
void sortMarks(CArray<CXYZ, CXYZ&>& measured, Measurement& m);
void setOrientation(const CXYZ& center, const CXYZ& angles, Measurement& m);

// To be called in this order. Each throws DataError with a text for the operator.
void readCamera(const std::filesystem::path& path, Measurement& m);
void readImagePoints(const std::filesystem::path& path, Measurement& m);
void readOrientation(const std::filesystem::path& path, Measurement& m);
// Both inner orientations, then photo coordinates: by the affine one, else by the Helmert one, else by pixel
// pitch and principal point where the camera has no fiducial marks.
void measurePhoto(Measurement& m);
// The object points in the image, and the residuals of those that are measured.
void projectPoints(Measurement& m);

#endif
