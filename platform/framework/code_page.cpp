// UTF-8, code page 932 by a table of both directions, 1252 and Latin-1, one character after the other; runs
// of ASCII are copied.
#include "platform/framework/code_page.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "platform/system.h"

namespace fieldscan {
namespace {

using system::kLatin1;
using system::kShiftJis;
using system::kUtf8;
using system::kWestern;

// Bytes as unsigned values: whether `char` is signed depends on the processor.
using Byte = unsigned char;

constexpr unsigned int kBadCharacter = 0xFFFD;

// ---- UTF-8 ----

std::size_t readUtf8(const Byte* bytes, std::size_t left, unsigned int& character) {
    const Byte first = bytes[0];
    const std::size_t length = first < 0xC2 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : first < 0xF5 ? 4 : 1;
    character = first;
    if (length == 1 || length > left)
        return 1;
    unsigned int value = first & (0x7Fu >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((bytes[i] & 0xC0) != 0x80)
            return 1;
        value = value << 6 | (bytes[i] & 0x3Fu);
    }
    const bool isSurrogate = value >= 0xD800 && value < 0xE000;
    if (isSurrogate || value > 0x10FFFF || (length == 3 && value < 0x800) || (length == 4 && value < 0x10000))
        return 1;
    character = value;
    return length;
}

int writeUtf8(unsigned int character, Byte* to) {
    if (character >= 0xD800 && character < 0xE000)
        character = kBadCharacter;
    const auto tail = [character](int shift) {
        return static_cast<Byte>(0x80 | (character >> shift & 0x3F));
    };
    if (character < 0x800) {
        to[0] = static_cast<Byte>(0xC0 | character >> 6);
        to[1] = tail(0);
        return 2;
    }
    if (character < 0x10000) {
        to[0] = static_cast<Byte>(0xE0 | character >> 12);
        to[1] = tail(6);
        to[2] = tail(0);
        return 3;
    }
    to[0] = static_cast<Byte>(0xF0 | character >> 18);
    to[1] = tail(12);
    to[2] = tail(6);
    to[3] = tail(0);
    return 4;
}

// ---- Page 1252: Latin-1 except for the bytes 80 to 9F ----

// clang-format off
constexpr char16_t kWesternCells[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};
// clang-format on

unsigned int readWestern(Byte byte) {
    return byte >= 0x80 && byte < 0xA0 ? kWesternCells[byte - 0x80] : byte;
}

int writeWestern(unsigned int character, Byte* to) {
    const char16_t* end = kWesternCells + 32;
    const char16_t* cell = std::find(kWesternCells, end, character);
    if (cell != end)
        *to = static_cast<Byte>(0x80 + (cell - kWesternCells));
    else
        *to = static_cast<Byte>(character >= 0xA0 && character <= 0xFF ? character : '?');
    return 1;
}

// ---- Page 932 ----

constexpr int kTrails = 188;                 // 40 to 7E and 80 to FC
constexpr unsigned int kUserCells = 0xE000;  // lead bytes F0 to F9, row after row
constexpr int kUserRows = 10;

struct Row {
    Byte lead;
    char16_t cells[kTrails + 1];
};

constexpr Row kRows[] = {
#include "platform/framework/cp932_table.inc"
};

// Position in a row; -1 for a byte that is no trail byte.
int trailPosition(Byte byte) {
    if (byte < 0x40 || byte == 0x7F || byte > 0xFC)
        return -1;
    return byte < 0x7F ? byte - 0x40 : byte - 0x41;
}

// The table by bytes and by characters. In static memory: making it cannot fail.
struct ShiftJisIndex {
    const char16_t* cells[256] = {};     // by lead byte
    unsigned short bytes[0x10000] = {};  // by character; 0: the page lacks it

    ShiftJisIndex() {
        for (const Row& row : kRows) {
            cells[row.lead] = row.cells;
            for (int i = 0; i < kTrails; ++i)
                if (row.cells[i] != kBadCharacter)
                    enter(row.cells[i], row.lead, i);
        }
        for (int i = 0; i < kUserRows * kTrails; ++i)
            enter(kUserCells + static_cast<unsigned int>(i), 0xF0 + i / kTrails, i % kTrails);
        for (int byte = 0x80; byte <= 0xFF; ++byte)
            if (const unsigned int character = single(static_cast<Byte>(byte)))
                bytes[character] = static_cast<unsigned short>(byte);
    }

    void enter(unsigned int character, int lead, int position) {
        const int trail = position + (position < 0x3F ? 0x40 : 0x41);
        if (!bytes[character])
            bytes[character] = static_cast<unsigned short>(lead << 8 | trail);
    }

