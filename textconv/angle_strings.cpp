// Angles, integers in 0.1 second: read from decimal and instrument text, and written in all three layouts.
#include <fieldscan/instrument_strings.h>

#include <algorithm>

#include "platform/framework/number_text.h"
#include "platform/framework/out_of_memory.h"
#include "textconv/instrument_text.h"

using namespace fieldscan;

namespace fieldscan {
namespace {

// ---- Text to angle ----

int angleFromInstrument(std::string_view text) {
    if (!text.empty() && text[0] == '+')
        text.remove_prefix(1);
    return angleFromDecimal(decimalFromInstrument(text, 3, 5), 0);
}

int checkAngle(std::string_view text) {
    const int degrees = parseInt(text);
    if (degrees < 0 || degrees >= 360)
        return -1;
    if (degrees == 0 && text.find('0') == std::string_view::npos)
        return 2;
    const auto isLetter = [](char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); };
    if (std::any_of(text.begin(), text.end(), isLetter))
        return -1;
    const std::size_t point = text.find('.');
    if (point == std::string_view::npos)
        return 1;
    for (const std::size_t tens : {point + 1, point + 3})
        if (tens < text.size() && static_cast<unsigned char>(text[tens]) > '5')
            return -1;
    return 1;
}

// ---- Angle to text ----

// An angle without its sign, in 64 bits: 32 hold neither the magnitude of -2147483648 nor 2147483647 rounded
// up.
struct Magnitude {
    Magnitude(int angle, int mode)
        : tenths(angle < 0 ? -static_cast<long long>(angle) : angle), negative(angle < 0) {
        // Without tenths, -0.9" would be rounded to +1": angles too small for a sign are shown as 0.
        if (negative && mode != 0 && tenths < 10) {
            tenths = 0;
            negative = false;
        }
    }
    long long tenths;
    bool negative;
};

struct AngleParts {
    explicit AngleParts(long long tenths)
        : degrees(tenths / 36000),
          minutes(tenths % 36000 / 600),
          seconds(tenths % 600 / 10),
          tenth(tenths % 10) {}
    long long degrees, minutes, seconds, tenth;
};

// The sign replaces the blank before a single digit of degrees, else the first character.
void overprintSign(std::string& text) { text[text[1] == ' ' ? 1 : 0] = '-'; }

std::string decimalAngle(int angle, int mode) {
    const Magnitude magnitude(angle, mode);
    const AngleParts parts(magnitude.tenths);
    std::string text;
    appendInt(text, parts.degrees, 3, true);
    text += '.';
    appendInt(text, parts.minutes, 2, true);
    appendInt(text, parts.seconds, 2, true);
    if (mode == 0)
        appendInt(text, parts.tenth);
    if (magnitude.negative)
        overprintSign(text);
    return text;
}

std::string instrumentAngle(int angle, int mode) {
    if (mode != 0)
        angle = angle / 10 * 10;
    const bool negative = angle < 0;
    const AngleParts parts(negative ? -static_cast<long long>(angle) : angle);
    std::string text(negative ? "-" : "");
    appendInt(text, parts.degrees, negative ? 2 : 3, true);
    appendInt(text, parts.minutes, 2, true);
    appendInt(text, parts.seconds, 2, true);
    if (!negative && mode != 1)
        appendInt(text, parts.tenth);
    return text;
}

// Empty for a missing value.
std::string secondsField(int value, int withSign, int withMark) {
    constexpr int kMissing = 32768;
    if (value == kMissing)
        return std::string();
    long long tenths = value;
    char sign = '+';
    if (withSign && value < 0) {
        sign = '-';
        tenths = -tenths;
    }
    std::string number;
    if (tenths >= 0 && (tenths + 5) / 10 < 1000) {
        appendInt(number, (tenths + 5) / 10, 3);
    } else {
        number = "***";
        sign = ' ';
    }
    return (withSign ? std::string(1, sign) : std::string()) + number + (withMark ? "\"" : "");
}

}  // namespace

int angleFromDecimal(std::string_view decimal, int dropTenths) {
    // Unsigned: with too many degrees the product wraps at 32 bits.
    unsigned angle = static_cast<unsigned>(parseInt(decimal)) * 36000u;
    const std::size_t point = decimal.find('.');
    if (point != std::string_view::npos) {
        constexpr unsigned kPlaces[] = {6000, 600, 100, 10, 1};  // tens of minutes to tenths of a second
        const std::string_view digits = leadingDigits(decimal.substr(point + 1), 6);
        // Tenths are dropped only when a sixth digit follows: "123.45678" keeps its 8.
        const std::size_t counted =
            std::min<std::size_t>(digits.size(), dropTenths && digits.size() == 6 ? 4 : 5);
        for (std::size_t i = 0; i < counted; ++i)
            angle += static_cast<unsigned>(digits[i] - '0') * kPlaces[i];
    }
    return static_cast<int>(angle);
}

std::string displayAngle(int angle, int mode) {
    const Magnitude magnitude(angle, mode);
    const AngleParts parts(mode == 1 ? (magnitude.tenths + 5) / 10 * 10 : magnitude.tenths);
    std::string text;
    appendInt(text, parts.degrees, 3);
    text += static_cast<char>(kDegreeSign);
    appendInt(text, parts.minutes, 2, true);
    text += kMinuteMark;
    appendInt(text, parts.seconds, 2, true);
    text += kSecondMark;
    if (mode == 0)
        appendInt(text, parts.tenth);
    if (magnitude.negative)
        overprintSign(text);
    return text;
}

}  // namespace fieldscan

long CnvAngl(const char* text, int dropTenths) { return angleFromDecimal(latin1(text), dropTenths); }

long TCnvAngl(const unsigned short* text, int dropTenths) {
    return zeroIfOutOfMemory([&] { return angleFromDecimal(latin1(text), dropTenths); });
}

long TSstrToLAngl(const char* text) { return angleFromInstrument(latin1(text)); }

long CnvTsAnglStr(const unsigned short* text) {
    return zeroIfOutOfMemory([&] { return angleFromInstrument(latin1(text)); });
}

int ChkAnglStr(const char* text, int /*noTenths*/) { return checkAngle(latin1(text)); }

int TChkAnglStr(const CString* text) {
    return zeroIfOutOfMemory([&] { return text && checkAngle(latin1(text->GetString())) == 1 ? 1 : 0; });
}

int CnvAngl(long a, char* out, int mode) {
    writeText(displayAngle(lower32(a), mode), out);
    return 0;
}

int TCnvAngl(long a, unsigned short* out, int mode) {
    writeText(displayAngle(lower32(a), mode), out);
    return 0;
}

void lAnglToStr(long a, char* out, int mode) { writeText(decimalAngle(lower32(a), mode), out); }

int TLongToRecDecimal(long v, int isDistance, unsigned short* out, int mode) {
    writeText(isDistance ? fixedDistance(lower32(v), mode) : decimalAngle(lower32(v), mode), out);
    return 0;
}

int CvtAnglStr(long a, char* out, int mode) {
    writeText(instrumentAngle(lower32(a), mode), out);
    return 0;
}

int CvtSec(int s, char* out, int withSign, int withMark) {
    const std::string text = secondsField(s, withSign, withMark);
    if (!text.empty())
        writeText(text, out);
    return 0;
}

int TCvtSec(int s, unsigned short* out, int withSign, int withMark) {
    writeText(secondsField(s, withSign, withMark), out);
    return 0;
}
