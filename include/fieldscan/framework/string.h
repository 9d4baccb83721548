// CString: text in UTF-16, a value.
#ifndef FIELDSCAN_FRAMEWORK_STRING_H
#define FIELDSCAN_FRAMEWORK_STRING_H

#include <fieldscan/export.h>
#include <fieldscan/framework/moves_as_bytes.h>

#include <cstddef>
#include <cstring>
#include <iosfwd>
#include <type_traits>

namespace fieldscan {
// For operators that take an integer of any type. With one fixed type, text[0] and text + u'a' would be
// ambiguous: a CString converts to an address, which has these operators too.
template <class Type>
using IfInteger = typename std::enable_if<std::is_integral<Type>::value>::type;

// For the types whose values are units of a text, and for the numbers that are not: an integer 5 would be
// appended as the control character 5.
template <class Type>
struct IsUnit : std::false_type {};
template <>
struct IsUnit<unsigned short> : std::true_type {};
template <>
struct IsUnit<char> : std::true_type {};
template <>
struct IsUnit<char16_t> : std::true_type {};
template <>
struct IsUnit<wchar_t> : std::true_type {};
template <class Type>
using IfUnit = typename std::enable_if<IsUnit<Type>::value>::type;
template <class Type>
using IfNumber = typename std::enable_if<(std::is_arithmetic<Type>::value || std::is_enum<Type>::value) &&
                                         !IsUnit<Type>::value>::type;
}  // namespace fieldscan

// Text as a sequence of UTF-16 units (unsigned short), closed by a zero unit that is not part of it. Lengths
// and positions count units; a character outside the basic plane has two. Copies share nothing. Up to 7 units
// (most point names) lie in the object itself, which has 16 bytes.
//
// A read at a position outside the text gives 0, a write there is ignored; Left, Mid and Right return the
// part of the range that the text has. A null pointer counts as the empty text everywhere. The only failure
// is memory exhaustion, std::bad_alloc, which leaves the text unchanged; it ends a program that is compiled
// without exceptions. fieldscan/framework/standard.h joins it to std::string, streams and hash tables.
class FIELDSCAN_API CString {
public:
    CString() noexcept : m_units{0, 0, 0, 0, 0, 0, 0, kInside} {}
    CString(const CString& other);
    CString(CString&& other) noexcept;  // leaves `other` empty
    // Text up to its zero unit.
    CString(std::nullptr_t) noexcept : CString() {}
    CString(const unsigned short* text);
    CString(const char16_t* text);
    CString(const char* text);  // 8-bit text in the ANSI code page (docs/architecture.md, Text)
#if defined(_WIN32)
    CString(const wchar_t* text);
#endif
    CString(const unsigned short* text, int length);  // the first `length` units, zero units included
    CString(const char16_t* text, int length);        // the same
    // The unit `count` times; the empty text for a count below 1.
    explicit CString(unsigned short unit, int count = 1);
    ~CString() {
        if (isOutside())
            release();
    }

    CString& operator=(const CString& other);
    CString& operator=(CString&& other) noexcept;
    CString& operator=(unsigned short unit);  // the text of this one unit
    template <class Number, typename = fieldscan::IfNumber<Number>>
    CString& operator=(Number) = delete;  // a number is no character

    // Number of units.
    int GetLength() const { return isOutside() ? outside()->length : kInside - m_units[kInside]; }
    bool IsEmpty() const { return GetLength() == 0; }
    void Empty();  // frees the storage too
    // The units with the closing zero; valid until the text changes.
    operator const unsigned short*() const { return GetString(); }
    const unsigned short* GetString() const { return isOutside() ? outside()->text() : m_units; }

    // The unit at a position.
    unsigned short GetAt(int position) const { return (*this)[position]; }
    template <class Integer, typename = fieldscan::IfInteger<Integer>>
    unsigned short operator[](Integer position) const {
        const long long at = static_cast<long long>(position);
        return at >= 0 && at < GetLength() ? GetString()[at] : static_cast<unsigned short>(0);
    }
    void SetAt(int position, unsigned short unit);

    // Parts: the first units, the last ones, those from a position on. A negative count or position counts as
    // 0.
    CString Left(int count) const;
    CString Right(int count) const;
    CString Mid(int first) const;
    CString Mid(int first, int count) const;

    // Position of the first match at or after `start` (ReverseFind: of the last one), -1 when there is none.
    // The empty text is found at `start`, up to the end of the text. FindOneOf finds any unit of `wanted`.
    int Find(unsigned short unit, int start = 0) const;
    int Find(const CString& part, int start = 0) const;
    int FindOneOf(const CString& wanted) const;
    int ReverseFind(unsigned short unit) const;

    // Remove white space: tab, line feed, vertical tab, form feed, carriage return, blank and the ideographic
    // blank U+3000, in every locale.
    CString& TrimLeft();
    CString& TrimRight();
    CString& Trim();

    // Change only the 26 letters of ASCII.
    CString& MakeUpper();
    CString& MakeLower();