    // The character of a single byte from 80 up; 0 for a lead byte.
    static unsigned int single(Byte byte) {
        if (byte == 0x80)
            return 0x80;
        if (byte == 0xA0)
            return 0xF8F0;
        if (byte >= 0xFD)
            return 0xF8F1u + byte - 0xFD;
        return byte > 0xA0 && byte < 0xE0 ? 0xFF61u + byte - 0xA1 : 0;
    }
};

const ShiftJisIndex& shiftJis() {
    static const ShiftJisIndex index;
    return index;
}

std::size_t readShiftJis(const Byte* bytes, std::size_t left, unsigned int& character) {
    const Byte lead = bytes[0];
    character = ShiftJisIndex::single(lead);
    if (character)
        return 1;
    character = lead;
    const int position = left > 1 ? trailPosition(bytes[1]) : -1;
    if (position < 0)
        return 1;
    if (lead >= 0xF0 && lead < 0xF0 + kUserRows) {
        character = kUserCells + static_cast<unsigned int>((lead - 0xF0) * kTrails + position);
        return 2;
    }
    const char16_t* cells = shiftJis().cells[lead];
    if (!cells || cells[position] == kBadCharacter)
        return 1;
    character = cells[position];
    return 2;
}

int writeShiftJis(unsigned int character, Byte* to) {
    const unsigned int bytes = character > 0xFFFF ? 0u : shiftJis().bytes[character];
    if (bytes > 0xFF) {
        to[0] = static_cast<Byte>(bytes >> 8);
        to[1] = static_cast<Byte>(bytes & 0xFF);
        return 2;
    }
    to[0] = static_cast<Byte>(bytes ? bytes : '?');
    return 1;
}

// ---- A character of any page, other than ASCII, which all of them have at the same bytes ----

// Returns how many bytes the character takes.
std::size_t readCharacter(unsigned int codePage, const Byte* bytes, std::size_t left,
                          unsigned int& character) {
    switch (codePage) {
        case kShiftJis:
            return readShiftJis(bytes, left, character);
        case kWestern:
            character = readWestern(*bytes);
            return 1;
        case kLatin1:
            character = *bytes;
            return 1;
        default:
            return readUtf8(bytes, left, character);
    }
}

// Returns how many bytes it wrote, 4 at most.
int writeCharacter(unsigned int codePage, unsigned int character, Byte* to) {
    switch (codePage) {
        case kShiftJis:
            return writeShiftJis(character, to);
        case kWestern:
            return writeWestern(character, to);
        case kLatin1:
            *to = static_cast<Byte>(character <= 0xFF ? character : '?');
            return 1;
        default:
            return writeUtf8(character, to);
    }
}

bool isAscii(const Byte* text, std::size_t count) {
    std::uint64_t eight = 0;
    for (; count >= sizeof eight; text += sizeof eight, count -= sizeof eight) {
        std::memcpy(&eight, text, sizeof eight);
        if (eight & 0x8080808080808080)
            return false;
    }
    unsigned int all = 0;
    for (std::size_t i = 0; i < count; ++i)
        all |= text[i];
    return all < 0x80;
}

constexpr int kChunk = 256;  // units or bytes that are converted before they are appended

}  // namespace

bool isCompiledIn(unsigned int codePage) {
    return codePage == kUtf8 || codePage == kShiftJis || codePage == kWestern || codePage == kLatin1;
}

void appendEncoded(unsigned int codePage, const unsigned short* text, int length, std::string& out) {
    Byte bytes[kChunk];
    int filled = 0;
    const auto flush = [&] {
        out.append(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(filled));
        filled = 0;
    };
    for (int i = 0; i < length;) {
        if (filled > kChunk - 4)
            flush();
        unsigned int character = text[i++];
        if (character < 0x80) {
            bytes[filled++] = static_cast<Byte>(character);
            continue;
        }
        if (character >= 0xD800 && character < 0xDC00 && i < length && text[i] >= 0xDC00 && text[i] < 0xE000)
            character = 0x10000 + ((character - 0xD800) << 10) + (text[i++] - 0xDC00u);
        filled += writeCharacter(codePage, character, bytes + filled);
    }
    flush();
}

void appendDecoded(unsigned int codePage, const char* bytes, std::size_t count, CString& out) {
    const Byte* text = reinterpret_cast<const Byte*>(bytes);
    if (count <= kChunk && isAscii(text, count)) {
        const int before = out.GetLength();
        const int after = before + static_cast<int>(count);
        std::copy(text, text + count, out.GetBuffer(after) + before);
        out.ReleaseBuffer(after);
        return;
    }
    unsigned short units[kChunk];
    int filled = 0;
    const auto flush = [&] {
        out.Append(units, filled);
        filled = 0;
    };
    for (std::size_t i = 0; i < count;) {
        if (filled > kChunk - 2)
            flush();
        if (text[i] < 0x80) {
            units[filled++] = text[i++];
            continue;
        }
        unsigned int character = 0;
        i += readCharacter(codePage, text + i, count - i, character);
        if (character > 0xFFFF) {
            units[filled++] = static_cast<unsigned short>(0xD800 + ((character - 0x10000) >> 10));
            character = 0xDC00 + (character & 0x3FF);
        }
        units[filled++] = static_cast<unsigned short>(character);
    }
    flush();
}

}  // namespace fieldscan
