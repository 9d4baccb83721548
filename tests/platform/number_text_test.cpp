// Numbers written as printf does and read as the C library does, whatever the locale.
#include "platform/framework/number_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <climits>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <sstream>
#include <string>
#include <string_view>
#include <tuple>

using namespace std::string_view_literals;
using namespace fieldscan;
using Result = Scanner::Result;

namespace {

// What the C library cannot be asked: it ends a text at a NUL, and the end of a view need not be one.
TEST(NumberText, TextsEndWhereTheViewEnds) {
    const std::tuple<std::string_view, int, std::size_t> integers[] = {
        {"-2147483649 ", INT_MIN, 11}, {"12\0003"sv, 12, 2}, {"\0001"sv, 0, 0}, {{}, 0, 0}};
    std::size_t used = 99;
    for (const auto& [text, value, length] : integers) {
        EXPECT_EQ(parseInt(text, 10, &used), value) << text;
        EXPECT_EQ(used, length) << text;
    }
    EXPECT_EQ(parseInt("1", 37), 0) << "no such base";
    EXPECT_EQ(parseDouble("1.5\0005"sv, &used), 1.5);
    EXPECT_EQ(used, 3u);
    const std::string_view line = "0x1.8p12";
    const double beginnings[] = {0, 0, 0, 1, 1, 1.5, 1.5, 3};
    for (std::size_t length = 0; length < line.size(); ++length)
        EXPECT_EQ(parseDouble(line.substr(0, length)), beginnings[length]) << length;
}

TEST(NumberText, ScansEndWhereTheViewEnds) {
    Scanner scanner("7 a\0b 9 \0008"sv);
    int number = 0;
    std::string word;
    EXPECT_EQ(scanner.scanInt(number), Result::matched);
    EXPECT_EQ(number, 7);
    EXPECT_EQ(scanner.scanWord(word), Result::matched);
    EXPECT_EQ(word, "a\0b"sv);
    EXPECT_EQ(scanner.scanInt(number), Result::matched);
    EXPECT_EQ(number, 9);
    EXPECT_EQ(scanner.scanInt(number), Result::endOfInput);
    EXPECT_EQ(number, 9);
}

// The C library misrounds some of these.
TEST(NumberText, HexadecimalDenormalsRoundToNearest) {
    EXPECT_EQ(parseDouble("0x2b8a7263dbea93p-1076"), 0x0.ae29c98f6faa5p-1022);
    EXPECT_EQ(parseDouble("0x2b8a7263dbea92p-1076"), 0x0.ae29c98f6faa4p-1022);
    const std::string farOff = "0x2b8a7263dbea92" + std::string(100, '0') + "1p-1480";
    EXPECT_EQ(parseDouble(farOff), 0x0.ae29c98f6faa5p-1022);
}

#if defined(__GLIBC__)

// What `ask` gets from the C library, the reference; around it the locale of the test holds.
template <class Ask>
auto inPlainLocale(Ask ask) {
    static const locale_t plain = newlocale(LC_ALL_MASK, "C", nullptr);
    const locale_t before = uselocale(plain);
    const auto answer = ask();
    uselocale(before);
    return answer;
}

// The parameter: under a locale with a decimal comma, or under "C".
class AgainstCLibrary : public ::testing::TestWithParam<bool> {
protected:
    void SetUp() override {
        if (!GetParam())
            return;
        for (const char* name : {"de_DE.UTF-8", "de_DE", "fr_FR.UTF-8", "da_DK.UTF-8", "ru_RU.UTF-8"})
            if (std::setlocale(LC_ALL, name) && std::strcmp(std::localeconv()->decimal_point, ",") == 0)
                return;
        GTEST_SKIP() << "this machine has no locale with a decimal comma, e.g. de_DE.UTF-8";
    }
    void TearDown() override { std::setlocale(LC_ALL, "C"); }

