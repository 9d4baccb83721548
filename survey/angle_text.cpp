// Packed angles (ddd.mmss), texts of angles and times for display, and comparisons of times.
#include <fieldscan/survey.h>

#include <string>
#include <string_view>

#include "platform/framework/calendar.h"
#include "platform/framework/number_text.h"
#include "platform/framework/truncation.h"
#include "platform/system.h"
#include "platform/time_records.h"

using namespace fieldscan;

namespace {

// Latin-1 text, which has the degree sign, as UTF-16.
CString utf16(const std::string& text) {
    CString result;
    system::appendWide(system::kLatin1, text.data(), text.size(), result);
    return result;
}

CalendarTime localTime(FILETIME time, long long offsetSeconds) {
    const unsigned long long high = time.dwHighDateTime;
    return calendarTime(high << 32 | time.dwLowDateTime, offsetSeconds);
}

}  // namespace

double CCalcXYZHV::Angle100To60(double deg, int normalize, int keepFraction) {
    if (normalize == 1)
        Angle0To360(deg);
    long long d = truncated(deg);
    const double minutes = (deg - static_cast<double>(d)) * 60.0;
    long long m = truncated(minutes);
    double s = (minutes - static_cast<double>(m)) * 60.0;
    if (keepFraction != 1)
        s = static_cast<double>(truncated(s + 0.5));
    if (s >= 60.0) {
        s = s - 60.0;
        m = m + 1;
    }
    if (m >= 60) {
        m = m - 60;
        d = d + 1;
    }
    return static_cast<double>(m) * 0.01 + s * 0.0001 + static_cast<double>(d);
}

double CCalcXYZHV::Angle60To100(double packed, int normalize) {
    if (normalize == 1)
        Angle0To360(packed);
    std::string text;
    appendFixed(text, packed, 5, 9, true);
    const std::string_view columns = text;
    const double degrees = parseDouble(columns.substr(0, 3));
    const double minutes = parseDouble(columns.substr(4, 2));
    const double tenthsOfSecond = parseDouble(columns.substr(6, 3));
    return degrees + (minutes * 60.0 + tenthsOfSecond * 0.1) * 2.777777777777778e-4;  // 1/3600
}

CString CCalcXYZHV::AngleStr(double packed, int mode) {
    constexpr double kGuard = 1e-9;  // 12.29 - 12 is 0.28999999999999915
    if (mode < 0 || mode > 2)
        return CString();
    const int d = truncated(packed);
    const double f = packed - d;
    const int m = truncated((f + kGuard) * 100.0);
    std::string text;
    appendInt(text, d);
    text += '\xB0';
    if (mode <= 1) {
        appendInt(text, m, 2, true);
        text += '\'';
    }
    if (mode == 0) {
        appendInt(text, truncated(((f - m * 0.01) + kGuard) * 10000.0), 2, true);
        text += '"';
    }
    return utf16(text);
}

CString CCalcXYZHV::ByoToStr(int seconds) {
    const int h = seconds >= 3600 ? seconds / 3600 : 0;
    seconds -= h * 3600;
    const int m = seconds >= 60 ? seconds / 60 : 0;
    seconds -= m * 60;
    std::string text;
    appendInt(text, h, 2, true);
    text += ':';
    appendInt(text, m, 2, true);
    text += ':';
    appendInt(text, seconds, 2, true);
    return utf16(text);
}

CString CCalcXYZHV::TimeToString(SYSTEMTIME t) {
    std::string text;
    appendInt(text, t.wYear, 4, true);
    appendInt(text, t.wMonth, 2, true);
    appendInt(text, t.wDay, 2, true);
    appendInt(text, t.wHour, 2, true);
    appendInt(text, t.wMinute, 2, true);
    return utf16(text);
}

int CCalcXYZHV::GetTakenTime(SYSTEMTIME start, SYSTEMTIME end) {
    return (end.wHour - start.wHour) * 60 - start.wMinute + end.wMinute;
}

// Both times are shifted by today's offset from UTC, as the system converts file times, even if daylight
// saving time was in force at one of them.
int CCalcXYZHV::FILETIMEFastRate(FILETIME a, FILETIME b) {
    const long long offset = system::localOffsetSeconds();
    const CalendarTime timeA = localTime(a, offset);
    const CalendarTime timeB = localTime(b, offset);
    for (int i = 0; i < CalendarTime::kFields; ++i)
        if (timeA.field[i] != timeB.field[i])
            return timeA.field[i] > timeB.field[i] ? 1 : 0;
    return 2;
}
