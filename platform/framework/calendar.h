// Calendar time from a file time.
#ifndef FIELDSCAN_PLATFORM_FRAMEWORK_CALENDAR_H
#define FIELDSCAN_PLATFORM_FRAMEWORK_CALENDAR_H

namespace fieldscan {

// From the largest unit to the smallest: times compare field by field.
struct CalendarTime {
    enum { kFields = 7 };  // year, month 1 .. 12, day 1 .. 31, hour, minute, second, millisecond
    int field[kFields];
};

// The calendar time (proleptic Gregorian) of `fileTime`, 100-nanosecond intervals since 1601-01-01 00:00,
// plus `offsetSeconds`.
CalendarTime calendarTime(unsigned long long fileTime, long long offsetSeconds);

}  // namespace fieldscan

#endif