    int count(int inC) const { return GetParam() ? inC / 20 : inC; }
    std::mt19937_64 m_random{20240607};
};

INSTANTIATE_TEST_SUITE_P(NumberText, AgainstCLibrary, ::testing::Bool(),
                         [](const auto& p) { return p.param ? "CommaLocale" : "CLocale"; });

// The payload of a nan is left out: no text shows it.
bool same(double a, double b) {
    return std::signbit(a) == std::signbit(b) && (a == b || (std::isnan(a) && std::isnan(b)));
}

std::string exact(double value) {
    char text[40];
    std::snprintf(text, sizeof text, "%a", value);
    return text;
}

// Writes `value` after a "-", which must not be taken for its sign, and reads it back. exponent: "%.Ne".
void compareText(double value, int decimals, int width, bool zeroFill, bool exponent = false) {
    static char expected[4096] = "-";
    char* const number = expected + 1;
    const double readBack = inPlainLocale([&] {
        if (exponent)
            std::snprintf(number, sizeof expected - 1, "%.*e", decimals, value);
        else
            std::snprintf(number, sizeof expected - 1, zeroFill ? "%0*.*f" : "%*.*f", width, decimals, value);
        return std::strtod(number, nullptr);
    });
    static std::string actual;
    actual = "-";
    if (exponent)
        appendExponent(actual, value, decimals);
    else
        appendFixed(actual, value, decimals, width, zeroFill);
    ASSERT_STREQ(actual.c_str(), expected) << exact(value) << " decimals " << decimals << " width " << width;
    ASSERT_PRED2(same, parseDouble(std::string_view(actual).substr(1)), readBack) << number;
}

TEST_P(AgainstCLibrary, RandomDoubles) {
    std::uniform_real_distribution<double> coordinate(-2e6, 2e6);
    for (int i = 0; i < count(300000); ++i) {
        double value = coordinate(m_random);
        if (i % 4 == 0) {
            const std::uint64_t bits = m_random();
            std::memcpy(&value, &bits, sizeof value);
        } else if (i % 4 == 1) {  // halves of the last place of 4, 5, 6 and 10 decimals
            const int places = 5 + i / 4 % 7;
            value = std::ldexp(std::trunc(std::ldexp(value, places)), -places);
        } else if (i % 4 == 2) {  // every magnitude that the short way has, and those around it
            value = std::ldexp(value, i / 4 % 130 - 100);
        }
        ASSERT_NO_FATAL_FAILURE(compareText(value, 6, 0, false, i % 5 == 0));
        for (const int decimals : {0, 4, 5, 10})
            ASSERT_NO_FATAL_FAILURE(compareText(value, decimals, 2 * decimals, decimals == 5));
    }
}

TEST_P(AgainstCLibrary, EdgesOfTheRange) {
    // clang-format off
    const double values[] = {0.0, 0.5, 1.5, 2.5, 0.05, 0.125, 9.9999995, 999999.9999995, 1e15, 1e16, 1e22, 1e23, 1e308,
                             9007199254740993.0, DBL_MAX, DBL_MIN, 5e-324, 999999999999999.9, HUGE_VAL, NAN};
    // clang-format on
    for (const double magnitude : values)
        for (const double value : {magnitude, -magnitude})
            for (const int decimals : {0, 1, 2, 6, 20, 340, 1100})
                for (const int width : {0, 1, 12, 400, 1600})
                    for (const int form : {0, 1, 2})
                        ASSERT_NO_FATAL_FAILURE(compareText(value, decimals, width, form == 1, form == 2));
}

int saturated(long long value) { return static_cast<int>(std::clamp<long long>(value, INT_MIN, INT_MAX)); }

// For messages: the beginning of `text`, in brackets, and its length.
std::string shown(const std::string& text) {
    return "[" + text.substr(0, 100) + "] of " + std::to_string(text.size());
}

// Where strtod of glibc 2.36 itself is not to be trusted: of a denormal number in hexadecimal with more bits
// than fit it takes some to the next but one double.
bool agree(const std::string& text, double a, double b) {
    const bool denormal = std::abs(a) < 2 * DBL_MIN && std::signbit(a) == std::signbit(b);
    return same(a, b) || (denormal && std::abs(a - b) <= 5e-324 && text.find_first_of("xX") != text.npos);
}

// One scan of `text` by the conversions of `order`, d, f or s, until one fails and on.
void compareScan(const std::string& text, const char* order) {
    static char word[30000];
    Scanner scanner(text);
    const char* rest = text.c_str();
    int expected = 1;
    for (const char* kind = order; *kind; ++kind) {
        double number = -7, actualNumber = -7;
        long long integer = -7;
        int actualInteger = -7;
        std::strcpy(word, "none");
        std::string actualWord = word;
        if (expected == 1) {  // else sscanf has stopped
            int used = 0;
            expected = inPlainLocale([&] {
                return *kind == 'f'   ? std::sscanf(rest, "%lf%n", &number, &used)
                       : *kind == 'd' ? std::sscanf(rest, "%lld%n", &integer, &used)
                                      : std::sscanf(rest, "%29999s%n", word, &used);
            });
            rest += used;
        }
        const Result result = *kind == 'f'   ? scanner.scanDouble(actualNumber)
                              : *kind == 'd' ? scanner.scanInt(actualInteger)
                                             : scanner.scanWord(actualWord);
        const auto where = [&] { return shown(text) + " " + order + " at " + kind; };
        ASSERT_EQ(result == Result::matched ? 1 : result == Result::mismatch ? 0 : EOF, expected) << where();
        ASSERT_TRUE(agree(text, actualNumber, number))
            << where() << exact(actualNumber) << " not " << exact(number);
        ASSERT_EQ(actualInteger, saturated(integer)) << where();
        ASSERT_TRUE(actualWord == word) << where() << shown(actualWord) << " not " << shown(word);
    }
}

void compareParse(const std::string& text) {
    const char* const begin = text.c_str();
    char* end = nullptr;
    std::size_t used = 99;
    const double number = inPlainLocale([&] { return std::strtod(begin, &end); });
    const double actual = parseDouble(text, &used);
    ASSERT_TRUE(agree(text, actual, number)) << shown(text) << exact(actual) << " not " << exact(number);
    ASSERT_EQ(used, static_cast<std::size_t>(end - begin)) << shown(text);
    for (const int base : {10, 16, 0, 8, 2, 36}) {
        const long long integer = inPlainLocale([&] { return std::strtoll(begin, &end, base); });
        ASSERT_EQ(parseInt(text, base, &used), saturated(integer)) << shown(text) << " base " << base;
        ASSERT_EQ(used, static_cast<std::size_t>(end - begin)) << shown(text) << " base " << base;
    }
    for (const char* order : {"fff", "dfsd", "sfd", "ddf"})
        ASSERT_NO_FATAL_FAILURE(compareScan(text, order));
}

// Numbers and almost numbers, a "|" between them.
const char kTexts[] =
    "| |x|1455644.371000 -12.5 8| \t\n\v\f\r-1|\2401|\2051|1\xff|+.5|5.|.|-.|.e1|--1|+-1|-|- 1|1,5|"
    "1.5.2|0x|0xg|-0x|0x.|0x.p1|0X.8P1|0x1p|0x1p+|0x1p+z|0x1p+-1|1e+-1|0x-1|0xinf|0x1.8e1|0x8.|1e|1e+|1E+ "
    "5|1e5e5|"
    "1e5.5|1d5|inf|infi|infx|infinit|INFINITYx|nan|-nan|nan(|nan(12)|NaN(a_Z9)5|nan(a-b)|nano|"
    "1e99999999999|-1e-99999999999999999999|0e999999999|-0e-99999999999999999999|1e309|-1e-400|"
    "0x1p99999999999999999999|-0x1p-99999999999999999999|0x0p99999999999|0x1p1024|0x1p-1075|"
    "0x1.8p-1075|0x0.00000000000008p-1022|0x1.fffffffffffff8p1023|0x1.00000000000008p0|"
    "0x1.000000000000080000000001p0|0x1.00000000000018p0|1.7976931348623157e308|"
    "1.7976931348623159e308|4.9e-324|2.4703282292062327e-324|2.4703282292062328e-324|"
    "2.2250738585072011e-308|9007199254740993|9007199254740993.00000000000000000000000000000001|"
    "2147483648|-2147483649|0xffffffff|99999999999999999999|0777|089|0b1|zz";

TEST_P(AgainstCLibrary, HostileTexts) {
    std::istringstream list(kTexts);
    for (std::string text; std::getline(list, text, '|');)
        ASSERT_NO_FATAL_FAILURE(compareParse(text));
    const std::string zeros(10000, '0'), nines(10000, '9');
    // clang-format off
    for (const std::string& text :
         {zeros, nines, "1" + zeros + "e-10000", "0." + zeros + "1e+10001", "." + zeros + "1", zeros + "." + zeros,
          "-" + zeros + "1." + zeros + "1", nines + "e-10000", "0." + nines, "1e" + nines, "1e-" + nines,
          "1e" + zeros + "5", "0x" + zeros + "1p-4", "0x1" + zeros + "p-40000", "0x0." + zeros + "1p40001",
          "0x1" + zeros + "p-38000", "-0x0." + zeros + "1p38000", "0x1." + zeros + "1",
          "0x1.00000000000008" + zeros + "1", "0x1p" + zeros + "3", "0x" + nines,
          "9007199254740993" + zeros + "1e-10001", "1" + zeros + "e-10400", "0." + zeros + "1e10400",
          "nan(" + nines + ")", std::string(10000, ' ') + "1"})
        // clang-format on
        ASSERT_NO_FATAL_FAILURE(compareParse(text));
}

#else

TEST(NumberText, AgainstCLibrary) { GTEST_SKIP() << "the reference is the C library of a glibc host"; }

#endif

}  // namespace
