// Decimal text from display and instrument text, and display text from decimal text.
#include <fieldscan/instrument_strings.h>

#include <utility>

#include "platform/framework/number_text.h"
#include "platform/framework/out_of_memory.h"
#include "textconv/instrument_text.h"

using namespace fieldscan;

namespace {

const unsigned short* unitsOf(const CString* text) { return text ? text->GetString() : nullptr; }

// The text from its first digit on. A copy: `raw` may lie in the output.
CString fromFirstDigit(const unsigned short* raw) {
    while (*raw && !isDigit(*raw))
        ++raw;
    return CString(raw);
}

}  // namespace

int TAngleToDecimal(const unsigned short* in, unsigned short* out) {
    if (!out)
        return 0;
    unsigned short* const last = out + kBufferCharacters - 1;
    for (; in && *in && out < last; ++in) {
        if (*in == kDegreeSign)
            *out++ = '.';
        else if (*in != kMinuteMark && *in != kSecondMark)
            *out++ = *in;
    }
    *out = 0;
    return 0;
}

int TAngleToDecimal(const CString* in, CString* out) {
    return zeroIfOutOfMemory([&] {
        unsigned short decimal[kBufferCharacters];
        TAngleToDecimal(unitsOf(in), decimal);
        if (out)
            *out = decimal;
        return 0;
    });
}

int TDecimalToAngle(unsigned short* out, const unsigned short* in) {
    return zeroIfOutOfMemory([&] {
        writeText(displayAngle(angleFromDecimal(latin1(in), 1), 1), out);
        return 0;
    });
}

int TDecimalToAngle(CString* out, const CString* in) {
    return zeroIfOutOfMemory([&] {
        unsigned short display[kBufferCharacters];
        writeText(displayAngle(angleFromDecimal(latin1(unitsOf(in)), 1), 1), display);
        if (out)
            *out = display;
        return 0;
    });
}

int AnglDecimalToDispStr(const CString& in, CString& out, int mode) {
    return zeroIfOutOfMemory([&] {
        const CString decimal(in.GetString());  // up to its first zero
        if (decimal.IsEmpty())
            return 0;
        std::string degrees;
        appendInt(degrees, parseInt(latin1(decimal.Left(3).GetString())), 3);
        CString display(degrees.c_str());
        display += static_cast<unsigned short>(kDegreeSign);
        display += decimal.Mid(4, 2);
        display += kMinuteMark;
        display += decimal.Mid(6, 2);
        display += kSecondMark;
        if (mode == 0)
            display += decimal.Mid(8, 1);
        out = std::move(display);
        return 0;
    });
}

int VekRawAngToDecimal(const unsigned short* raw, CString& out) {
    return zeroIfOutOfMemory([&] {
        if (raw) {
            const CString digits = fromFirstDigit(raw);
            out = digits.Left(3) + u'.' + digits.Mid(3);
        }
        return 0;
    });
}

int VekRawDistToDecimal(const unsigned short* raw, CString& out, int /*ignored*/) {
    return zeroIfOutOfMemory([&] {
        if (raw) {
            const bool negative = *raw == '-';
            const CString digits = fromFirstDigit(raw);
            int zeros = 0;
            while (zeros < 4 && digits[zeros] == '0')
                ++zeros;
            out =
                (negative ? CString(u"-") : CString()) + digits.Mid(zeros, 5 - zeros) + u'.' + digits.Mid(5);
        }
        return 0;
    });
}
