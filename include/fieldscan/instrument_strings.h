// Angles and distances as the instrument sends them, as the operator reads them, and as integers.
#ifndef FIELDSCAN_INSTRUMENT_STRINGS_H
#define FIELDSCAN_INSTRUMENT_STRINGS_H

#include <fieldscan/export.h>
#include <fieldscan/framework/string.h>

// An angle is an integer in 0.1 second (1 degree 36000, 1 minute 600, the circle 12960000; never reduced to
// one circle), a distance an integer in 1/10000 of its unit (0.1 mm for metres). Both are 32 bits wide: where
// long is wider, the lower 32 bits count, as a signed number. Their texts, for 123 degrees 45 minutes 6.7
// seconds and for 123.4567:
//
//   decimal angle      DDD.MMSSt          123.45067       t: tenths of a second
//   display angle      DDD(deg)MM'SS"t    123(deg)45'06"7 (deg): one character, 0xB0
//   instrument angle   [+]DDDMMSSt        +12345067
//   decimal distance   I.FFFF             123.4567, of fixed width 00123.4567
//   instrument distance [+-]IIIIIFFFF     +001234567
//
// Each layout may come without its last place. Where `mode` or a flag is 0 or 1 in a contract, what other
// values do is said beside it; flags are off for 0 and on for anything else.
//
// 8-bit text is Latin-1 in this family, whatever the code page of files: layouts count characters, and the
// degree sign is the one byte 0xB0. CString(const char*) reads it in the code page of files: under 932 that
// byte is the half-width prolonged sound mark U+FF70. For a CString take the wide form (TCnvAngl). A wide
// unit above 0xFF counts as '?'. Digits and letters are those of ASCII. Texts end at their first zero
// character and are never read beyond it; numbers in front are read as atol reads them (white space, a sign,
// digits; they stop at 2147483647 and -2147483648).
//
// `out` of a pointer type holds at least 32 characters; longer results are cut to 31. `in` and `out` may be
// the same text. A null input is an empty text unless said otherwise, a null output is not written. Functions
// that write text return 0, always. Nothing is thrown; when memory runs out an output stays as it was and an
// integer read from wide text is 0.

// ---- Text to integer; what is malformed is read as far as it goes ----

// Decimal angle: "123.45067" 4455067. Degrees times 36000 (in 32 bits), and, behind the first point, up to
// six digits, of which the sixth does not count; what is no digit ends them.
//   A missing digit is 0, so that a single one gives tens: "10.3" is 10 degrees 30 minutes.
//   The part behind the point is added whatever the sign: "-12.3000" is -12*36000 + 18000 = -414000.
//   Minutes and seconds may be 60 to 99: ChkAnglStr tells.
//   dropTenths takes the tenths away only where six digits are there: "123.456789" ends with 0 tenths,
//   "123.45678" keeps its 8.
FIELDSCAN_API long CnvAngl(const char* text, int dropTenths);
FIELDSCAN_API long TCnvAngl(const unsigned short* text, int dropTenths);

// Instrument angle: "12345067" and "+12345067" 4455067. Three characters of degrees and five behind them,
// read like the decimal angle, fewer where the text is shorter ("1234" is 123 degrees 40 minutes). A '-'
// takes one of the three: "-123000" is -12*36000 + 18000.
FIELDSCAN_API long TSstrToLAngl(const char* text);
FIELDSCAN_API long CnvTsAnglStr(const unsigned short* text);  // null gives 0

// Decimal distance: "123.4567" 1234567, "12.5" 125000, "  7" 70000, ".5" 5000. Blanks, up to five digits, and
// behind a point right there up to four more. A sign gives 0; a sixth digit of the integer part hides the
// point behind it: "123456.7" is 123450000.
FIELDSCAN_API long CvtStrDist(const char* text);
FIELDSCAN_API long TDecimalToLong(const unsigned short* text);  // -1 for 31 characters or more

// Instrument distance: "-000123456" -123456. Behind an optional sign five characters and four, read like the
// decimal distance, fewer where the text is shorter ("00012" is 12.0000).
FIELDSCAN_API long TSstrToLDist(const char* text);
FIELDSCAN_API long CnvTsDistStr(const unsigned short* text);  // null gives 0

// ---- Integer to text ----

// Display angle; mode 0 123(deg)45'06"7, 1 123(deg)45'07" rounded to seconds, others 123(deg)45'06" cut off.
// Degrees fill three places with blanks: "  5(deg)".
//   Negative: the '-' is printed over the second character where that is blank (" -5(deg)"), else over the
//   first ("-12(deg)"): from 100 degrees on it takes the first digit, "-23(deg)" for -123 degrees.
//   Without tenths, negative angles above -10 (one second) are shown as 0 without a sign.
FIELDSCAN_API int CnvAngl(long a, char* out, int mode);
FIELDSCAN_API int TCnvAngl(long a, unsigned short* out, int mode);

