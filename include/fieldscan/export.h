// FIELDSCAN_API marks what the dynamic library exports; all else is hidden.
#ifndef FIELDSCAN_EXPORT_H
#define FIELDSCAN_EXPORT_H

#if defined(FIELDSCAN_STATIC)
// Precedes every exported declaration; empty when the library is linked statically.
#define FIELDSCAN_API
#elif defined(_WIN32)
#if defined(FIELDSCAN_BUILDING)
#define FIELDSCAN_API __declspec(dllexport)
#else
#define FIELDSCAN_API __declspec(dllimport)
#endif
#else
#define FIELDSCAN_API __attribute__((visibility("default")))
#endif

#endif
