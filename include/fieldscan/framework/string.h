// CString: text in UTF-16, a value.
#ifndef FIELDSCAN_FRAMEWORK_STRING_H
#define FIELDSCAN_FRAMEWORK_STRING_H

#include <fieldscan/export.h>

#include <cstddef>
#include <cstring>
#include <type_traits>

namespace fieldscan {
// Positions and units are taken in any integer type: if one were fixed, arithmetic with the address of the
// text would match another one as well, which one depending on the width of addresses.
template <class Type>
using IfInteger = typename std::enable_if<std::is_integral<Type>::value>::type;
}  // namespace fieldscan

// Text as a sequence of UTF-16 units (unsigned short), closed by a zero unit that does not count.
// Copies share nothing. A unit is half of a character outside the basic plane; lengths and positions count
// units. Up to 7 units (most point names) are kept inside the object, of 16 bytes, without an allocation.
//
// Positions: a read at a position outside the text gives 0, a write there is dropped; Left, Mid and Right cut
// what they are asked for down to what there is. A null pointer stands for the empty text everywhere.
// Only memory exhaustion can fail: std::bad_alloc, and the text is then as it was before.
class FIELDSCAN_API CString {
public:
    CString() noexcept : m_units{0, 0, 0, 0, 0, 0, 0, kInside} {}
    CString(const CString& other);
    CString(CString&& other) noexcept;  // leaves `other` empty
    // Text up to its zero unit; a null pointer gives the empty text.
    CString(std::nullptr_t) noexcept : CString() {}
    CString(const unsigned short* text);
    CString(const char16_t* text);
    CString(const char* text);  // 8-bit text in the ANSI code page (docs/architecture.md, Text)
#if defined(_WIN32)
    CString(const wchar_t* text);
#endif
    CString(const unsigned short* text, int length);  // the first `length` units, zero units included
    CString(const char16_t* text, int length);        // the same
    // `count` times the unit; none for a count below 1.
    explicit CString(unsigned short unit, int count = 1);
    ~CString() {
        if (isOutside())
            release();
    }

    CString& operator=(const CString& other);
    CString& operator=(CString&& other) noexcept;
    CString& operator=(unsigned short unit);  // the unit alone

    // Units before the closing zero; IsEmpty when there is none.
    int GetLength() const { return isOutside() ? outside()->length : kInside - m_units[kInside]; }
    bool IsEmpty() const { return GetLength() == 0; }
    void Empty();  // frees the storage too
    // Closed by a zero unit; valid until the text changes.
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

    // Parts: the first units, the last ones, those from a position on. A negative count or position is 0.
    CString Left(int count) const;
    CString Right(int count) const;
    CString Mid(int first) const;
    CString Mid(int first, int count) const;

    // Position of the first (ReverseFind: last) match at or after `start`, -1 when there is none. The empty
    // text is found at `start` while that lies inside the text or at its end.
    int Find(unsigned short unit, int start = 0) const;
    int Find(const CString& part, int start = 0) const;
    int FindOneOf(const CString& wanted) const;
    int ReverseFind(unsigned short unit) const;

    // White space is tab, line feed, vertical tab, form feed, carriage return, blank and the ideographic
    // blank U+3000, in every locale.
    CString& TrimLeft();
    CString& TrimRight();
    CString& Trim();

    // The 26 letters of ASCII only.
    CString& MakeUpper();
    CString& MakeLower();

    int Replace(unsigned short from, unsigned short to);  // returns how many were replaced
    int Insert(int position, const CString& text);        // returns the new length
    int Delete(int position, int count = 1);              // returns the new length

    // Text or units at the end.
    CString& operator+=(const CString& text);
    CString& operator+=(unsigned short unit);
    void Append(const unsigned short* text, int length);

    // The text itself, with room for `length` units and a closing zero, to be written to; ReleaseBuffer ends
    // that and takes the first `length` units, or those before the first zero, for the text.
    unsigned short* GetBuffer(int length);
    void ReleaseBuffer(int length = -1);

    // Order of the units' values: negative, 0 or positive. CompareNoCase folds the letters of ASCII.
    int Compare(const CString& other) const;
    int CompareNoCase(const CString& other) const;

private:
    // What stands in front of a text with storage of its own.
    struct Outside {
        unsigned short* text() { return reinterpret_cast<unsigned short*>(this + 1); }
        int length;
        int capacity;  // units that fit, without the closing zero
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

    // The text and a zero behind it; the last unit holds how many more would fit, which closes a text of 7.
    // Of a text with storage of its own that is more than 7, and the address stands in front.
    alignas(void*) unsigned short m_units[kInside + 1];
};

// Both texts, one behind the other.
FIELDSCAN_API CString operator+(const CString& a, const CString& b);

// One unit behind the text or before it.
template <class Integer, typename = fieldscan::IfInteger<Integer>>
CString operator+(const CString& a, Integer unit) {
    return CString(a) += static_cast<unsigned short>(unit);
}
template <class Integer, typename = fieldscan::IfInteger<Integer>>
CString operator+(Integer unit, const CString& a) {
    return CString(static_cast<unsigned short>(unit)) += a;
}

// The forms with a pointer keep a comparison from being one of addresses.
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

#endif