// Decimal angle; mode 0 "123.45067", others "123.4506", not rounded. The sign as above; degrees being filled
// with zeros, it is always printed over the first digit: "-12.3000", and "-23.4506" for -123.4506.
FIELDSCAN_API void lAnglToStr(long a, char* out, int mode);
// isDistance: as lDistToStr, else as lAnglToStr.
FIELDSCAN_API int TLongToRecDecimal(long v, int isDistance, unsigned short* out, int mode);

// Instrument angle; mode 0 "12345067", 1 "1234506", cut off, not rounded; others "12345060". Negative in any
// mode without tenths and with two places of degrees, "-032545"; from 100 degrees on with three or more. Such
// a text does not read back as the same angle. Cut off to 0 it is not negative.
FIELDSCAN_API int CvtAnglStr(long a, char* out, int mode);

// Decimal distance "123.4567"; dropLast cuts one decimal off. A negative distance leaves `out` of the first
// as it was and makes that of the second empty.
FIELDSCAN_API int CvtDist(long d, char* out, int dropLast);
FIELDSCAN_API int TLongToDecimal(long d, unsigned short* out, int dropLast);

// Decimal distance of fixed width; mode 1 "00123.456", others "00123.4567". For distances that are not
// negative: both parts carry the sign of others, -12345 gives "-0001.-2345".
FIELDSCAN_API void lDistToStr(long d, char* out, int mode);

// Instrument distance; mode 1 "00123456", others "001234567", which TSstrToLDist reads back up to
// 99999.9999. Empty for a negative one.
FIELDSCAN_API int CvtDistStr(long d, char* out, int mode);

// Seconds field of `s` tenths: sign (withSign), whole seconds rounded in three places, second mark
// (withMark):
//   123: +_12"   -123: -_12"   12345: _***"   (_ is a blank)
// Stars for 1000 seconds and more, which have a blank for a sign, and for negative ones without sign.
// s = 32768 says that the value is missing: `out` of the first stays as it was, that of the second is empty.
FIELDSCAN_API int CvtSec(int s, char* out, int withSign, int withMark);
FIELDSCAN_API int TCvtSec(int s, unsigned short* out, int withSign, int withMark);

// ---- Text to text; mind the order of the arguments ----

// Display to decimal angle: the degree sign becomes the point, minute and second marks go, all else stays
// (blanks in front too).
FIELDSCAN_API int TAngleToDecimal(const unsigned short* in, unsigned short* out);
FIELDSCAN_API int TAngleToDecimal(const CString* in, CString* out);  // 31 characters at most here too
// Decimal to display angle in whole seconds, TCnvAngl(TCnvAngl(in, 1), out, 1): rounds 123.45067 up to 07",
// and leaves 06" where dropTenths took the tenths away.
FIELDSCAN_API int TDecimalToAngle(unsigned short* out, const unsigned short* in);
FIELDSCAN_API int TDecimalToAngle(CString* out, const CString* in);

// Decimal to display angle by place: characters 0 to 2 as a number in three places, 4 and 5, 6 and 7 as they
// are, and in mode 0 character 8 behind the second mark. Nothing is rounded or checked, what the text lacks
// is left out. An empty `in` leaves `out` as it was.
FIELDSCAN_API int AnglDecimalToDispStr(const CString& in, CString& out, int mode);

// Instrument to decimal angle: from the first digit on (without sign) three characters, a point, the rest.
// "+12345067" gives "123.45067", "12" gives "12.", a text without digits ".". A null `raw` leaves `out` as it
// was.
FIELDSCAN_API int VekRawAngToDecimal(const unsigned short* raw, CString& out);
// Instrument to decimal distance: from the first digit on five characters less up to four leading zeros, a
// point, the rest; '-' in front when it is the first character of `raw`. "-000003456" gives "-0.3456". A null
// `raw` leaves `out` as it was. The last argument does not count.
FIELDSCAN_API int VekRawDistToDecimal(const unsigned short* raw, CString& out, int ignored);

// Whether `text` is a decimal angle in [0, 360): 1 when it is, -1 when not, 2 when there is no number. In
// this order: degrees below 0 or from 360 on give -1; degrees 0 without any '0' in the text 2; a letter -1; a
// first or third character behind the first point above '5' -1.
//   1: "0", "12.5959", "-0.3", "12.", "12.5.4", "1 2"   -1: "12.6", "12.0060", "360", "-1", "1a", "0x"
//   2: "", "abc", "-", ".3"
// noTenths says how far the text may be looked at, four places or five; neither changes a result.
FIELDSCAN_API int ChkAnglStr(const char* text, int noTenths);
FIELDSCAN_API int TChkAnglStr(const CString* text);  // 1 where ChkAnglStr gives 1, else 0

#endif
