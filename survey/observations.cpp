// Direction and zenith angle from the coordinates of station and target, and coordinates from an observation
// (polar method).
#include <fieldscan/survey.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <string>
#include <utility>

#include "geometry/angle_constants.h"
#include "platform/framework/number_text.h"

using namespace fieldscan;

namespace {

// Rounded by way of the text, as the point would come back from a file.
double toFourDecimals(double value) {
    std::string text;
    appendFixed(text, value, 4, 10);
    return parseDouble(text);
}

int floatBits(double value) {
    const float single = static_cast<float>(value);
    std::int32_t bits;
    std::memcpy(&bits, &single, sizeof bits);
    return bits;
}

bool scaleTooSmall(double scale) { return std::fabs(scale) < 1e-12; }

void storeAngles(CXYZ& out, double hAngle, double vAngle) {
    out.attr[0] = floatBits(hAngle);
    out.attr[1] = floatBits(vAngle);
}

void storePlan(CXYZ& out, const CXYZ& station, double direction, double horizontalDistance) {
    const double a = direction / kDegreesPerRadian;
    out.x = toFourDecimals(station.x + std::cos(a) * horizontalDistance);
    out.y = toFourDecimals(station.y + std::sin(a) * horizontalDistance);
}

void exchangeOnSecondFace(CXYZ& out, double vAngle) {
    if (vAngle > 180.0)
        std::swap(out.x, out.y);
}

}  // namespace

void CCalcXYZHV::CnvSokuToMath(CXYZ& p) { p.SetXYZ(p.y * 1000.0, p.x * 1000.0, p.z * 1000.0); }

void CCalcXYZHV::CnvMathToSoku(CXYZ& p) { p.SetXYZ(p.y * 0.001, p.x * 0.001, p.z * 0.001); }

int CCalcXYZHV::XYZToHV(CXYZ station, CXYZ target, double instrumentHeight, double& zenith,
                        double& direction) {
    const double dx = target.x - station.x;
    const double dy = target.y - station.y;
    if (dx == 0.0 && dy == 0.0)
        direction = 0.0;
    else if (dx == 0.0)
        direction = dy >= 0.0 ? 90.0 : 270.0;
    else if (dx < 0.0)
        direction = std::atan(dy / dx) * kDegreesPerRadian + 180.0;
    else if (dy >= 0.0)
        direction = std::atan(dy / dx) * kDegreesPerRadian;
    else
        direction = std::atan(dy / dx) * kDegreesPerRadian + 360.0;

    const double hd = std::sqrt(dx * dx + dy * dy);
    if (hd == 0.0)
        return 0;
    zenith = 90.0 - std::atan((target.z - instrumentHeight - station.z) / hd) * kDegreesPerRadian;
    return 1;
}

int CCalcXYZHV::CalcXYZToVH(CXYZ target, CXYZ station, double instrumentHeight, double& zenith,
                            double& direction) {
    const double dx = target.x - station.x;
    const double dy = target.y - station.y;
    const double dz = target.z - (station.z + instrumentHeight);
    const double slope = std::sqrt(dx * dx + dy * dy + dz * dz);
    double sine = ((target.z - instrumentHeight) - station.z) / slope;
    // The two height differences round differently. Straight up or down the quotient can be a step above 1.
    // At the instrument (slope 0) the numerator can differ from 0: the quotient is infinite, its angle NaN.
    if (std::isfinite(sine))
        sine = std::clamp(sine, -1.0, 1.0);
    double elevation = std::asin(sine) * kDegreesPerRadian;
    Angle0To360(elevation);
    zenith = 90.0 - elevation;
    direction = std::atan2(dx, dy) * kDegreesPerRadian;
    Angle0To360(direction);
    return 1;
}

int CCalcXYZHV::CalcXYZ(CXYZ& out, double hAngle, double distance, double vAngle, double heightComponent,
                        CXYZ station, double heightOffset, double directionOffset, double scale) {
    if (scaleTooSmall(scale))
        return 0;
    storeAngles(out, hAngle, vAngle);
    const double d = distance / scale;
    storePlan(out, station, hAngle + directionOffset, d);
    const double slope = std::sqrt(d * d + heightComponent * heightComponent);
    out.z = toFourDecimals(std::cos(vAngle / kDegreesPerRadian) * slope + station.z + heightOffset);
    exchangeOnSecondFace(out, vAngle);
    return 1;
}

int CCalcXYZHV::CalcXYZ(CXYZ& out, double hAngle, double distance, double vAngle, CXYZ station,
                        double heightOffset, double directionOffset, double scale) {
    if (scaleTooSmall(scale))
        return 0;
    storeAngles(out, hAngle, vAngle);
    const double d = distance / scale;
    storePlan(out, station, hAngle + directionOffset, d);
    const double v = vAngle / kDegreesPerRadian;
    const double s = std::sin(v);
    if (s == 0.0)
        return 0;
    out.z = toFourDecimals(std::cos(v) / s * d + station.z + heightOffset);
    exchangeOnSecondFace(out, vAngle);
    return 1;
}
