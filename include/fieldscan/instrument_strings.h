// Instrument strings: angles and distances as the instrument sends them, as the operator reads them, as
// integers.
#ifndef FIELDSCAN_INSTRUMENT_STRINGS_H
#define FIELDSCAN_INSTRUMENT_STRINGS_H

#include <fieldscan/export.h>
#include <fieldscan/framework/string.h>

// An angle is an integer in 0.1 second: 1 degree is 36000, 1 minute 600, the circle 12960000; it is never
// reduced to one circle. A distance is an integer in 1/10000 of its unit, 0.1 mm for metres. Both have 32
// bits: of a wider long the lower 32 bits count, as a signed number. Results are exact for all of them,
// -2147483648 included. The texts of 123 degrees 45 minutes 6.7 seconds and of 123.4567:
//
//   decimal angle      DDD.MMSSt          123.45067       t: tenths of a second
//   display angle      DDD(deg)MM'SS"t    123(deg)45'06"7 (deg): one character, 0xB0
//   instrument angle   [+]DDDMMSSt        +12345067
//   decimal distance   I.FFFF             123.4567, of fixed width 00123.4567
//   instrument distance [+-]IIIIIFFFF     +001234567
//
// Each layout may lack its last place. Flags are off for 0 and on for all other values; each function lists
// what its values of `mode` do.
//
// 8-bit text is Latin-1 in this family, whatever the code page of files: layouts count characters, and the
// degree sign is the one byte 0xB0. CString(const char*) converts by the code page of files, where 932 has
// the half-width prolonged sound mark U+FF70 at 0xB0: use the wide functions (TCnvAngl) for a CString. A wide
// unit above 0xFF counts as '?'. Digits and letters are those of ASCII. Input may have any length and ends at
// its first zero character; nothing after that is read. The number at its start is read as atol reads it:
// white space, a sign, digits; beyond 32 bits the result is 2147483647 or -2147483648.
//
// `out` of a pointer type has room for at least 32 characters; longer results are cut to 31. `in` and `out`
// may be the same text. A null input is an empty text unless said otherwise; a null output is not written.
// Functions that write text always return 0. Nothing is thrown; when memory runs out, an output is unchanged
// and an integer read from wide text is 0.

// ---- Text to integer; malformed text is read as far as possible ----

// Decimal angle: "123.45067" gives 4455067. Degrees times 36000 (in 32 bits), plus up to six digits after the
// first point, of which the sixth is ignored; any other character ends them.
//   A missing digit is 0, so that a single digit gives tens: "10.3" is 10 degrees 30 minutes.
//   The part after the point is added whatever the sign: "-12.3000" is -12*36000 + 18000 = -414000.
//   Minutes and seconds may be 60 to 99; ChkAnglStr finds them.
//   dropTenths sets the tenths to 0 only when there are six digits: "123.456789" ends with 0 tenths,
//   "123.45678" keeps its 8.
FIELDSCAN_API long CnvAngl(const char* text, int dropTenths);
FIELDSCAN_API long TCnvAngl(const unsigned short* text, int dropTenths);

// Instrument angle: "12345067" and "+12345067" give 4455067. Three characters of degrees and the next five
// are read like the decimal angle, fewer when the text is shorter: "1234" is 123 degrees 40 minutes. A '-' is
// one of the three: "-123000" is -12*36000 + 18000.
FIELDSCAN_API long TSstrToLAngl(const char* text);
FIELDSCAN_API long CnvTsAnglStr(const unsigned short* text);  // null gives 0

// Decimal distance: "123.4567" gives 1234567, "12.5" 125000, "  7" 70000, ".5" 5000. Blanks, up to five
// digits, and, if a point follows these, up to four more. A sign gives 0. Of six or more digits before the
// point the first five count, without decimals: "123456.7" is 123450000.
FIELDSCAN_API long CvtStrDist(const char* text);
FIELDSCAN_API long TDecimalToLong(const unsigned short* text);  // -1 for 31 characters or more

// Instrument distance: "-000123456" gives -123456. After an optional sign, five characters and the next four
// are read like the decimal distance, fewer when the text is shorter: "00012" is 12.0000.
FIELDSCAN_API long TSstrToLDist(const char* text);
FIELDSCAN_API long CnvTsDistStr(const unsigned short* text);  // null gives 0

// ---- Integer to text ----

// Display angle. Mode 0: 123(deg)45'06"7. Mode 1: 123(deg)45'07", rounded to seconds. Others: 123(deg)45'06",
// cut off. Degrees have three places, filled with blanks: "  5(deg)".
//   Negative: the '-' replaces the second character if that is blank (" -5(deg)"), else the first
//   ("-12(deg)"): from 100 degrees on it replaces the first digit, "-23(deg)" for -123 degrees. Without
//   tenths, negative angles above -10 (one second) are shown as 0 without a sign.
FIELDSCAN_API int CnvAngl(long a, char* out, int mode);
FIELDSCAN_API int TCnvAngl(long a, unsigned short* out, int mode);

