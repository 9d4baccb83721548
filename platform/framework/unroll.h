// FIELDSCAN_UNROLL(n) before a loop: the compiler repeats its body n times. Only for speed; compilers that
// have another word for it ignore it.
#ifndef FIELDSCAN_PLATFORM_FRAMEWORK_UNROLL_H
#define FIELDSCAN_PLATFORM_FRAMEWORK_UNROLL_H

#if defined(__GNUC__) || defined(__clang__)
#define FIELDSCAN_PRAGMA(text) _Pragma(#text)
#define FIELDSCAN_UNROLL(times) FIELDSCAN_PRAGMA(GCC unroll times)
#else
#define FIELDSCAN_UNROLL(times)
#endif

#endif
