// CCalcXYZHV: computations of surveying.
#ifndef FIELDSCAN_SURVEY_H
#define FIELDSCAN_SURVEY_H

#include <fieldscan/clock.h>
#include <fieldscan/framework/array.h>
#include <fieldscan/framework/string.h>
#include <fieldscan/points.h>

class CPolyline;

// Angles are degrees unless the name says gon (400 to the circle) or mil (6400). A packed angle holds
// degrees, minutes and seconds as ddd.mmss in one double. The steps of every function are those written here,
// in plain IEEE double arithmetic; (int) cuts the fraction off, and a value that no int holds gives the
// nearest int (NaN gives 0), the same on every processor.
//
// Axes. Surveying coordinates: x north, y east, metres, directions from x toward y. Mathematical coordinates:
// x and y exchanged, millimetres, directions from y toward x. Vertical angles are zenith angles: 0 up, 90
// level, 180 down; elevation = 90 - zenith angle.
class FIELDSCAN_API CCalcXYZHV {
public:
    CCalcXYZHV();
    CCalcXYZHV(const CCalcXYZHV& other);
    CCalcXYZHV& operator=(const CCalcXYZHV& other);
    virtual ~CCalcXYZHV();

    void Trace();  // a hook for debugging, does nothing

    // ---- Lengths: the argument times one constant ----

    static double MtoUSFT(double m);    // 3.280833333333333, one rounding step below 3937/1200
    static double MtoIntFT(double m);   // 3.280839895013123 = 1/0.3048
    static double USFTtoM(double ft);   // 0.30480060960121924, one rounding step above 1200/3937
    static double IntFTtoM(double ft);  // 0.3048

    // ---- Angle units: the argument times one constant, not normalised ----

    static double DEGtoGON(double deg);  // 10/9
    static double DEGtoMIL(double deg);  // 160/9
    static double GONtoDEG(double gon);  // 0.9
    static double MILtoDEG(double mil);  // 0.05625

    // ---- Angles ----

    // Brings `a` into the closed range [0, 360]: 360 stays 360, 720 gives 360, -0.0 stays. Infinity and NaN
    // stay as they are.
    static void Angle0To360(double& a);
    // Rounded for display to a step of 0.0005 gon, in [0, 400).
    static double RoundGON(double gon);
    // Rounded for display to a step of 0.005 mil (mode 0) or 0.002 mil (any other mode), in [0, 6400).
    static double RoundMIL(double mil, int mode);
    // b - a in [-180, 180]; 0 when they differ by no more than 2.2e-16. Half a turn keeps the order:
    // b = a + 180 gives -180, b = a - 180 gives +180.
    static double AngleDifference(double a, double b);
    // The same in [0, 360] and [-360, 0]; the whole turn only for a difference of a rounding step.
    static double AngleDifference_Over0(double a, double b);
    static double AngleDifference_Under0(double a, double b);
    // Elevation to zenith angle and back: both are 90 - v brought into [0, 360], so -10 becomes 350.
    static double AngleH0toZ0(double v);
    static double AngleZ0toH0(double v);

    // ---- Packed angles and display ----

    // Degrees to a packed angle. `normalize` 1: through Angle0To360 first. `keepFraction` 1: the seconds keep
    // their fraction, else they are rounded to whole ones; carries run up to the degrees. A negative angle
    // has every part negative.
    static double Angle100To60(double deg, int normalize, int keepFraction);
    // Packed angle to degrees, read from the columns of its text "%09.5f": in effect rounded to 0.1 second.
    // The columns fit [0, 1000); `normalize` 1 brings the angle through Angle0To360 first.
    static double Angle60To100(double packed, int normalize);
    // A packed angle for display: mode 0 123°45'30", mode 1 123°45', mode 2 123°, any other mode empty.
    static CString AngleStr(double packed, int mode);
    // Seconds as hh:mm:ss; a negative count stands as it is in the seconds: 00:00:-5.
    static CString ByoToStr(int seconds);

    // ---- Time ----

    static CString TimeToString(SYSTEMTIME t);  // yyyymmddhhmm
    // Minutes of the day from start to end; date and seconds do not count, so midnight gives less than 0.
    static int GetTakenTime(SYSTEMTIME start, SYSTEMTIME end);
    // 1 when a is later, 0 when it is earlier, 2 when both are the same local calendar time to the
    // millisecond.
    static int FILETIMEFastRate(FILETIME a, FILETIME b);

    // ---- Observations ----

