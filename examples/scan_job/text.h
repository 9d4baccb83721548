// Text of the library and of printf as 8-bit text in UTF-8.
#ifndef EXAMPLES_SCAN_JOB_TEXT_H
#define EXAMPLES_SCAN_JOB_TEXT_H

#include <fieldscan/framework/string.h>

#include <string>

std::string utf8(const CString& text);

#if defined(__GNUC__)
__attribute__((format(printf, 1, 2)))
#endif
std::string
format(const char* pattern, ...);

#endif
