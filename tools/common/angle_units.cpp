// Layouts are checked here and converted by the library, which reads what is malformed as far as it goes.
#include "common/angle_units.h"

#include <fieldscan/instrument_strings.h>
#include <fieldscan/survey.h>

#include <algorithm>
#include <cmath>

#include "common/text.h"
#include "formats/fields.h"

namespace {

constexpr double kTenthsPerDegree = 36000.0;
constexpr char kDegreeSign[] = "\xC2\xB0";  // in UTF-8

bool areDigits(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// "dddmmsst" as tenths of a second. Minutes and seconds begin with 0 to 5, but recorders print 60 seconds
// too, where they round without a carry.
std::optional<double> tenthsOf(const std::string& digits) {
    if (!areDigits(digits) || digits[3] > '5' || (digits[5] > '5' && digits.substr(5) != "600"))
        return std::nullopt;
    return static_cast<double>(TSstrToLAngl(digits.c_str()));
}

// Digits with zeros in front up to three places of degrees, and after up to five for the rest.
std::optional<double> tenthsOf(std::string_view degrees, std::string_view rest) {
    if (degrees.empty() || degrees.size() > 3 || rest.size() > 5)
        return std::nullopt;
    return tenthsOf(std::string(3 - degrees.size(), '0') + std::string(degrees) + std::string(rest) +
                    std::string(5 - rest.size(), '0'));
}

std::optional<double> tenthsOfPacked(std::string_view text) {
    const std::size_t point = std::min(text.find('.'), text.size());
    return tenthsOf(text.substr(0, point), text.substr(std::min(point + 1, text.size())));
}

std::optional<double> tenthsOfInstrument(std::string_view text) {
    if (text.size() != 7 && text.size() != 8)
        return std::nullopt;
    return tenthsOf(text.substr(0, 3), text.substr(3));
}

std::optional<double> tenthsOfDisplay(std::string_view text) {
    const std::string_view sign = kDegreeSign;
    const std::size_t degrees = text.find(sign);
    if (degrees == std::string_view::npos)
        return std::nullopt;
    const std::string_view rest = text.substr(degrees + sign.size());  // mm'ss"t
    if (rest.size() < 6 || rest.size() > 7 || rest[2] != '\'' || rest[5] != '"')
        return std::nullopt;
    return tenthsOf(text.substr(0, degrees), std::string(rest.substr(0, 2)) + std::string(rest.substr(3, 2)) +
                                                 std::string(rest.substr(6)));
}

std::string textOfTenths(long tenths, const std::string& unit) {
    if (unit == "display") {
        unsigned short text[32];
        TCnvAngl(tenths, text, 0);
        return std::string(trimmed(toUtf8(CString(text))));
    }
    char text[32];
    if (unit == "instrument")
        CvtAnglStr(tenths, text, 0);
    else
        lAnglToStr(tenths, text, 0);
    return text;
}

struct DecimalUnit {
    double circle;
    double (*toDegrees)(double);
    double (*fromDegrees)(double);
};

std::optional<DecimalUnit> decimalUnit(const std::string& unit) {
    const auto same = [](double degrees) { return degrees; };
    if (unit == "degrees")
        return DecimalUnit{360.0, same, same};
    if (unit == "gon")
        return DecimalUnit{400.0, CCalcXYZHV::GONtoDEG, CCalcXYZHV::DEGtoGON};
    if (unit == "mil")
        return DecimalUnit{6400.0, CCalcXYZHV::MILtoDEG, CCalcXYZHV::DEGtoMIL};
    return std::nullopt;
}

}  // namespace

std::optional<double> degreesOf(std::string_view text, const std::string& unit) {
    if (const auto decimal = decimalUnit(unit)) {
        const auto number = numberOf(text);
        return number ? std::optional(decimal->toDegrees(*number)) : std::nullopt;
    }
    const bool isNegative = !text.empty() && text[0] == '-';
    if (isNegative && unit == "instrument")
        return std::nullopt;
    if (isNegative || (!text.empty() && text[0] == '+'))
        text.remove_prefix(1);
    const auto tenths = unit == "packed"       ? tenthsOfPacked(text)
                        : unit == "instrument" ? tenthsOfInstrument(text)
                                               : tenthsOfDisplay(text);
    if (!tenths)
        return std::nullopt;
    return (isNegative ? -*tenths : *tenths) / kTenthsPerDegree;
}

std::string expectedAngle(const std::string& unit) {
    if (unit == "packed")
        return "a packed angle ddd.mmsst";
    if (unit == "instrument")
        return "an angle dddmmsst";
    if (unit == "display")
        return std::string("an angle ddd") + kDegreeSign + "mm'ss\"t";
    return "an angle in " + unit;
}

std::optional<std::string> angleText(double degrees, const std::string& unit) {
    if (const auto decimal = decimalUnit(unit)) {
        const double angle = decimal->fromDegrees(degrees);
        if (!std::isfinite(angle))
            return std::nullopt;
        return fixedText(angle, 6);
    }
    const double tenths = std::round(std::fabs(degrees) * kTenthsPerDegree);
    const bool isNegative = degrees < 0.0 && tenths > 0.0;
    if (!(tenths < 1000.0 * kTenthsPerDegree) || (isNegative && unit == "instrument"))
        return std::nullopt;
    // The library's layouts put the sign over a digit of the degrees.
    return (isNegative ? "-" : "") + textOfTenths(static_cast<long>(tenths), unit);
}

std::string circleText(double degrees, const std::string& unit) {
    CCalcXYZHV::Angle0To360(degrees);
    if (const auto decimal = decimalUnit(unit)) {
        const double rounded = std::round(decimal->fromDegrees(degrees) * 1e6) / 1e6;
        return fixedText(rounded < decimal->circle ? rounded : 0.0, 6);
    }
    return textOfTenths(std::lround(degrees * kTenthsPerDegree) % 12960000, unit);
}
