// Days since an epoch as year, month and day, by eras of 400 years (Hinnant, "chrono-Compatible Low-Level
// Date Algorithms").
#include "platform/framework/calendar.h"

namespace fieldscan {

namespace {

constexpr unsigned long long kTicksPerSecond = 10000000;
constexpr unsigned long long kTicksPerMillisecond = 10000;
constexpr long long kSecondsPerDay = 86400;

long long floorDivide(long long a, long long b) { return a / b - (a % b < 0 ? 1 : 0); }

}  // namespace

// Years begin in March here, so that the leap day is the last one; an era of 400 years has 146097 days.
// 1601-01-01 is day 306 of the year that began on 1600-03-01.
CalendarTime calendarTime(unsigned long long fileTime, long long offsetSeconds) {
    const long long seconds = static_cast<long long>(fileTime / kTicksPerSecond) + offsetSeconds;
    const long long days = floorDivide(seconds, kSecondsPerDay);
    const int second = static_cast<int>(seconds - days * kSecondsPerDay);

    const long long shifted = days + 306;
    const long long era = floorDivide(shifted, 146097);
    const int dayOfEra = static_cast<int>(shifted - era * 146097);
    const int yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const int dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const int marchMonth = (5 * dayOfYear + 2) / 153;  // 0 March .. 11 February
    const int month = marchMonth < 10 ? marchMonth + 3 : marchMonth - 9;
    const int year = 1600 + static_cast<int>(era) * 400 + yearOfEra + (month <= 2 ? 1 : 0);

    return {{year, month, dayOfYear - (153 * marchMonth + 2) / 5 + 1, second / 3600, second / 60 % 60,
             second % 60, static_cast<int>(fileTime % kTicksPerSecond / kTicksPerMillisecond)}};
}

}  // namespace fieldscan