    // Surveying to mathematical coordinates in place (x and y exchanged, times 1000) and back (times 0.001).
    // Name, code and attr stay.
    static void CnvSokuToMath(CXYZ& p);
    static void CnvMathToSoku(CXYZ& p);

    // Direction [0, 360] and zenith angle [0, 180] from a station, the instrument `instrumentHeight` above
    // it, to a target, in surveying coordinates. Returns 1; 0 when their distance in plan is 0, and then
    // direction is written (0 for the same plan position) and zenith is not.
    static int XYZToHV(CXYZ station, CXYZ target, double instrumentHeight, double& zenith, double& direction);

    // The same in mathematical coordinates; mind the order of the points. zenith = 90 - e with the elevation
    // e brought into [0, 360] first, so a sight below the horizon gives a negative angle (10 degrees below:
    // -260, not 100); Angle0To360 makes it the usual one. Always 1; a target at the instrument (distance 0)
    // makes zenith NaN.
    static int CalcXYZToVH(CXYZ target, CXYZ station, double instrumentHeight, double& zenith,
                           double& direction);

    // Coordinates of a target from an observation: horizontal angle, distance, zenith angle `vAngle`.
    // D = distance / scale is the horizontal distance; the direction is hAngle + directionOffset.
    //   out.x = station.x + cos(direction) D
    //   out.y = station.y + sin(direction) D
    //   out.z = cos(vAngle) sqrt(D D + heightComponent heightComponent) + station.z + heightOffset   (first)
    //   out.z = cos(vAngle) / sin(vAngle) D + station.z + heightOffset                               (second)
    // Each is rounded to four decimals. For vAngle > 180 (second face) x and y of the result are exchanged:
    // callers rely on it. The two angles go as 32-bit floats into the words 0 and 1 of out.attr; the rest of
    // `out` stays.
    // Returns 1; 0 when |scale| < 1e-12, and then `out` is untouched; the second form also when sin(vAngle)
    // is exactly 0, and then x, y and the angles are written, z is not.
    static int CalcXYZ(CXYZ& out, double hAngle, double distance, double vAngle, double heightComponent,
                       CXYZ station, double heightOffset, double directionOffset, double scale);
    static int CalcXYZ(CXYZ& out, double hAngle, double distance, double vAngle, CXYZ station,
                       double heightOffset, double directionOffset, double scale);

    // ---- Outlines in angles: x = horizontal angle, y = elevation in [0, 360), degrees ----

    // The outline's extreme directions: left and right horizontal angle (left > right where it crosses the
    // zero direction) and the elevations of its top and bottom. They pass through radians, so they can come
    // back a rounding step off. Returns 1, 0 when memory runs out; an empty outline gives figures that mean
    // nothing.
    static int GetAngleRange(const CPolyline& outline, double& hLeft, double& hRight, double& vTop,
                             double& vBottom);

    // 1 when the direction (h, v) lies inside the closed outline, else 0. Counts the edges crossed in the
    // plane of horizontal angles from the left edge and elevations, so an outline across the zero direction
    // is as good as any. It must span less than the full circle; CScanArea::CheckOutline finds out, and
    // SetFullCircle makes one that does. A point on an edge belongs to the area on the left of it; on slanted
    // edges that holds to the rounding of the crossing.
    //
    // The left edge is the horizontal angle of the leftmost vertex: of the vertices that GetAngleRange
    // searches for the left, the one with the smallest.
    static int IsPolyInside(const CPolyline& outline, double h, double v);
    // The same for the directions (h[k], v[k]): inside[k] is 1 or 0, the figure of the single form. Much
    // faster for many directions and vertices. Returns 1; 0 when the lists differ in length or memory runs
    // out, and then `inside` is empty.
    static int IsPolyInside(const CPolyline& outline, const CArray<double, double>& h,
                            const CArray<double, double>& v, CArray<int, int>& inside);

    // ---- Names of files ----

    // 1 when a file or folder of the card may have this name (no path), as FAT keeps long names, else 0. It
    // may not
    //   - be empty or longer than 255 units
    //   - hold one of \ / : * ? " < > | or a control character below 20 hexadecimal
    //   - end with a blank or a point
    //   - be a device's: CON, PRN, AUX, NUL, COM1 to COM9, LPT1 to LPT9, in letters of any case, also with
    //     an extension ("nul.txt", "COM1.a.b", "CON .txt")
    static int ChkFileFolderName(CString name);
};

#endif
