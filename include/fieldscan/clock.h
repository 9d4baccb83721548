// The platform's time records, in the names that the interface uses.
#ifndef FIELDSCAN_CLOCK_H
#define FIELDSCAN_CLOCK_H

#if defined(_WIN32)

// Defined by the system's own header, which a caller that fills one of these includes.
struct _SYSTEMTIME;
struct _FILETIME;
typedef struct _SYSTEMTIME SYSTEMTIME;
typedef struct _FILETIME FILETIME;

#else

// A calendar time, to the millisecond.
struct SYSTEMTIME {
    unsigned short wYear;
    unsigned short wMonth;      // 1 .. 12
    unsigned short wDayOfWeek;  // 0 Sunday .. 6
    unsigned short wDay;        // 1 .. 31
    unsigned short wHour;
    unsigned short wMinute;
    unsigned short wSecond;
    unsigned short wMilliseconds;
};

// A file time: 100-nanosecond intervals since 1601-01-01 00:00 UTC, in two halves.
struct FILETIME {
    unsigned int dwLowDateTime;
    unsigned int dwHighDateTime;
};

#endif

#endif
