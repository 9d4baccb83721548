// The ANSI code page of the system. Its conversions serve only the pages that are not compiled in.
#include "platform/framework/code_page.h"

#include "platform/system.h"
#include "platform/windows/api.h"

namespace fieldscan {
namespace system {

unsigned int ansiCodePage() { return GetACP(); }

void appendAnsi(unsigned int codePage, const unsigned short* text, int length, std::string& out) {
    if (isCompiledIn(codePage)) {
        appendEncoded(codePage, text, length, out);
        return;
    }
    for (int i = 0; i < length; ++i) {
        const wchar_t unit = text[i];
        char bytes[8];
        const int count =
            WideCharToMultiByte(codePage, WC_NO_BEST_FIT_CHARS, &unit, 1, bytes, sizeof bytes, "?", nullptr);
        out.append(count > 0 ? bytes : "?", static_cast<std::size_t>(count > 0 ? count : 1));
    }
}

void appendWide(unsigned int codePage, const char* bytes, std::size_t count, CString& out) {
    if (isCompiledIn(codePage)) {
        appendDecoded(codePage, bytes, count, out);
        return;
    }
    for (std::size_t i = 0; i < count;) {
        const unsigned char byte = static_cast<unsigned char>(bytes[i]);
        int length = i + 1 < count && IsDBCSLeadByteEx(codePage, byte) ? 2 : 1;
        wchar_t unit = 0;
        if (MultiByteToWideChar(codePage, MB_ERR_INVALID_CHARS, bytes + i, length, &unit, 1) != 1) {
            unit = byte;
            length = 1;
        }
        out += static_cast<unsigned short>(unit);
        i += static_cast<std::size_t>(length);
    }
}

}  // namespace system
}  // namespace fieldscan
