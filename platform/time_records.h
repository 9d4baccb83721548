// SYSTEMTIME and FILETIME with their members, which on Windows the system's own header defines.
#ifndef FIELDSCAN_PLATFORM_TIME_RECORDS_H
#define FIELDSCAN_PLATFORM_TIME_RECORDS_H

#include <fieldscan/clock.h>

#if defined(_WIN32)
#include "platform/windows/api.h"
#endif

#endif