    int Replace(unsigned short from, unsigned short to);  // returns the number of units replaced
    int Insert(int position, const CString& text);        // returns the new length
    int Delete(int position, int count = 1);              // returns the new length

    // Append text or units.
    CString& operator+=(const CString& text);
    CString& operator+=(unsigned short unit);
    template <class Number, typename = fieldscan::IfNumber<Number>>
    CString& operator+=(Number) = delete;  // a number is no character
    void Append(const unsigned short* text, int length);

    // The text itself, to be written to, with room for `length` units and a closing zero. ReleaseBuffer makes
    // the first `length` units the text; -1: those before the first zero.
    unsigned short* GetBuffer(int length);
    void ReleaseBuffer(int length = -1);

    // Negative, 0 or positive by the order of unit values. CompareNoCase ignores the case of ASCII letters.
    int Compare(const CString& other) const;
    int CompareNoCase(const CString& other) const;

private:
    // Precedes the units of a text outside the object.
    struct Outside {
        unsigned short* text() { return reinterpret_cast<unsigned short*>(this + 1); }
        int length;
        int capacity;  // units that fit, besides the closing zero
    };
    enum : int { kInside = 7 };  // units that fit into the object

    bool isOutside() const { return m_units[kInside] > kInside; }
    Outside* outside() const {
        void* address = nullptr;
        std::memcpy(&address, m_units, sizeof address);
        return static_cast<Outside*>(address);
    }
    unsigned short* units() { return const_cast<unsigned short*>(GetString()); }
    int capacity() const { return isOutside() ? outside()->capacity : kInside; }
    static Outside* makeOutside(int capacity);
    void setOutside(Outside* storage);
    void assign(const unsigned short* from, int length);
    void grow(int length);
    void setLength(int length);
    void release();

    // The text and its closing zero. The last unit is the number of units that still fit: 0, the closing
    // zero, for a text of 7. It is above 7 for a text outside the object, whose address is in the first units
    // then.
    alignas(void*) unsigned short m_units[kInside + 1];
};

// The first text followed by the second.
FIELDSCAN_API CString operator+(const CString& a, const CString& b);

// The text followed by one unit, or after it.
template <class Unit, typename = fieldscan::IfUnit<Unit>>
CString operator+(const CString& a, Unit unit) {
    return CString(a) += static_cast<unsigned short>(unit);
}
template <class Unit, typename = fieldscan::IfUnit<Unit>>
CString operator+(Unit unit, const CString& a) {
    return CString(static_cast<unsigned short>(unit)) += a;
}

// A number is no character. Without these forms `text + 5` would be an address five units further on.
template <class Number, typename = fieldscan::IfNumber<Number>, typename = void>
CString operator+(const CString& a, Number number) = delete;
template <class Number, typename = fieldscan::IfNumber<Number>, typename = void>
CString operator+(Number number, const CString& a) = delete;

// Would print the address. <fieldscan/framework/standard.h> has the form that prints the text.
template <class Character, class Traits>
std::basic_ostream<Character, Traits>& operator<<(std::basic_ostream<Character, Traits>& stream,
                                                  const CString& text) = delete;

// By Compare. Without the forms with a pointer, addresses would be compared.
// clang-format off
inline bool operator==(const CString& a, const CString& b) { return a.Compare(b) == 0; }
inline bool operator!=(const CString& a, const CString& b) { return a.Compare(b) != 0; }
inline bool operator< (const CString& a, const CString& b) { return a.Compare(b) <  0; }
inline bool operator> (const CString& a, const CString& b) { return a.Compare(b) >  0; }
inline bool operator<=(const CString& a, const CString& b) { return a.Compare(b) <= 0; }
inline bool operator>=(const CString& a, const CString& b) { return a.Compare(b) >= 0; }
inline bool operator==(const CString& a, const unsigned short* b) { return a.Compare(b) == 0; }
inline bool operator!=(const CString& a, const unsigned short* b) { return a.Compare(b) != 0; }
inline bool operator< (const CString& a, const unsigned short* b) { return a.Compare(b) <  0; }
inline bool operator> (const CString& a, const unsigned short* b) { return a.Compare(b) >  0; }
inline bool operator<=(const CString& a, const unsigned short* b) { return a.Compare(b) <= 0; }
inline bool operator>=(const CString& a, const unsigned short* b) { return a.Compare(b) >= 0; }
inline bool operator==(const unsigned short* a, const CString& b) { return b.Compare(a) == 0; }
inline bool operator!=(const unsigned short* a, const CString& b) { return b.Compare(a) != 0; }
inline bool operator< (const unsigned short* a, const CString& b) { return b.Compare(a) >  0; }
inline bool operator> (const unsigned short* a, const CString& b) { return b.Compare(a) <  0; }
inline bool operator<=(const unsigned short* a, const CString& b) { return b.Compare(a) >= 0; }
inline bool operator>=(const unsigned short* a, const CString& b) { return b.Compare(a) <= 0; }
// clang-format on

template <>
struct fieldscan::MovesAsBytes<CString> : std::true_type {};

#endif
