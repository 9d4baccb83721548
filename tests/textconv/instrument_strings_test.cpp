// Instrument strings. Every row of an 8-bit function goes through its wide twin too. The degree sign is
// written in octal, \260, so that digits may follow it.
#include <fieldscan/instrument_strings.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <string>
#include <type_traits>
#include <vector>

namespace {

const std::string kZeros(200, '0');
CString wide(const std::string& text) {
    CString units;
    for (const char c : text)
        units += static_cast<unsigned short>(static_cast<unsigned char>(c));
    return units;
}

// What a function that formats `number` leaves in a buffer of 32 characters that held "~".
template <class Result, class Number, class Char, class... Flags>
std::string written(Result (*format)(Number, Char*, Flags...), std::common_type_t<Number> number,
                    std::common_type_t<Flags>... flags) {
    Char room[35] = {'#', '~'};
    room[33] = '#';
    if constexpr (std::is_void_v<Result>)
        format(number, room + 1, flags...);
    else
        EXPECT_EQ(format(number, room + 1, flags...), 0);
    EXPECT_EQ(room[0], '#') << "before the buffer";
    EXPECT_EQ(room[33], '#') << "after the buffer";
    return std::string(room + 1, std::find(room + 1, room + 33, 0));
}

// clang-format off
const struct { std::string text; int dropTenths; long angle; } kDecimalAngles[] = {
    {kZeros + "1.01", 0, 36600}, {"-99999999999.1", 0, 6000}, {"359.59599", 0, 12959999}, {"10.3", 0, 378000},
    {"123.45678x", 1, 4455678}, {"123.456789", 1, 4455670}, {"123.456789", 0, 4455678}, {"10.305", 0, 378500},
    {"123.45678", 1, 4455678}, {"59653", 0, -2147459296}, {"-12.3000", 0, -414000}, {"12.3\262", 0, 450000},
    {"7.1x59", 0, 258000}, {"0.99999", 0, 60399}, {"1..5", 0, 36000}, {"x.0101", 0, 610}, {"", 0, 0}};
const struct { std::string text; long decimalDistance, distance, angle; } kRawTexts[] = {
    {"99999.99999", 999999999, 999990000, 36023400}, {"9999999999", 999990000, 999999999, 36024399},
    {"12345067", 123450000, 123450670, 4455067}, {"123456.7", 123450000, 123456000, 4455600}, {"", 0, 0, 0},
    {std::string(29, ' ') + "1", 10000, 0, 0}, {"1234", 12340000, 12340000, 4452000}, {"\t1.5", 0, 0, 36000},
    {"+12345067", 0, 123450670, 4455067}, {"-123000", 0, -123000000, -414000}, {"1 2.5", 10000, 10000, 36000},
    {"+001234567", 0, 1234567, 50256}, {"12.5", 125000, 125000, 432000}, {"1\262.5", 10000, 10000, 36000},
    {"-000123456", 0, -123456, 834}, {"00012", 120000, 120000, 7200}, {"1.2x4", 12000, 12000, 48000},
    {"  7", 70000, 70000, 252000}, {".5", 5000, 5000, 30000}, {"++1234", 0, 0, 452400}};
const long kBeyond32Bits = static_cast<long>(1LL << 32);  // 0 where long has 32
const struct { long a; int mode; const char *display, *decimal, *instrument; } kAngleFormats[] = {
    {kBeyond32Bits - 10, 0, " -0\26000'01\"0", "-00.00010", "-000001"},
    {INT_MIN, 0, "-9652\26019'24\"8", "-9652.19248", "-596521924"},
    {INT_MAX, 1, "59652\26019'25\"", "59652.1924", "596521924"},
    {-4455067, 0, "-23\26045'06\"7", "-23.45067", "-1234506"},
    {4455067, 0, "123\26045'06\"7", "123.45067", "12345067"}, {9, 1, "  0\26000'01\"", "000.0000", "0000000"},
    {-123456, 0, " -3\26025'45\"6", "-03.25456", "-032545"}, {-5, 1, "  0\26000'00\"", "000.0000", "0000000"},
    {4455067, 2, "123\26045'06\"", "123.4506", "12345060"}, {-9, 2, "  0\26000'00\"", "000.0000", "00000000"},
    {12959994, 1, "359\26059'59\"", "359.5959", "3595959"}, {-10, 1, " -0\26000'01\"", "-00.0001", "-000001"},
    {4455067, 1, "123\26045'07\"", "123.4506", "1234506"}, {-5, 0, " -0\26000'00\"5", "-00.00005", "-000000"},
    {-378000, 2, "-10\26030'00\"", "-10.3000", "-103000"},
    {-35995, 1, " -1\26000'00\"", "-00.5959", "-005959"}};
const struct { long d; int cut; std::string decimal, fixed, instrument; } kDistanceFormats[] = {
    {kBeyond32Bits + 50009, 0, "5.0009", "00005.0009", "000050009"}, {INT_MIN, 0, "~", "-214748.-3648", ""},
    {1234567, 0, "123.4567", "00123.4567", "001234567"}, {1234567, 2, "123.456", "00123.4567", "001234567"},
    {0, 0, "0.0000", "00000.0000", "000000000"}, {1234567, 1, "123.456", "00123.456", "00123456"},
    {-1, 0, "~", "00000.-001", ""}};
const struct { int s, withSign, withMark; std::string text; } kSeconds[] = {
    {-32768, 1, 1, " ***\""}, {INT_MAX, 0, 1, "***\""}, {12345, 1, 1, " ***\""}, {INT_MIN, 1, 0, " ***"},
    {123, 1, 1, "+ 12\""}, {-123, 0, 1, "***\""}, {-9995, 1, 0, " ***"}, {-123, 1, 0, "- 12"},
    {9994, 0, 0, "999"}, {9995, 0, 0, "***"}, {-3, 1, 0, "-  0"}, {32768, 1, 1, "~"}, {125, 0, 0, " 13"}};
const struct { std::string in, decimal, display; } kRelayouts[] = {
    {kZeros + "1.5", kZeros.substr(0, 31), "  1\26050'00\""}, {"123.450678", "123.450678", "123\26045'06\""},
    {"123\26045'06\"7", "123.45067", "123\26000'00\""}, {"123.45067", "123.45067", "123\26045'07\""},
    {"  5\26009'", "  5.09", "  5\26000'00\""}, {"-12.3", "-12.3", "-11\26030'00\""}};
const struct { const char16_t* in; int mode; const char16_t* out; } kByPlace[] = {
    {u"1234", 1, u"123\u00B0'\""}, {u"-05.\uFF110", 0, u" -5\u00B0\uFF110'\""}, {u"", 0, u"~"},
    {u"123.450671", 0, u"123\u00B045'06\"7"},
    {u"123.45067", 1, u"123\u00B045'06\""}, {u"012.99997", 2, u" 12\u00B099'99\""}};
const struct { const char *raw, *angle, *distance; } kRaws[] = {
    {"-000003456", "000.003456", "-0.3456"}, {"12345678", "123.45678", "12345.678"}, {" -12", "12.", "12."},
    {"000123456", "000.123456", "12.3456"}, {"00", "00.", "."}, {"-", ".", "-."}, {"", ".", "."}};
const struct { int result; std::vector<std::string> texts; } kChecks[] = {
    {1, {"0", "12.5959", "-0.3", "12.", "12.5.4", "1 2", "359", "12.0\xC1"}}, {2, {"", "abc", "-", ".3"}},
    {-1, {"12.6", "12.0060", "360", "-1", "1a", "1A", "0Z", "0z", "12.\xB0", "99999999999"}}};
// clang-format on

TEST(InstrumentStrings, ReadAndCheck) {
    for (const auto& row : kDecimalAngles) {
        EXPECT_EQ(CnvAngl(row.text.c_str(), row.dropTenths), row.angle) << row.text;
        EXPECT_EQ(TCnvAngl(wide(row.text), row.dropTenths), row.angle) << row.text;
    }
    // Units whose lower byte, or whose meaning, is a digit.
    EXPECT_EQ(TCnvAngl(CString(u"12.3\u0131"), 0), 450000);
    EXPECT_EQ(TCnvAngl(CString(u"\uFF11.1"), 0), 6000);
    for (const auto& row : kRawTexts) {
        EXPECT_EQ(CvtStrDist(row.text.c_str()), row.decimalDistance) << row.text;
        EXPECT_EQ(TDecimalToLong(wide(row.text)), row.decimalDistance) << row.text;
        EXPECT_EQ(TSstrToLDist(row.text.c_str()), row.distance) << row.text;
        EXPECT_EQ(CnvTsDistStr(wide(row.text)), row.distance) << row.text;
        EXPECT_EQ(TSstrToLAngl(row.text.c_str()), row.angle) << row.text;
        EXPECT_EQ(CnvTsAnglStr(wide(row.text)), row.angle) << row.text;
    }
    EXPECT_EQ(TDecimalToLong(wide("1" + std::string(30, ' '))), -1);
    for (const auto& row : kChecks)
        for (const std::string& text : row.texts) {
            const CString units = wide(text);
            EXPECT_EQ(ChkAnglStr(text.c_str(), 0), row.result) << text;
            EXPECT_EQ(ChkAnglStr(text.c_str(), 1), row.result) << text;
            EXPECT_EQ(TChkAnglStr(&units), row.result == 1) << text;
        }
}

int decimalOf(const unsigned short* in, unsigned short* out) { return TAngleToDecimal(in, out); }
int recordAngle(long v, unsigned short* out, int mode) { return TLongToRecDecimal(v, 0, out, mode); }
int recordDistance(long v, unsigned short* out, int mode) { return TLongToRecDecimal(v, 1, out, mode); }

TEST(InstrumentStrings, Format) {
    for (const auto& row : kAngleFormats) {
        EXPECT_EQ(written(CnvAngl, row.a, row.mode), row.display);
        EXPECT_EQ(written(TCnvAngl, row.a, row.mode), row.display);
        EXPECT_EQ(written(lAnglToStr, row.a, row.mode), row.decimal);
        EXPECT_EQ(written(recordAngle, row.a, row.mode), row.decimal);
        EXPECT_EQ(written(CvtAnglStr, row.a, row.mode), row.instrument);
    }
    const auto emptied =  // where the 8-bit function leaves the buffer as it is
        [](const std::string& text) { return text == "~" ? std::string() : text; };
    for (const auto& row : kDistanceFormats) {
        EXPECT_EQ(written(CvtDist, row.d, row.cut), row.decimal);
        EXPECT_EQ(written(TLongToDecimal, row.d, row.cut), emptied(row.decimal));
        EXPECT_EQ(written(lDistToStr, row.d, row.cut), row.fixed);
        EXPECT_EQ(written(recordDistance, row.d, row.cut), row.fixed);
        EXPECT_EQ(written(CvtDistStr, row.d, row.cut), row.instrument);
    }
    for (const auto& row : kSeconds) {
        EXPECT_EQ(written(CvtSec, row.s, row.withSign, row.withMark), row.text) << row.s;
        EXPECT_EQ(written(TCvtSec, row.s, row.withSign, row.withMark), emptied(row.text)) << row.s;
    }
}

TEST(InstrumentStrings, Relayout) {
    for (const auto& row : kRelayouts) {
        CString decimal = wide(row.in), display = decimal;
        EXPECT_EQ(written(decimalOf, display), row.decimal);
        TAngleToDecimal(&decimal, &decimal);
        EXPECT_EQ(decimal, wide(row.decimal));
        TDecimalToAngle(&display, &display);  // by way of the wide form
        EXPECT_EQ(display, wide(row.display));
    }
    for (const auto& row : kByPlace) {
        CString out(u"~");
        AnglDecimalToDispStr(CString(row.in), out, row.mode);
        EXPECT_EQ(out, CString(row.out));
    }
    for (const auto& row : kRaws) {
        CString angle = wide(row.raw), distance = angle;
        VekRawAngToDecimal(angle, angle);
        VekRawDistToDecimal(distance, distance, 1);
        EXPECT_EQ(angle, wide(row.angle));
        EXPECT_EQ(distance, wide(row.distance));
    }
}

TEST(InstrumentStrings, NullPointersAreEmptyTexts) {
    CString out(u"~");
    EXPECT_EQ(CnvAngl(nullptr, 0), 0);
    EXPECT_EQ(CnvAngl(1, nullptr, 0), 0);
    EXPECT_EQ(CvtStrDist(nullptr), 0);
    EXPECT_EQ(CnvTsAnglStr(nullptr), 0);
    EXPECT_EQ(TDecimalToLong(nullptr), 0);
    EXPECT_EQ(ChkAnglStr(nullptr, 1), 2);
    EXPECT_EQ(TChkAnglStr(nullptr), 0);
    EXPECT_EQ(VekRawAngToDecimal(nullptr, out), 0);
    EXPECT_EQ(VekRawDistToDecimal(nullptr, out, 0), 0);
    EXPECT_EQ(TAngleToDecimal(out, static_cast<unsigned short*>(nullptr)), 0);
    EXPECT_EQ(TDecimalToAngle(static_cast<CString*>(nullptr), &out), 0);
    EXPECT_EQ(out, u"~");
    TAngleToDecimal(static_cast<CString*>(nullptr), &out);
    EXPECT_EQ(out, u"");
}

}  // namespace
