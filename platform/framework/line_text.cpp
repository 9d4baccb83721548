// Lines of the text files: byte order mark, fields, white space, code page.
#include "platform/framework/line_text.h"

#include <algorithm>

#include "platform/framework/number_text.h"
#include "platform/system.h"

namespace fieldscan {

namespace {

bool isSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

bool endsLine(unsigned short unit) { return unit == '\n' || unit == '\r' || unit == 0; }

// True if `test` is true for a unit of the text, or its first one would be a byte order mark at the start of
// a file.
template <class Test>
bool hasUnit(const CString& text, Test test) {
    constexpr unsigned short kByteOrderMark = 0xFEFF;
    const unsigned short* const units = text.GetString();
    return text.GetAt(0) == kByteOrderMark || std::any_of(units, units + text.GetLength(), test);
}

}  // namespace

bool openText(CFile& file, const CString& path) {
    if (!file.Open(path, CFile::modeRead))
        return false;
    skipByteOrderMark(file);
    return true;
}

std::string_view withoutByteOrderMark(std::string_view text) {
    constexpr std::string_view kMark = "\xEF\xBB\xBF";
    const bool marked = text.substr(0, kMark.size()) == kMark && system::ansiCodePage() == system::kUtf8;
    return marked ? text.substr(kMark.size()) : text;
}

void skipByteOrderMark(CFile& file) {
    char bytes[3];
    if (file.GetPosition() == 0 && !withoutByteOrderMark({bytes, file.Read(bytes, sizeof bytes)}).empty())
        file.SeekToBegin();
}

bool hasFields(std::string_view line, int fields) {
    for (; fields > 1; --fields) {
        const std::size_t comma = line.find(',');
        if (comma == std::string_view::npos)
            return false;
        line.remove_prefix(comma + 1);
    }
    const std::string_view last = trimmed(line.substr(0, line.find(',')));
    std::size_t used = 0;
    parseDouble(last, &used);
    return used > 0 && used == last.size();
}

bool fitsLine(const CString& text) {
    return !hasUnit(text, [](unsigned short u) { return endsLine(u); });
}

bool fitsWord(const CString& text) {
    return !text.IsEmpty() && !hasUnit(text, [](unsigned short u) {
        return endsLine(u) || (u < 0x80 && isSpace(static_cast<char>(u)));
    });
}

bool fitsField(const CString& text) {
    return !hasUnit(text, [](unsigned short u) { return u == ',' || endsLine(u); });
}

bool readLine(CFile& file, std::string_view& line) {
    const char* text = nullptr;
    unsigned int length = 0;
    const bool found = file.ReadLine(text, length) == 1;
    line = std::string_view(text, length);
    return found;
}

bool readLine(CFile& file, std::string& line) {
    std::string_view view;
    const bool found = readLine(file, view);
    line = view;
    return found;
}

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && isSpace(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isSpace(text.back()))
        text.remove_suffix(1);
    return text;
}

bool isBlank(unsigned int codePage, std::string_view text) {
    if (!text.empty() && text[0] > ' ' && text[0] <= '~')
        return false;  // nearly every line
    text = trimmed(text);
    // An ideographic blank has bytes from 0x40 up in every page; digits and commas are below.
    const auto isBelow = [](char c) { return c > ' ' && c < '@'; };
    return text.empty() ||
           (static_cast<unsigned char>(text[0]) >= 0x80 && std::none_of(text.begin(), text.end(), isBelow) &&
            wideTrimmed(codePage, text).IsEmpty());
}

void setTrimmed(CString& wide, unsigned int codePage, std::string_view text) {
    text = trimmed(text);
    wide.Empty();
    system::appendWide(codePage, text.data(), text.size(), wide);
    if (static_cast<std::size_t>(wide.GetLength()) < text.size())
        wide.Trim();  // only then can there be an ideographic blank: it takes two bytes or more
}

CString wideTrimmed(unsigned int codePage, std::string_view text) {
    CString wide;
    setTrimmed(wide, codePage, text);
    return wide;
}

int splitAtCommas(std::string_view line, std::string_view* fields, int most) {
    int count = 0;
    for (;;) {
        const std::size_t comma = line.find(',');
        fields[count++] = line.substr(0, comma);
        if (comma == std::string_view::npos || count == most)
            return count;
        line.remove_prefix(comma + 1);
    }
}

}  // namespace fieldscan
