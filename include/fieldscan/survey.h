// CCalcXYZHV: units, angles, observations, and directions inside outlines.
#ifndef FIELDSCAN_SURVEY_H
#define FIELDSCAN_SURVEY_H

#include <fieldscan/clock.h>
#include <fieldscan/framework/array.h>
#include <fieldscan/framework/string.h>
#include <fieldscan/points.h>

class CPolyline;

// Units, angles and observations of surveying.
//
// Angles are in degrees unless the name says gon (400 to the circle) or mil (6400). A packed angle holds
// degrees, minutes and seconds as ddd.mmss in one double. Every function computes in IEEE double, in the
// order given here. Conversions to int cut the fraction off; what does not fit gives the nearest int, NaN 0,
// on every processor.
//
// Axes. Surveying coordinates: x north, y east, metres, directions from x toward y. Mathematical coordinates:
// x east, y north, millimetres, directions from y toward x. Vertical angles are zenith angles: 0 up, 90
// level, 180 down; elevation = 90 - zenith angle.
class FIELDSCAN_API CCalcXYZHV {
public:
    CCalcXYZHV();
    CCalcXYZHV(const CCalcXYZHV& other);
    CCalcXYZHV& operator=(const CCalcXYZHV& other);
    virtual ~CCalcXYZHV();

    void Trace();  // for debugging; does nothing

    // ---- Lengths: the argument times one constant ----

    static double MtoUSFT(double m);    // 3.280833333333333: 3937/1200 less one rounding step
    static double MtoIntFT(double m);   // 3.280839895013123 = 1/0.3048
    static double USFTtoM(double ft);   // 0.30480060960121924: 1200/3937 plus one rounding step
    static double IntFTtoM(double ft);  // 0.3048

    // ---- Angle units: the argument times one constant, not normalised ----

    static double DEGtoGON(double deg);  // 10/9
    static double DEGtoMIL(double deg);  // 160/9
    static double GONtoDEG(double gon);  // 0.9
    static double MILtoDEG(double mil);  // 0.05625

    // ---- Angles ----

    // Brings `a` into the closed range [0, 360]: 360 and -0.0 stay, 720 becomes 360. Infinity and NaN stay.
    static void Angle0To360(double& a);
    // Rounded for display to a step of 0.0005 gon, in [0, 400).
    static double RoundGON(double gon);
    // Rounded for display to a step of 0.005 mil (mode 0) or 0.002 mil (any other mode), in [0, 6400).
    static double RoundMIL(double mil, int mode);
    // b - a in [-180, 180]; 0 if they differ by no more than 2.2e-16. Of opposite angles the larger one
    // decides the sign: b = a + 180 gives -180, b = a - 180 gives +180.
    static double AngleDifference(double a, double b);
    // The same in [0, 360] (clockwise) and in [-360, 0]; the whole circle only for a difference of a rounding
    // step.
    static double AngleDifference_Over0(double a, double b);
    static double AngleDifference_Under0(double a, double b);
    // Elevation to zenith angle and back: both give 90 - v, brought into [0, 360]. So a zenith angle of 100
    // gives 350.
    static double AngleH0toZ0(double v);
    static double AngleZ0toH0(double v);

    // ---- Packed angles and display ----

    // Degrees to a packed angle. With `normalize` 1 the angle goes through Angle0To360 first. With
    // `keepFraction` 1 the seconds keep their fraction, else they are rounded to whole ones, with carries up
    // to the degrees. In a negative angle every part is negative.
    static double Angle100To60(double deg, int normalize, int keepFraction);
    // Packed angle to degrees, rounded to 0.1 second: it is read from the columns of its text "%09.5f". Only
    // angles in [0, 1000) fit the columns. With `normalize` 1 the angle goes through Angle0To360 first.
    static double Angle60To100(double packed, int normalize);
    // A packed angle for display: mode 0 123°45'30", mode 1 123°45', mode 2 123°; any other mode gives an
    // empty text.
    static CString AngleStr(double packed, int mode);
    // Seconds as hh:mm:ss. A negative number goes into the seconds as it is: 00:00:-5.
    static CString ByoToStr(int seconds);

    // ---- Time ----

    static CString TimeToString(SYSTEMTIME t);  // yyyymmddhhmm
    // Minutes from the time of day of `start` to that of `end`. Date and seconds do not count, so a period
    // across midnight is negative.
    static int GetTakenTime(SYSTEMTIME start, SYSTEMTIME end);
    // 1 if `a` is later than `b`, 0 if it is earlier, 2 if both are the same local time to the millisecond.
    static int FILETIMEFastRate(FILETIME a, FILETIME b);

    // ---- Observations ----

