// Names that count up, point codes, items of a line, fields of fixed width, double-byte characters.
#include <fieldscan/string_utilities.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>

#include "platform/framework/number_text.h"
#include "platform/framework/out_of_memory.h"
#include "platform/system.h"

using namespace fieldscan;

namespace {

// The zero of the same width as the digit `unit`, ASCII or full width; 0 for a unit that is no digit.
unsigned short zeroOfDigit(unsigned short unit) {
    for (const unsigned short zero : {u'0', u'\uFF10'})
        if (unit >= zero && unit <= zero + 9)
            return zero;
    return 0;
}

// ---- The character at the start of a text, which ends after `room` units or at a zero before that ----
// A character that does not fit into the room has a length greater than the room.

bool isLead(unsigned char byte) { return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC); }
bool isTrail(unsigned char byte) { return byte >= 0x40 && byte <= 0xFC && byte != 0x7F; }

// Bytes of the character; a byte that forms none is one of its own.
int characterLength(unsigned int codePage, const char* text, int room) {
    const auto first = static_cast<unsigned char>(*text);
    if (codePage == system::kShiftJis)
        return isLead(first) && (room < 2 || isTrail(static_cast<unsigned char>(text[1]))) ? 2 : 1;
    if (codePage != system::kUtf8)
        return 1;
    const int length = first < 0xC2 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : first < 0xF5 ? 4 : 1;
    for (int i = 1; i < std::min(length, room); ++i)
        if ((text[i] & 0xC0) != 0x80)
            return 1;
    return length;
}

// Units of the character: 2 for a surrogate pair.
int characterLength(unsigned int, const unsigned short* text, int room) {
    return (text[0] & 0xFC00) == 0xD800 && (room < 2 || (text[1] & 0xFC00) == 0xDC00) ? 2 : 1;
}

bool isWhite(unsigned int codePage, const char* character, int length) {
    CString wide;
    system::appendWide(codePage, character, static_cast<std::size_t>(length), wide);
    return wide.Trim().IsEmpty();
}

bool isWhite(unsigned int, const unsigned short* character, int length) {
    return CString(character, length).Trim().IsEmpty();
}

// Copies the field of `width` at the start of `text` without white space at its end, filled with blanks when
// `padded`. Returns its length.
template <class Unit>
int copyField(Unit* out, const Unit* text, int width, bool padded) {
    if (!out || width < 0)
        return 0;
    const unsigned int codePage = system::ansiCodePage();
    int length = 0;
    for (int at = 0; text && at < width && text[at];) {
        const int character = characterLength(codePage, text + at, width - at);
        if (character > width - at)
            break;
        if (!isWhite(codePage, text + at, character))
            length = at + character;
        at += character;
    }
    if (length > 0)
        std::memmove(out, text, static_cast<std::size_t>(length) * sizeof(Unit));
    if (padded) {
        std::fill(out + length, out + width, static_cast<Unit>(' '));
        length = width;
    }
    out[length] = 0;
    return length;
}

}  // namespace

int IncrStr(CString& text, int step) {
    return zeroIfOutOfMemory([&] {
        CString counted = text;
        long long carry = step;
        int at = text.GetLength();
        unsigned short firstZero = '0';
        while (const unsigned short zero =
                   zeroOfDigit(text[at - 1])) {  // before the start of the text it reads 0
            const long long sum = text[at - 1] - zero + carry;
            const long long digit = (sum % 10 + 10) % 10;
            counted.SetAt(--at, static_cast<unsigned short>(zero + digit));
            carry = (sum - digit) / 10;
            firstZero = zero;
        }
        if (carry < 0)
            return 0;
        for (; carry > 0; carry /= 10)
            counted.Insert(at, CString(static_cast<unsigned short>(firstZero + carry % 10)));
        text = std::move(counted);
        return 1;
    });
}

int StrPlusOne(CString& text) { return IncrStr(text, 1); }

int StrMinusOne(CString& text) { return IncrStr(text, -1); }

int IsSameCode(const CString& a, const CString& b) {
    return zeroIfOutOfMemory([&] { return CString(a).Trim() == CString(b).Trim() ? 1 : 0; });
}

int CutItemInStr(const CString& text, int index, CString& item, unsigned short separator) {
    CString found;
    const int result = zeroIfOutOfMemory([&] {
        for (int start = 0, i = 0;; ++i) {
            const int next = text.Find(separator, start);
            if (i == index) {
                found = text.Mid(start, (next < 0 ? text.GetLength() : next) - start).Trim();
                return 1;
            }
            if (next < 0)
                return 0;
            start = next + 1;
        }
    });
    item = std::move(found);
    return result;
}

int ConvUniToAscii(const unsigned short* text, char* out, int size) {
    if (!out || size < 1)
        return 0;
    const unsigned int codePage = system::ansiCodePage();
    int stored = 0;
    std::string bytes;  // of one character: so few that nothing is allocated
    while (text && *text) {
        const int units = characterLength(codePage, text, 2);
        bytes.clear();
        system::appendAnsi(codePage, text, units, bytes);
        if (static_cast<int>(bytes.size()) > size - 1 - stored)
            break;
        stored += static_cast<int>(bytes.copy(out + stored, bytes.size()));
        text += units;
    }
    out[stored] = 0;
    return stored;
}

int CStringToChar(const CString& text, char* out, int size) { return ConvUniToAscii(text, out, size); }

int CStringToInt(const CString& text) {
    return zeroIfOutOfMemory([&] {
        std::string narrow;
        system::appendAnsi(system::ansiCodePage(), text, text.GetLength(), narrow);
        return parseInt(narrow);
    });
}

int Scopy(char* out, const char* text, int width) {
    return zeroIfOutOfMemory([&] { return copyField(out, text, width, false); });
}

int TScopy(unsigned short* out, const unsigned short* text, int width) {
    return zeroIfOutOfMemory([&] { return copyField(out, text, width, false); });
}

int ScopyPad(char* out, const char* text, int width) {
    return zeroIfOutOfMemory([&] { return copyField(out, text, width, true); });
}

int TScopyPad(unsigned short* out, const unsigned short* text, int width) {
    return zeroIfOutOfMemory([&] { return copyField(out, text, width, true); });
}

int IsDbcsLead(int byte) {
    return system::ansiCodePage() == system::kShiftJis && isLead(static_cast<unsigned char>(byte)) ? 1 : 0;
}

int IsDbcsTrail(int byte) {
    return system::ansiCodePage() == system::kShiftJis && isTrail(static_cast<unsigned char>(byte)) ? 1 : 0;
}

int IsDbcsTrailAt(const char* text, int index) {
    if (system::ansiCodePage() != system::kShiftJis)
        return 0;
    long long at = 0;  // may pass the index by one
    while (text && at < index && text[at]) {
        at += characterLength(system::kShiftJis, text + at, 2);
        if (at > index)
            return 1;
    }
    return 0;
}
