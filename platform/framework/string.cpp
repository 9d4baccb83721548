#include <fieldscan/framework/string.h>

#include <algorithm>
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

CString::CString() noexcept : m_text(m_inside), m_length(0), m_capacity(kInside - 1) { m_inside[0] = 0; }

CString::CString(const CString& other) : CString() { assign(other.m_text, other.m_length); }

CString::CString(CString&& other) noexcept : CString() { take(other); }

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
    std::fill_n(m_text, count, unit);
    setLength(count);
}

CString::~CString() { release(); }

CString& CString::operator=(const CString& other) {
    if (this != &other)
        assign(other.m_text, other.m_length);
    return *this;
}

CString& CString::operator=(CString&& other) noexcept {
    if (this != &other) {
        Empty();
        take(other);
    }
    return *this;
}

CString& CString::operator=(unsigned short unit) { return *this = CString(unit); }

void CString::Empty() {
    release();
    m_text = m_inside;
    m_capacity = kInside - 1;
    setLength(0);
}

void CString::release() {
    if (m_text != m_inside)
        delete[] m_text;
}

// This text is empty and holds no storage.
void CString::take(CString& other) noexcept {
    if (other.m_text == other.m_inside) {
        copyUnits(m_inside, other.m_inside, other.m_length);
    } else {
        m_text = other.m_text;
        m_capacity = other.m_capacity;
        other.m_text = other.m_inside;
        other.m_capacity = kInside - 1;
    }
    setLength(other.m_length);
    other.setLength(0);
}

void CString::setLength(int length) {
    m_length = length;
    m_text[length] = 0;
}

// Room for `length` units; a text that grows gets half as much again, so that appending stays linear.
void CString::grow(int length) {
    if (length <= m_capacity)
        return;
    const int capacity = std::max(length, m_capacity < kMostUnits / 2 ? m_capacity + m_capacity / 2 : 0);
    unsigned short* text = new unsigned short[static_cast<std::size_t>(capacity) + 1];
    copyUnits(text, m_text, m_length + 1);
    release();
    m_text = text;
    m_capacity = capacity;
}

// `text` may lie in this object.
void CString::assign(const unsigned short* text, int length) {
    if (length > m_capacity) {
        unsigned short* fresh = new unsigned short[static_cast<std::size_t>(length) + 1];
        copyUnits(fresh, text, length);
        release();
        m_text = fresh;
        m_capacity = length;
    } else {
        copyUnits(m_text, text, length);
    }
    setLength(length);
}

void CString::SetAt(int position, unsigned short unit) {
    if (inside(position))
        m_text[position] = unit;
}

CString CString::Left(int count) const { return Mid(0, count); }

CString CString::Right(int count) const { return Mid(m_length - std::min(std::max(count, 0), m_length)); }

CString CString::Mid(int first) const { return Mid(first, m_length); }

CString CString::Mid(int first, int count) const {
    first = std::max(first, 0);
    if (first >= m_length || count <= 0)
        return CString();
    return CString(m_text + first, std::min(count, m_length - first));
}

int CString::Find(unsigned short unit, int start) const {
    for (int i = std::max(start, 0); i < m_length; ++i)
        if (m_text[i] == unit)
            return i;
    return -1;
}

int CString::Find(const CString& part, int start) const {
    start = std::max(start, 0);
    if (start > m_length)
        return -1;
    const unsigned short* const end = m_text + m_length;
    const unsigned short* const from = m_text + start;
    const unsigned short* const found = std::search(from, end, part.m_text, part.m_text + part.m_length);
    return found == end && !part.IsEmpty() ? -1 : static_cast<int>(found - m_text);
}

int CString::FindOneOf(const CString& units) const {
    for (int i = 0; i < m_length; ++i)
        if (units.Find(m_text[i]) >= 0)
            return i;
    return -1;
}

int CString::ReverseFind(unsigned short unit) const {
    for (int i = m_length - 1; i >= 0; --i)
        if (m_text[i] == unit)
            return i;
    return -1;
}

CString& CString::TrimLeft() {
    int blanks = 0;
    while (blanks < m_length && isSpace(m_text[blanks]))
        ++blanks;
    Delete(0, blanks);
    return *this;
}

CString& CString::TrimRight() {
    int length = m_length;
    while (length > 0 && isSpace(m_text[length - 1]))
        --length;
    setLength(length);
    return *this;
}

CString& CString::Trim() { return TrimRight().TrimLeft(); }

CString& CString::MakeUpper() {
    std::transform(m_text, m_text + m_length, m_text, upper);
    return *this;
}

CString& CString::MakeLower() {
    std::transform(m_text, m_text + m_length, m_text, lower);
    return *this;
}

int CString::Replace(unsigned short from, unsigned short to) {
    int count = 0;
    for (int i = 0; i < m_length; ++i) {
        if (m_text[i] == from) {
            m_text[i] = to;
            ++count;
        }
    }
    return count;
}

int CString::Insert(int position, const CString& text) {
    position = std::min(std::max(position, 0), m_length);
    CString result = Left(position);
    result += text;
    result.Append(m_text + position, m_length - position);
    *this = std::move(result);
    return m_length;
}

int CString::Delete(int position, int count) {
    if (inside(position) && count > 0) {
        count = std::min(count, m_length - position);
        copyUnits(m_text + position, m_text + position + count, m_length - position - count);
        setLength(m_length - count);
    }
    return m_length;
}

CString& CString::operator+=(const CString& text) {
    Append(text.m_text, text.m_length);
    return *this;
}

CString& CString::operator+=(unsigned short unit) {
    Append(&unit, 1);
    return *this;
}

void CString::Append(const unsigned short* text, int length) {
    if (!text || length < 1)
        return;
    if (length > kMostUnits - m_length)
        throw std::bad_alloc();
    if (m_length + length > m_capacity && text >= m_text && text <= m_text + m_length) {
        const CString copy(text, length);  // the growth would free it
        Append(copy.m_text, length);
        return;
    }
    grow(m_length + length);
    copyUnits(m_text + m_length, text, length);
    setLength(m_length + length);
}

unsigned short* CString::GetBuffer(int length) {
    grow(length);
    return m_text;
}

void CString::ReleaseBuffer(int length) {
    m_text[m_capacity] = 0;
    setLength(length < 0 ? lengthOf(m_text) : std::min(length, m_capacity));
}

int CString::Compare(const CString& other) const {
    const int shared = std::min(m_length, other.m_length);
    for (int i = 0; i < shared; ++i)
        if (m_text[i] != other.m_text[i])
            return m_text[i] < other.m_text[i] ? -1 : 1;
    return m_length - other.m_length;
}

int CString::CompareNoCase(const CString& other) const {
    return CString(*this).MakeLower().Compare(CString(other).MakeLower());
}

CString operator+(const CString& a, const CString& b) {
    CString sum(a);
    sum += b;
    return sum;
}