    // Surveying to mathematical coordinates (x and y exchanged, times 1000) and back (times 0.001), in place.
    // Name, code and attr stay.
    static void CnvSokuToMath(CXYZ& p);
    static void CnvMathToSoku(CXYZ& p);

    // Direction in [0, 360] and zenith angle in [0, 180] from the instrument, `instrumentHeight` above the
    // station, to a target, in surveying coordinates. Returns 1; 0 if station and target have no distance in
    // plan, and then direction is set (0 for the same plan position) and zenith is not.
    [[nodiscard]] static int XYZToHV(CXYZ station, CXYZ target, double instrumentHeight, double& zenith,
                                     double& direction);

    // The same in mathematical coordinates; here the target comes first. The elevation is brought into
    // [0, 360] before it is taken from 90, so a sight below the horizon has a negative zenith angle (10
    // degrees below: -260, not 100); Angle0To360 makes it the usual one. The sine of the elevation is limited
    // to 1, which rounding could pass straight up or down. Always returns 1; a target at the instrument
    // (distance 0) makes zenith NaN.
    static int CalcXYZToVH(CXYZ target, CXYZ station, double instrumentHeight, double& zenith,
                           double& direction);

    // Coordinates of a target from an observation (polar method): horizontal angle, distance, zenith angle
    // `vAngle`. D = distance / scale is the horizontal distance, hAngle + directionOffset the direction.
    //   out.x = station.x + cos(direction) D
    //   out.y = station.y + sin(direction) D
    //   out.z = cos(vAngle) sqrt(D D + heightComponent heightComponent) + station.z + heightOffset   (first)
    //   out.z = cos(vAngle) / sin(vAngle) D + station.z + heightOffset                               (second)
    // Each coordinate is rounded to four decimals. For vAngle > 180 (second face) x and y of the result are
    // exchanged: callers rely on it. Words 0 and 1 of out.attr receive hAngle and vAngle as 32-bit floats;
    // the rest of `out` stays.
    // Returns 1; 0 if |scale| < 1e-12, and then `out` is unchanged. The second form also returns 0 if
    // sin(vAngle) is exactly 0, and then x, y and the angles are set, z is not.
    [[nodiscard]] static int CalcXYZ(CXYZ& out, double hAngle, double distance, double vAngle,
                                     double heightComponent, CXYZ station, double heightOffset,
                                     double directionOffset, double scale);
    [[nodiscard]] static int CalcXYZ(CXYZ& out, double hAngle, double distance, double vAngle, CXYZ station,
                                     double heightOffset, double directionOffset, double scale);

    // ---- Outlines in angles: x = horizontal angle, y = elevation in [0, 360), degrees ----

    // The outline's extreme directions: left and right horizontal angle (left > right if it crosses the zero
    // direction) and the elevations of its top and bottom. They are converted to radians and back, so they
    // can be a rounding step off. Returns 1; 0 if memory runs out. The figures of an empty outline are
    // meaningless.
    [[nodiscard]] static int GetAngleRange(const CPolyline& outline, double& hLeft, double& hRight,
                                           double& vTop, double& vBottom);

    // 1 if the direction (h, v) is inside the outline, taken as closed, else 0, by the crossing-number rule
    // (Shimrat 1962; see CPolyline::PtInPolyline). Horizontal angles are counted clockwise from the outline's
    // left edge, so an outline may cross the zero direction. It must span less than the full circle:
    // CScanArea::CheckOutline checks that; CScanArea::SetFullCircle ends just below it. A direction on an
    // edge belongs to the area on the left of it; on slanted edges that is true up to the rounding of the
    // crossing.
    //
    // The left edge is the smallest horizontal angle of the vertices that GetAngleRange searches for the left
    // one: the angle itself, which does not pass through radians.
    [[nodiscard]] static int IsPolyInside(const CPolyline& outline, double h, double v);
    // The same for the directions (h[k], v[k]): inside[k] is the answer of the single form. Much faster for
    // many directions and vertices. Returns 1; 0 if the lists differ in length or memory runs out, and then
    // `inside` is empty.
    [[nodiscard]] static int IsPolyInside(const CPolyline& outline, const CArray<double, double>& h,
                                          const CArray<double, double>& v, CArray<int, int>& inside);

    // ---- Names of files ----

    // 1 if a file or folder on the card may have this name (without path), by the rules of FAT for long
    // names, else 0. The name must not
    //   - be empty or longer than 255 UTF-16 units
    //   - contain one of \ / : * ? " < > | or a control character below 20 hexadecimal
    //   - end with a blank or a point
    //   - be that of a device: CON, PRN, AUX, NUL, COM1 to COM9, LPT1 to LPT9, in upper or lower case, also
    //     with an extension ("nul.txt", "COM1.a.b", "CON .txt")
    static int ChkFileFolderName(CString name);
};

#endif
