// Instrument strings and string utilities.
//
// What goes through the code page is ASCII here: the page is the system's own.
#include <fieldscan/instrument_strings.h>
#include <fieldscan/string_utilities.h>
#include <fieldscan/survey.h>

#include <string>

#include "tests/digest/digest.h"

namespace {

void hashReadings(Results& out, const CString& wide) {
    std::string latin1;
    for (int i = 0; i < wide.GetLength(); ++i)
        latin1 += static_cast<char>(wide[i] & 0xFF);
    const char* const text = latin1.c_str();
    CString converted(u"#");
    unsigned short buffer[32];
    for (const int flag : {0, 1})
        out << CnvAngl(text, flag) << TCnvAngl(wide, flag) << AnglDecimalToDispStr(wide, converted, flag)
            << converted;
    out << ChkAnglStr(text, 1) << TSstrToLAngl(text) << CnvTsAnglStr(wide) << CvtStrDist(text)
        << TDecimalToLong(wide) << TSstrToLDist(text) << CnvTsDistStr(wide) << TChkAnglStr(&wide)
        << VekRawAngToDecimal(wide, converted) << converted << VekRawDistToDecimal(wide, converted, 0)
        << converted << TAngleToDecimal(&wide, &converted) << converted << TDecimalToAngle(&converted, &wide)
        << converted << TAngleToDecimal(wide, buffer) << buffer << TDecimalToAngle(buffer, wide) << buffer;
}

const Family instrumentStrings("instrument_strings", 600, kExact, [](Results& out, Random& random, int i) {
    const int value = random.bits() >> i % 30;
    for (const int mode : {0, 1, 2}) {
        char text[32];
        unsigned short wide[32];
        lAnglToStr(value, text, mode);
        hashReadings(out, text);
        lDistToStr(value, text, mode);
        hashReadings(out, text);
        out << CnvAngl(value, text, mode) << text << CvtAnglStr(value, text, mode) << text
            << CvtDist(value, text, mode) << text << CvtDistStr(value, text, mode) << text
            << CvtSec(value, text, mode & 1, mode & 2) << text << TCnvAngl(value, wide, mode) << wide
            << TLongToRecDecimal(value, i % 2, wide, mode) << wide << TLongToDecimal(value, wide, mode)
            << wide << TCvtSec(value, wide, mode & 1, mode & 2) << wide;
    }
    hashReadings(out, random.text(u"0123456789012345.", 12));
    hashReadings(out, random.text(u"012345678901234567..+- \t'\"\u00B0a\u00E9\u3000\uFF11", 45));
});

const Family stringUtilities("string_utilities", 1000, kExact, [](Results& out, Random& random, int i) {
    const CString ascii(u"aAzZ01899  ,,.;:/-\t"), all(ascii + u"\u00E4\u3000\u65E5\U00020BB7");
    CString a = random.text(all, 24), b = random.text(ascii, 12), item, counted = random.text(u"PN0999", 14);
    const int k = random.below(16) - 2;
    char text[32] = {}, field[32] = {};
    unsigned short wide[32] = {};
    out << IncrStr(counted, random.bits() >> i % 32) << counted << StrPlusOne(counted) << counted
        << IsSameCode(b, CString(b).Trim()) << CutItemInStr(a, k, item) << item
        << CutItemInStr(b, 1, item, ';') << item << CCalcXYZHV::ChkFileFolderName(a);
    out << CStringToChar(b, text, 16) << CString(text) << ConvUniToAscii(b, field, k) << field
        << CStringToInt(b) << CStringToInt(counted.Right(k)) << Scopy(field, text, k) << field
        << ScopyPad(field, text, k) << field << TScopy(wide, a, k) << wide << TScopyPad(wide, a, k) << wide;
    out << a.Left(k) << a.Mid(k, 3) << a.Find(' ', k) << a.Find(b.Left(1), k) << a.ReverseFind(',')
        << a.FindOneOf(b) << a.Compare(b) << a.CompareNoCase(b) << a + b << CString(a).Trim()
        << CString(a).MakeUpper() << a.Replace('0', '#') << a.Insert(k, b) << a.Delete(k, 2) << a;
});

}  // namespace
