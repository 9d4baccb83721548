// The code page of files, named by the environment variable FIELDSCAN_ANSI_CODEPAGE: POSIX systems have no
// such setting. All pages are compiled in.
#include "platform/framework/code_page.h"

#include <cstdlib>

#include "platform/system.h"

namespace fieldscan {
namespace system {
namespace {

struct PageName {
    const char* name;
    unsigned int page;
};

constexpr PageName kPageNames[] = {
    {"UTF-8", kUtf8},           {"UTF8", kUtf8},
    {"CP65001", kUtf8},         {"65001", kUtf8},
    {"CP932", kShiftJis},       {"932", kShiftJis},
    {"SHIFT_JIS", kShiftJis},   {"SHIFT-JIS", kShiftJis},
    {"SJIS", kShiftJis},        {"MS932", kShiftJis},
    {"WINDOWS-31J", kShiftJis}, {"CP1252", kWestern},
    {"1252", kWestern},         {"WINDOWS-1252", kWestern},
    {"ISO-8859-1", kLatin1},    {"LATIN1", kLatin1},
    {"CP28591", kLatin1},       {"28591", kLatin1},
};

// Not toupper, which depends on the locale.
char upper(char letter) { return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 32) : letter; }

bool sameName(const char* text, const char* name) {
    while (*text && upper(*text) == *name) {
        ++text;
        ++name;
    }
    return *text == *name;
}

}  // namespace

unsigned int ansiCodePage() {
    if (const char* text = std::getenv("FIELDSCAN_ANSI_CODEPAGE"))
        for (const PageName& entry : kPageNames)
            if (sameName(text, entry.name))
                return entry.page;
    return kUtf8;
}

void appendAnsi(unsigned int codePage, const unsigned short* text, int length, std::string& out) {
    appendEncoded(codePage, text, length, out);
}

void appendWide(unsigned int codePage, const char* bytes, std::size_t count, CString& out) {
    appendDecoded(codePage, bytes, count, out);
}

}  // namespace system
}  // namespace fieldscan
