// Instrument strings, string utilities, code pages and number texts on any text. Number texts are compared
// with the C library, wide functions with their 8-bit twins.
#include <fieldscan/instrument_strings.h>
#include <fieldscan/point_files.h>
#include <fieldscan/string_utilities.h>
#include <fieldscan/survey.h>

#include <iterator>

#include "fuzz/input.h"
#include "platform/framework/code_page.h"
#include "platform/framework/number_text.h"

namespace {

using namespace fieldscan;

// Output buffers of exactly 32 characters, so that the sanitizer reports a longer result.
struct Buffers {
    char* narrow = new char[32]();
    unsigned short* wide = new unsigned short[32]();
    ~Buffers() {
        delete[] narrow;
        delete[] wide;
    }
    bool agree() const {
        for (int i = 0; i < 32; ++i) {
            if (static_cast<unsigned char>(narrow[i]) != wide[i])
                return false;
            if (!narrow[i])
                break;
        }
        return true;
    }
};

void instrumentTexts(FuzzedDataProvider& input) {
    const int flag = input.ConsumeIntegralInRange(0, 2);
    const std::string text = input.ConsumeRemainingBytesAsString();
    CString wide, out;
    appendDecoded(28591, text.data(), text.size(), wide);
    require(CnvAngl(text.c_str(), flag) == TCnvAngl(wide, flag));
    require(TSstrToLAngl(text.c_str()) == CnvTsAnglStr(wide));
    require(TSstrToLDist(text.c_str()) == CnvTsDistStr(wide));
    if (std::char_traits<char>::length(text.c_str()) < 31)
        require(CvtStrDist(text.c_str()) == TDecimalToLong(wide));
    ChkAnglStr(text.c_str(), flag);
    TChkAnglStr(&wide);
    AnglDecimalToDispStr(wide, out, flag);
    VekRawAngToDecimal(wide, out);
    VekRawDistToDecimal(wide, out, flag);
    Buffers buffers;
    TAngleToDecimal(wide, buffers.wide);
    TDecimalToAngle(buffers.wide, wide);
    TAngleToDecimal(&wide, &out);
    TDecimalToAngle(&out, &wide);
}

void instrumentNumbers(FuzzedDataProvider& input) {
    const long value = input.ConsumeIntegral<int>();
    const int mode = input.ConsumeIntegralInRange(0, 2), mark = input.ConsumeIntegralInRange(0, 1);
    Buffers angle, distance, seconds, fixed;
    CnvAngl(value, angle.narrow, mode);
    TCnvAngl(value, angle.wide, mode);
    require(angle.agree());
    CvtDist(value, distance.narrow, mode);
    TLongToDecimal(value, distance.wide, mode);
    require(distance.agree());
    CvtSec(static_cast<int>(value), seconds.narrow, mode, mark);
    TCvtSec(static_cast<int>(value), seconds.wide, mode, mark);
    require(seconds.agree());
    lDistToStr(value, fixed.narrow, mode);
    TLongToRecDecimal(value, 1, fixed.wide, mode);
    require(fixed.agree());
    lAnglToStr(value, fixed.narrow, mode);
    TLongToRecDecimal(value, 0, fixed.wide, mode);
    require(fixed.agree());
    if (value >= 0 && value < 1000L * 36000 && mode == 0) {
        require(CnvAngl(fixed.narrow, 0) == value);
        CvtAnglStr(value, fixed.narrow, 0);
        require(TSstrToLAngl(fixed.narrow) == value);
    }
    if (value >= 0 && value < 1000000000 && mode == 0) {
        CvtDistStr(value, fixed.narrow, 0);
        require(TSstrToLDist(fixed.narrow) == value);
    }
}

void utilities(FuzzedDataProvider& input) {
    const int k = input.ConsumeIntegralInRange(-2, 40), step = input.ConsumeIntegral<int>();
    CString a = wideText(input, 40), b = wideText(input, 40), item;
    IncrStr(a, step);
    IsSameCode(a, b);
    CutItemInStr(a, k, item, b[0]);
    CStringToInt(a);
    CStringToDBL(a);
    CCalcXYZHV::ChkFileFolderName(b);
    const std::size_t room = static_cast<std::size_t>(k > 0 ? k : 0) + 1;
    char* const narrow = new char[room];
    unsigned short* const wide = new unsigned short[room];
    ConvUniToAscii(a, narrow, k);
    const std::string text = input.ConsumeRemainingBytesAsString();
    Scopy(narrow, text.c_str(), k);
    ScopyPad(narrow, text.c_str(), k);
    TScopy(wide, a, k);
    TScopyPad(wide, b, k);
    IsDbcsTrailAt(text.c_str(), k);
    delete[] narrow;
    delete[] wide;
    const int at = a.Find(b);
    require(at < 0 || a.Mid(at, b.GetLength()) == b);
    require((a.Compare(b) < 0) == (b.Compare(a) > 0));
}

// Decoded text comes back through UTF-8, which has all characters; in Latin-1 every byte comes back.
void codePage(FuzzedDataProvider& input) {
    const unsigned int pages[] = {65001, 932, 1252, 28591};
    const unsigned int page = pages[input.ConsumeIntegralInRange(0, 3)];
    const std::string bytes = input.ConsumeRemainingBytesAsString();
    CString wide, again;
    appendDecoded(page, bytes.data(), bytes.size(), wide);
    require(static_cast<std::size_t>(wide.GetLength()) <= bytes.size());
    std::string utf8;
    appendEncoded(65001, wide, wide.GetLength(), utf8);
    appendDecoded(65001, utf8.data(), utf8.size(), again);
    require(again == wide);
    std::string back;
    appendEncoded(page, wide, wide.GetLength(), back);
    if (page == 28591)
        require(back == bytes);
}

void numberText(FuzzedDataProvider& input) {
    const double value = number(input);
    const int decimals = input.ConsumeIntegralInRange(0, 20), width = input.ConsumeIntegralInRange(0, 30);
    std::string text;
    char expected[512];
    appendFixed(text, value, decimals, width);
    std::snprintf(expected, sizeof expected, "%*.*f", width, decimals, value);
    require(text == expected);
    require(same(parseDouble(text), std::strtod(expected, nullptr)));
    text.clear();
    appendExponent(text, value, decimals);
    std::snprintf(expected, sizeof expected, "%.*e", decimals, value);
    require(text == expected);
    const std::string any = input.ConsumeRemainingBytesAsString().c_str();
    char* end = nullptr;
    std::size_t used = 0;
    const double wanted = std::strtod(any.c_str(), &end);
    // The C library misrounds some denormal hexadecimal numbers.
    const double got = parseDouble(any, &used);
    require(same(got, wanted) || std::fabs(wanted) < 2.3e-308);
    require(used == static_cast<std::size_t>(end - any.c_str()));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    FuzzedDataProvider input(data, size);
    chooseCodePage(input);
    void (*const families[])(FuzzedDataProvider&) = {instrumentTexts, instrumentNumbers, utilities, codePage,
                                                     numberText};
    families[input.ConsumeIntegralInRange<std::size_t>(0, std::size(families) - 1)](input);
    return 0;
}
