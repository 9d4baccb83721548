// CString. Up to 7 units lie in the object; longer texts in a block of the heap, after a record of length and
// capacity.
#include <fieldscan/framework/array.h>
#include <fieldscan/framework/standard.h>
#include <fieldscan/framework/string.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <new>
#include <string>

#include "platform/system.h"

namespace {

constexpr int kMostUnits = std::numeric_limits<int>::max() - 1;

const unsigned short* unitsOf(const char16_t* text) { return reinterpret_cast<const unsigned short*>(text); }

int lengthOf(const unsigned short* text) {
    int length = 0;
    if (text)
        while (text[length])
            ++length;
    return length;
}

bool isSpace(unsigned short unit) { return (unit >= 9 && unit <= 13) || unit == ' ' || unit == 0x3000; }

unsigned short lower(unsigned short unit) {
    return unit >= 'A' && unit <= 'Z' ? static_cast<unsigned short>(unit + 32) : unit;
}

unsigned short upper(unsigned short unit) {
    return unit >= 'a' && unit <= 'z' ? static_cast<unsigned short>(unit - 32) : unit;
}

void copyUnits(unsigned short* to, const unsigned short* from, int count) {
    if (count > 0)
        std::memmove(to, from, static_cast<std::size_t>(count) * sizeof(unsigned short));
}

}  // namespace

void fieldscan::throwOutOfMemory() { throw std::bad_alloc(); }

std::size_t fieldscan::WriteUtf8(const CString& text, char* out) {
    std::string bytes;
    system::appendAnsi(system::kUtf8, text.GetString(), text.GetLength(), bytes);
    std::copy(bytes.begin(), bytes.end(), out);
    return bytes.size();
}

CString fieldscan::ReadUtf8(const char* first, const char* last) {
    CString text;
    system::appendWide(system::kUtf8, first, static_cast<std::size_t>(last - first), text);
    return text;
}

CString::CString(const CString& other) : CString() { *this = other; }

CString::CString(CString&& other) noexcept : CString() { std::swap(m_units, other.m_units); }

CString::CString(const unsigned short* text) : CString() { assign(text, lengthOf(text)); }

CString::CString(const char16_t* text) : CString(unitsOf(text)) {}

CString::CString(const unsigned short* text, int length) : CString() {
    if (text && length > 0)
        assign(text, length);
}

CString::CString(const char16_t* text, int length) : CString(unitsOf(text), length) {}

CString::CString(const char* text) : CString() {
    using namespace fieldscan;
    if (text)
        system::appendWide(system::ansiCodePage(), text, std::strlen(text), *this);
}

#if defined(_WIN32)
CString::CString(const wchar_t* text) : CString(reinterpret_cast<const unsigned short*>(text)) {}
#endif

CString::CString(unsigned short unit, int count) : CString() {
    if (count < 1)
        return;
    grow(count);
    std::fill_n(units(), count, unit);
    setLength(count);
}

CString& CString::operator=(const CString& other) {
    if (!isOutside() && !other.isOutside())
        std::memmove(m_units, other.m_units, sizeof m_units);
    else if (this != &other)
        assign(other.GetString(), other.GetLength());
    return *this;
}

CString& CString::operator=(CString&& other) noexcept {
    if (this != &other) {
        Empty();
        std::swap(m_units, other.m_units);
    }
    return *this;
}

CString& CString::operator=(unsigned short unit) { return *this = CString(unit); }

void CString::Empty() {
    if (isOutside())
        release();
    m_units[0] = 0;
    m_units[kInside] = kInside;
}

void CString::release() { ::operator delete(outside()); }

CString::Outside* CString::makeOutside(int capacity) {
    constexpr std::size_t kMost = (PTRDIFF_MAX - sizeof(Outside)) / sizeof(unsigned short);
    const std::size_t units = static_cast<std::size_t>(capacity) + 1;
    if (units > kMost)  // more than 32-bit addresses reach
        fieldscan::throwOutOfMemory();
    Outside* const storage =
        static_cast<Outside*>(::operator new(sizeof(Outside) + units * sizeof(unsigned short)));
    storage->capacity = capacity;
    return storage;
}

void CString::setOutside(Outside* storage) {
    void* const address = storage;
    std::memcpy(m_units, &address, sizeof address);
    m_units[kInside] = kInside + 1;
}

void CString::setLength(int length) {
    units()[length] = 0;
    if (isOutside())
        outside()->length = length;
    else
        m_units[kInside] = static_cast<unsigned short>(kInside - length);
}

// Makes room for `length` units; at least half as much again, so that the time for appending stays linear.
void CString::grow(int length) {
    const int before = capacity();
    if (length <= before)
        return;
    Outside* const storage = makeOutside(std::max(length, before < kMostUnits / 2 ? before + before / 2 : 0));
    storage->length = GetLength();
    copyUnits(storage->text(), GetString(), GetLength() + 1);
    if (isOutside())
        release();
    setOutside(storage);
}