// Decimal angle. Mode 0: "123.45067". Others: "123.4506", cut off. The sign as above; degrees are filled with
// zeros, so it always replaces the first digit: "-12.3000", and "-23.4506" for -123.4506.
FIELDSCAN_API void lAnglToStr(long a, char* out, int mode);
// lDistToStr when isDistance is set, else lAnglToStr.
FIELDSCAN_API int TLongToRecDecimal(long v, int isDistance, unsigned short* out, int mode);

// Instrument angle. Mode 0: "12345067". Mode 1: "1234506", cut off. Others: "12345060", cut off. A negative
// angle has no tenths in any mode and two places of degrees, "-032545", from 100 degrees on three or more;
// such a text is not read back as the same angle. A negative angle that is cut off to 0 has no sign.
FIELDSCAN_API int CvtAnglStr(long a, char* out, int mode);

// Decimal distance "123.4567"; dropLast cuts off one decimal. For a negative distance CvtDist leaves `out`
// unchanged and TLongToDecimal makes it empty.
FIELDSCAN_API int CvtDist(long d, char* out, int dropLast);
FIELDSCAN_API int TLongToDecimal(long d, unsigned short* out, int dropLast);

// Decimal distance of fixed width. Mode 1: "00123.456", cut off. Others: "00123.4567". Not for negative
// distances, whose sign is in both parts: -12345 gives "-0001.-2345".
FIELDSCAN_API void lDistToStr(long d, char* out, int mode);

// Instrument distance. Mode 1: "00123456", cut off. Others: "001234567", which TSstrToLDist reads back up to
// 99999.9999. Empty for a negative distance.
FIELDSCAN_API int CvtDistStr(long d, char* out, int mode);

// Seconds field of `s` tenths: sign (withSign), rounded seconds in three places, second mark (withMark):
//   123: +_12"   -123: -_12"   12345: _***"   (_ is a blank)
// Stars, with a blank for the sign, replace 1000 seconds and more, and negative ones without withSign.
// s = 32768 means a missing value: CvtSec leaves `out` unchanged and TCvtSec makes it empty.
FIELDSCAN_API int CvtSec(int s, char* out, int withSign, int withMark);
FIELDSCAN_API int TCvtSec(int s, unsigned short* out, int withSign, int withMark);

// ---- Text to text; the order of the arguments differs ----

// Display to decimal angle: the degree sign becomes a point, minute and second marks are removed, all else is
// kept, blanks at the start too.
FIELDSCAN_API int TAngleToDecimal(const unsigned short* in, unsigned short* out);
FIELDSCAN_API int TAngleToDecimal(const CString* in, CString* out);  // 31 characters at most here too
// Decimal to display angle in whole seconds: TCnvAngl(TCnvAngl(in, 1), out, 1). 123.45067 is rounded up to
// 07"; 123.450678, whose tenths are dropped, gives 06".
FIELDSCAN_API int TDecimalToAngle(unsigned short* out, const unsigned short* in);
FIELDSCAN_API int TDecimalToAngle(CString* out, const CString* in);

// Decimal to display angle by position: characters 0 to 2 as a number in three places, 4 and 5, 6 and 7 as
// they are, and in mode 0 character 8 after the second mark. Nothing is rounded or checked; missing
// characters are left out. An empty `in` leaves `out` unchanged.
FIELDSCAN_API int AnglDecimalToDispStr(const CString& in, CString& out, int mode);

// Instrument to decimal angle: three characters from the first digit on, a point, the rest; no sign.
// "+12345067" gives "123.45067", "12" gives "12.", a text without digits ".". A null `raw` leaves `out`
// unchanged.
FIELDSCAN_API int VekRawAngToDecimal(const unsigned short* raw, CString& out);
// Instrument to decimal distance: five characters from the first digit on without up to four leading zeros, a
// point, the rest; '-' before them if it is the first character of `raw`. "-000003456" gives "-0.3456". A
// null `raw` leaves `out` unchanged. The last argument is ignored.
FIELDSCAN_API int VekRawDistToDecimal(const unsigned short* raw, CString& out, int ignored);

// Checks for a decimal angle in [0, 360): 1 if `text` is one, -1 if not, 2 if there is no number. The checks,
// in this order: -1 for degrees below 0 or from 360 on; 2 for degrees 0 without any '0' in the text; -1 for a
// letter; -1 for a first or third character after the first point above '5'; else 1.
//   1: "0", "12.5959", "-0.3", "12.", "12.5.4", "1 2"   -1: "12.6", "12.0060", "360", "-1", "1a", "0x"
//   2: "", "abc", "-", ".3"
// noTenths has no effect.
FIELDSCAN_API int ChkAnglStr(const char* text, int noTenths);
FIELDSCAN_API int TChkAnglStr(const CString* text);  // 1 where ChkAnglStr gives 1, else 0

#endif
