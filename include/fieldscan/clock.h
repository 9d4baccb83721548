// SYSTEMTIME and FILETIME: the time records of the interface.
#ifndef FIELDSCAN_CLOCK_H
#define FIELDSCAN_CLOCK_H

#if defined(_WIN32)

// Defined by the system's own header: include that to use their members.
struct _SYSTEMTIME;
struct _FILETIME;
typedef struct _SYSTEMTIME SYSTEMTIME;
typedef struct _FILETIME FILETIME;

#else

// A calendar time in milliseconds.
struct SYSTEMTIME {
    unsigned short wYear;          // all four digits
    unsigned short wMonth;         // 1 .. 12
    unsigned short wDayOfWeek;     // 0 Sunday .. 6
    unsigned short wDay;           // 1 .. 31
    unsigned short wHour;          // 0 .. 23
    unsigned short wMinute;        // 0 .. 59
    unsigned short wSecond;        // 0 .. 59
    unsigned short wMilliseconds;  // 0 .. 999
};

// A file time: 100-nanosecond intervals since 1601-01-01 00:00 UTC, 64 bits in two halves.
struct FILETIME {
    unsigned int dwLowDateTime;   // the lower 32 bits
    unsigned int dwHighDateTime;  // the upper 32 bits
};

#endif

#endif
