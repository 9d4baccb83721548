// Distances, integers in 1/10000 of their unit: read from decimal and instrument text, and written in both.
#include <fieldscan/instrument_strings.h>

#include <algorithm>

#include "platform/framework/number_text.h"
#include "platform/framework/out_of_memory.h"
#include "textconv/instrument_text.h"

using namespace fieldscan;

namespace fieldscan {
namespace {

int distanceFromDecimal(std::string_view decimal) {
    decimal.remove_prefix(std::min(decimal.find_first_not_of(' '), decimal.size()));
    std::string digits(leadingDigits(decimal, 5));
    decimal.remove_prefix(digits.size());
    if (!decimal.empty() && decimal[0] == '.') {
        const std::string_view decimals = leadingDigits(decimal.substr(1), 4);
        digits.append(decimals).append(4 - decimals.size(), '0');
    } else {
        digits += "0000";
    }
    return parseInt(digits);
}

int distanceFromInstrument(std::string_view text) {
    const char sign = text.empty() ? '\0' : text[0];
    if (sign == '+' || sign == '-')
        text.remove_prefix(1);
    const int distance = distanceFromDecimal(decimalFromInstrument(text, 5, 4));
    return sign == '-' ? -distance : distance;
}

// Empty for a negative distance.
std::string decimalDistance(int distance, int dropLast) {
    std::string text;
    if (distance >= 0) {
        appendInt(text, distance / 10000);
        text += '.';
        appendInt(text, distance % 10000, 4, true);
        if (dropLast)
            text.pop_back();
    }
    return text;
}

// A negative distance has its sign in both parts.
std::string fixedParts(int distance, int mode, const char* separator) {
    std::string text;
    appendInt(text, distance / 10000, 5, true);
    text += separator;
    if (mode == 1)
        appendInt(text, distance % 10000 / 10, 3, true);
    else
        appendInt(text, distance % 10000, 4, true);
    return text;
}

}  // namespace

std::string fixedDistance(int distance, int mode) { return fixedParts(distance, mode, "."); }

}  // namespace fieldscan

long CvtStrDist(const char* text) { return distanceFromDecimal(latin1(text)); }

long TDecimalToLong(const unsigned short* text) {
    return zeroIfOutOfMemory([&] {
        const std::string narrow = latin1(text);
        return narrow.size() >= 31 ? -1 : distanceFromDecimal(narrow);
    });
}

long TSstrToLDist(const char* text) { return distanceFromInstrument(latin1(text)); }

long CnvTsDistStr(const unsigned short* text) {
    return zeroIfOutOfMemory([&] { return distanceFromInstrument(latin1(text)); });
}

int CvtDist(long d, char* out, int dropLast) {
    const std::string text = decimalDistance(lower32(d), dropLast);
    if (!text.empty())
        writeText(text, out);
    return 0;
}

int TLongToDecimal(long d, unsigned short* out, int dropLast) {
    writeText(decimalDistance(lower32(d), dropLast), out);
    return 0;
}

void lDistToStr(long d, char* out, int mode) { writeText(fixedDistance(lower32(d), mode), out); }

int CvtDistStr(long d, char* out, int mode) {
    const int distance = lower32(d);
    writeText(distance < 0 ? std::string() : fixedParts(distance, mode, ""), out);
    return 0;
}