// `from` may lie in this text.
void CString::assign(const unsigned short* from, int length) {
    if (length > capacity()) {
        Outside* const storage = makeOutside(length);
        copyUnits(storage->text(), from, length);
        if (isOutside())
            release();
        setOutside(storage);
    } else {
        copyUnits(units(), from, length);
    }
    setLength(length);
}

void CString::SetAt(int position, unsigned short unit) {
    if (position >= 0 && position < GetLength())
        units()[position] = unit;
}

CString CString::Left(int count) const { return Mid(0, count); }

CString CString::Right(int count) const {
    const int length = GetLength();
    return Mid(length - std::min(std::max(count, 0), length));
}

CString CString::Mid(int first) const { return Mid(first, GetLength()); }

CString CString::Mid(int first, int count) const {
    first = std::max(first, 0);
    if (first >= GetLength() || count <= 0)
        return CString();
    return CString(GetString() + first, std::min(count, GetLength() - first));
}

int CString::Find(unsigned short unit, int start) const {
    const unsigned short* const text = GetString();
    const int length = GetLength();
    for (int i = std::max(start, 0); i < length; ++i)
        if (text[i] == unit)
            return i;
    return -1;
}

int CString::Find(const CString& part, int start) const {
    start = std::max(start, 0);
    if (start > GetLength())
        return -1;
    const unsigned short* const text = GetString();
    const unsigned short* const end = text + GetLength();
    const unsigned short* const found =
        std::search(text + start, end, part.GetString(), part.GetString() + part.GetLength());
    return found == end && !part.IsEmpty() ? -1 : static_cast<int>(found - text);
}

int CString::FindOneOf(const CString& wanted) const {
    for (int i = 0; i < GetLength(); ++i)
        if (wanted.Find(GetString()[i]) >= 0)
            return i;
    return -1;
}

int CString::ReverseFind(unsigned short unit) const {
    const unsigned short* const text = GetString();
    for (int i = GetLength() - 1; i >= 0; --i)
        if (text[i] == unit)
            return i;
    return -1;
}

CString& CString::TrimLeft() {
    int blanks = 0;
    while (blanks < GetLength() && isSpace(GetString()[blanks]))
        ++blanks;
    Delete(0, blanks);
    return *this;
}

CString& CString::TrimRight() {
    int length = GetLength();
    while (length > 0 && isSpace(GetString()[length - 1]))
        --length;
    setLength(length);
    return *this;
}

CString& CString::Trim() { return TrimRight().TrimLeft(); }

CString& CString::MakeUpper() {
    std::transform(units(), units() + GetLength(), units(), upper);
    return *this;
}

CString& CString::MakeLower() {
    std::transform(units(), units() + GetLength(), units(), lower);
    return *this;
}

int CString::Replace(unsigned short from, unsigned short to) {
    unsigned short* const text = units();
    int count = 0;
    for (int i = 0, length = GetLength(); i < length; ++i) {
        if (text[i] == from) {
            text[i] = to;
            ++count;
        }
    }
    return count;
}

int CString::Insert(int position, const CString& text) {
    position = std::min(std::max(position, 0), GetLength());
    CString result = Left(position);
    result += text;
    result.Append(GetString() + position, GetLength() - position);
    *this = std::move(result);
    return GetLength();
}

int CString::Delete(int position, int count) {
    const int length = GetLength();
    if (position >= 0 && position < length && count > 0) {
        count = std::min(count, length - position);
        unsigned short* const from = units() + position;
        copyUnits(from, from + count, length - position - count);
        setLength(length - count);
    }
    return GetLength();
}

CString& CString::operator+=(const CString& text) {
    Append(text.GetString(), text.GetLength());
    return *this;
}

CString& CString::operator+=(unsigned short unit) {
    Append(&unit, 1);
    return *this;
}

void CString::Append(const unsigned short* text, int length) {
    if (!text || length < 1)
        return;
    const int before = GetLength();
    if (length > kMostUnits - before)
        fieldscan::throwOutOfMemory();
    if (before + length > capacity() && text >= units() && text <= units() + before) {
        const CString copy(text, length);  // the growth would free it
        Append(copy.GetString(), length);
        return;
    }
    grow(before + length);
    copyUnits(units() + before, text, length);
    setLength(before + length);
}

unsigned short* CString::GetBuffer(int length) {
    grow(length);
    return units();
}

void CString::ReleaseBuffer(int length) {
    const int most = capacity();
    units()[most] = 0;
    setLength(length < 0 ? lengthOf(units()) : std::min(length, most));
}

int CString::Compare(const CString& other) const {
    const unsigned short* const a = GetString();
    const unsigned short* const b = other.GetString();
    const int shared = std::min(GetLength(), other.GetLength());
    for (int i = 0; i < shared; ++i)
        if (a[i] != b[i])
            return a[i] < b[i] ? -1 : 1;
    return GetLength() - other.GetLength();
}

int CString::CompareNoCase(const CString& other) const {
    return CString(*this).MakeLower().Compare(CString(other).MakeLower());
}

CString operator+(const CString& a, const CString& b) {
    CString sum(a);
    sum += b;
    return sum;
}
