// The record of a scan job: copies, checks, names of orientation files, and its directions as polylines in
// degrees.
#include <fieldscan/scan_area.h>
#include <fieldscan/survey.h>

#include <cmath>

#include "geometry/angle_constants.h"
#include "platform/framework/out_of_memory.h"
#include "platform/framework/truncation.h"

using namespace fieldscan;

namespace {

constexpr double kGridTolerance = kRadiansPerDegree;

bool isNormalized(double angle) { return 0.0 <= angle && angle < kFullTurn; }

double wholeCircles(double angle) { return truncated(angle / kFullTurn) * kPi * 2.0; }

}  // namespace

CScanArea::CScanArea() { Init(); }

CScanArea::CScanArea(const CScanArea& other) : CScanArea() { operator=(other); }

CScanArea::~CScanArea() {}

CScanArea& CScanArea::operator=(const CScanArea& other) {
    if (this != &other) {
        columnCount = other.columnCount;
        rowCount = other.rowCount;
        areaAngle1 = other.areaAngle1;
        areaAngle2 = other.areaAngle2;
        shootAngles.Copy(other.shootAngles);
        imageNames.Copy(other.imageNames);
        headerLine = other.headerLine;
        outlineAngles.Copy(other.outlineAngles);
    }
    return *this;
}

void CScanArea::Init() {
    columnCount = 0;
    rowCount = 0;
    areaAngle1.Init();
    areaAngle2.Init();
    imageNames.RemoveAll();
    shootAngles.RemoveAll();
    workTable1.RemoveAll();
    workTable2.RemoveAll();
    outlineAngles.RemoveAll();
    headerLine.Empty();
}

void CScanArea::Trace() {}

int CScanArea::CheckParameter() const {
    const long long shots = static_cast<long long>(columnCount) * rowCount;
    if (imageNames.GetSize() != shots)
        return -1;
    if (shootAngles.GetSize() != shots)
        return -2;
    if (!isNormalized(areaAngle1.omega) || !isNormalized(areaAngle2.omega) ||
        !isNormalized(areaAngle1.kappa) || !isNormalized(areaAngle2.kappa))
        return -3;
    if (columnCount < 1 || rowCount < 1)
        return 1;
    for (int r = 0; r < rowCount; ++r)
        for (int c = 0; c < columnCount; ++c)
            if (shootAngles[r * columnCount + c].omega - shootAngles[r * columnCount].omega > kGridTolerance)
                return -4;
    for (int c = 0; c < columnCount; ++c)
        for (int r = 0; r < rowCount; ++r)
            if (shootAngles[r * columnCount + c].kappa - shootAngles[c].kappa > kGridTolerance)
                return -4;
    return 1;
}

int CScanArea::IsWithImage() const { return !imageNames.IsEmpty() && !imageNames[0].IsEmpty(); }

int CScanArea::GetExtFileName(int index, CString& name) const {
    if (index < 0 || index >= static_cast<long long>(columnCount) * rowCount)
        return 0;
    return zeroIfOutOfMemory([&] {
        CString stem;
        if (index < imageNames.GetSize())
            stem = imageNames[index].Left(imageNames[index].ReverseFind('.')).Trim();
        stem += u".ext";
        name = stem;
        return 1;
    });
}

void CScanArea::NormalizeAngle(double& angle) const {
    if (angle < 0.0) {
        angle -= wholeCircles(angle);
        if (angle < 0.0)
            angle += kFullTurn;
    }
    if (angle >= kFullTurn)
        angle -= wholeCircles(angle);
    // The product is rounded: near a multiple of the full circle the angle may now be a rounding step
    // outside.
    if (angle < 0.0 || angle >= kFullTurn)
        angle = 0.0;
}

void CScanArea::CalHVPolyline1() {
    shootPolyline.DelAllVertex();
    shootPolyline.SetVertexSize(static_cast<unsigned int>(shootAngles.GetSize()));
    for (int k = 0; k < shootAngles.GetSize(); ++k) {
        CVertex& vertex = shootPolyline.vertices[k];
        vertex.x = shootAngles[k].kappa * kDegreesPerRadian;
        vertex.z = shootAngles[k].omega * kDegreesPerRadian;
    }
}

void CScanArea::CalHVPolyline2() {
    outlinePolyline.DelAllVertex();
    outlinePolyline.SetVertexSize(static_cast<unsigned int>(outlineAngles.GetSize()));
    for (int k = 0; k < outlineAngles.GetSize(); ++k) {
        CVertex& vertex = outlinePolyline.vertices[k];
        vertex.x = outlineAngles[k].kappa * kDegreesPerRadian;
        vertex.y = CCalcXYZHV::AngleZ0toH0(outlineAngles[k].omega * kDegreesPerRadian);
    }
}
