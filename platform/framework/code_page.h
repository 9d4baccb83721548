// Text in the code pages that are compiled in and so the same on every system: UTF-8, 932, 1252, Latin-1.
#ifndef FIELDSCAN_PLATFORM_FRAMEWORK_CODE_PAGE_H
#define FIELDSCAN_PLATFORM_FRAMEWORK_CODE_PAGE_H

#include <fieldscan/framework/string.h>

#include <cstddef>
#include <string>

namespace fieldscan {

bool isCompiledIn(unsigned int codePage);

// system::appendAnsi and system::appendWide for these pages; any other number counts as UTF-8.
void appendEncoded(unsigned int codePage, const unsigned short* text, int length, std::string& out);
void appendDecoded(unsigned int codePage, const char* bytes, std::size_t count, CString& out);

}  // namespace fieldscan

#endif
