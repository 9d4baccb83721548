// CArray: a growable array, indexed from 0; CStringArray: one of strings.
#ifndef FIELDSCAN_FRAMEWORK_ARRAY_H
#define FIELDSCAN_FRAMEWORK_ARRAY_H

#include <fieldscan/export.h>
#include <fieldscan/framework/moves_as_bytes.h>
#include <fieldscan/framework/string.h>

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

namespace fieldscan {
// Throws std::bad_alloc. In the library: a program without exceptions may include this header too, and ends
// then.
[[noreturn]] FIELDSCAN_API void throwOutOfMemory();
}  // namespace fieldscan

// Elements of type T, held by value. ARG is the type by which Add, SetAt and InsertAt take one, `T&` or `T`
// by convention.
//
// Growth: unless a step is set, the capacity grows by max(4, min(1024, size / 8)) elements, or by more when
// more is needed at once; Reserve where the number is known. A smaller size destroys the surplus elements and
// keeps the storage; size 0 frees it. Elements are moved as bytes where MovesAsBytes allows it, and a storage
// of more than 64 KiB that grows gets half as much again, which GetCapacity does not show: adding one by one
// takes linear time.
//
// The storage of a new element is filled with zero bytes before the element is constructed: a member that
// its constructor does not set starts at 0. (GCC removes the zeros where it sees an inline constructor of the
// application, unless -fno-lifetime-dse is set; the constructors of the library's classes are in the
// library.)
//
// An index must lie in 0 .. GetSize() - 1, which debug builds assert; SetAtGrow and InsertAt make room
// themselves and ignore a negative index. Every change of the size makes pointers to elements invalid. Arrays
// are copied by Copy, not by =.
//
// The only failure is memory exhaustion, std::bad_alloc; it ends a program that is compiled without
// exceptions. The elements are valid then; after Reserve and SetSize, and after Add if T moves without
// throwing, they are those from before the call.
template <class T, class ARG = const T&>
class CArray {
public:
    CArray() noexcept : m_data(nullptr), m_size(0), m_capacity(0), m_growBy(0), m_room(0) {}
    ~CArray() { RemoveAll(); }
    CArray(const CArray&) = delete;
    CArray& operator=(const CArray&) = delete;

    // Number of elements; GetUpperBound is the last index, -1 for an empty array.
    int GetSize() const { return m_size; }
    int GetCount() const { return m_size; }
    int GetUpperBound() const { return m_size - 1; }
    bool IsEmpty() const { return m_size == 0; }
    // Elements that fit before the storage grows.
    int GetCapacity() const { return m_capacity; }

    // The element at an index.
    T& operator[](int index) { return ElementAt(index); }
    const T& operator[](int index) const { return GetAt(index); }
    const T& GetAt(int index) const {
        assert(index >= 0 && index < m_size);
        return m_data[index];
    }
    T& GetAt(int index) { return ElementAt(index); }
    T& ElementAt(int index) {
        assert(index >= 0 && index < m_size);
        return m_data[index];
    }
    void SetAt(int index, ARG element) { ElementAt(index) = element; }
    // The elements in contiguous storage; null for an empty array without storage.
    T* GetData() { return m_data; }
    const T* GetData() const { return m_data; }
    // For range-for and the algorithms of the standard library.
    T* begin() { return m_data; }
    T* end() { return m_data + m_size; }
    const T* begin() const { return m_data; }
    const T* end() const { return m_data + m_size; }

    // Sets the size; `growBy` >= 0 sets the growth step too (0: the rule above). A negative size changes
    // nothing.
    void SetSize(int size, int growBy = -1);
    void RemoveAll() { SetSize(0); }  // frees the storage too
    void Reserve(int capacity);       // makes room for that many elements
    void FreeExtra();                 // frees the storage beyond the size

    int Add(ARG element);                    // returns its index
    void SetAtGrow(int index, ARG element);  // SetAt; past the end the array grows
    // Inserts `count` copies of `element` at `index`; the elements from there on move up. Past the end the
    // array grows to `index` first.
    void InsertAt(int index, ARG element, int count = 1);
    // Removes up to `count` elements from `index` on.
    void RemoveAt(int index, int count = 1);

    void Copy(const CArray& other);     // becomes equal to the other
    void Swap(CArray& other) noexcept;  // exchanges the contents, not the growth steps
    int Append(const CArray& other);    // returns the index of the first element appended

private:
    // Destroys the elements that it counts when an exception passes.
    struct Made {
        ~Made() { destroy(first, count); }
        T* first;
        int count;
    };
    struct Block {
        ~Block() { std::free(static_cast<void*>(data)); }
        T* data;
    };

    enum : int {
        kMost = 0x7fffffff,    // elements
        kLargeBlock = 0x10000  // bytes
    };

    int grownCapacity(int needed) const;
    void grow(int needed);
    bool setRoom(int room);
    static int sum(int size, int more);
    static void construct(T* place, int count);
    static void destroy(T* first, int count);

    T* m_data;
    int m_size;
    int m_capacity;
    int m_growBy;
    int m_room;  // elements that fit the block: the capacity, and a hidden reserve (grow)
};

// An array of strings.
class CStringArray : public CArray<CString, const CString&> {};

// ---------------------------------------------------------------------------------------------------------

template <class T, class ARG>
void CArray<T, ARG>::construct(T* place, int count) {
    Made made{place, 0};
    for (; made.count < count; ++made.count) {
        std::memset(static_cast<void*>(place + made.count), 0, sizeof(T));
        ::new (static_cast<void*>(place + made.count)) T();
    }
    made.count = 0;
}

template <class T, class ARG>
void CArray<T, ARG>::destroy(T* first, int count) {
    for (int i = 0; i < count; ++i)
        first[i].~T();
}

template <class T, class ARG>
int CArray<T, ARG>::grownCapacity(int needed) const {
    int step = m_growBy;
    if (step == 0) {
        step = m_size / 8;
        step = step < 4 ? 4 : (step > 1024 ? 1024 : step);
    }
    const int grown = m_capacity > kMost - step ? kMost : m_capacity + step;
    return grown < needed ? needed : grown;
}

// Gives the elements a block with that room, at least their number; false when there is no memory. Copies
// elements whose move could throw, so that a failure leaves the array unchanged.
template <class T, class ARG>
bool CArray<T, ARG>::setRoom(int room) {
    if (static_cast<std::size_t>(room) > static_cast<std::size_t>(PTRDIFF_MAX) / sizeof(T))
        return false;  // beyond 32-bit addresses
    const std::size_t bytes = static_cast<std::size_t>(room) * sizeof(T);
    if constexpr (fieldscan::MovesAsBytes<T>::value) {
        void* const data = std::realloc(static_cast<void*>(m_data), bytes);
        if (!data)
            return false;
        m_data = static_cast<T*>(data);
    } else {
        Block block{static_cast<T*>(std::malloc(bytes))};
        if (!block.data)
            return false;
        Made made{block.data, 0};
        for (; made.count < m_size; ++made.count)
            ::new (static_cast<void*>(made.first + made.count)) T(std::move_if_noexcept(m_data[made.count]));
        made.count = 0;
        destroy(m_data, m_size);
        std::swap(m_data, block.data);
    }
    m_room = room;
    return true;
}

// Steps of at most 1024 elements would move a long list a thousand times. So a large block that grows gets
// half as much again, in reserve: the capacity takes its steps within it.
template <class T, class ARG>
void CArray<T, ARG>::grow(int needed) {
    const int capacity = grownCapacity(needed);
    if (capacity > m_room) {
        const bool large = static_cast<std::size_t>(m_room) >= kLargeBlock / sizeof(T);
        const int room = m_room > kMost - m_room / 2 ? kMost : m_room + m_room / 2;
        if (!(large && room > capacity && setRoom(room)) && !setRoom(capacity))
            fieldscan::throwOutOfMemory();
    }
    m_capacity = capacity;
}

template <class T, class ARG>
void CArray<T, ARG>::Reserve(int capacity) {
    if (capacity <= m_capacity)
        return;
    if (capacity > m_room && !setRoom(capacity))
        fieldscan::throwOutOfMemory();
    m_capacity = capacity;
}

template <class T, class ARG>
void CArray<T, ARG>::FreeExtra() {
    if (m_size == 0)
        RemoveAll();
    else if (m_size != m_room && !setRoom(m_size))
        fieldscan::throwOutOfMemory();
    m_capacity = m_size;
}

template <class T, class ARG>
void CArray<T, ARG>::SetSize(int size, int growBy) {
    if (size < 0)
        return;
    if (growBy >= 0)
        m_growBy = growBy;
    if (size == 0) {
        destroy(m_data, m_size);
        std::free(static_cast<void*>(m_data));
        m_data = nullptr;
        m_size = m_capacity = m_room = 0;
    } else if (size < m_size) {
        destroy(m_data + size, m_size - size);
        m_size = size;
    } else if (size > m_size) {
        if (size > m_capacity)
            grow(size);
        construct(m_data + m_size, size - m_size);
        m_size = size;
    }
}

template <class T, class ARG>
int CArray<T, ARG>::sum(int size, int more) {
    if (more > kMost - size)
        fieldscan::throwOutOfMemory();
    return size + more;
}

template <class T, class ARG>
int CArray<T, ARG>::Add(ARG element) {
    T copy(element);  // it may lie in the storage that a growth frees
    SetSize(sum(m_size, 1));
    m_data[m_size - 1] = std::move(copy);
    return m_size - 1;
}

template <class T, class ARG>
void CArray<T, ARG>::SetAtGrow(int index, ARG element) {
    if (index < 0)
        return;
    T copy(element);
    if (index >= m_size)
        SetSize(sum(index, 1));
    m_data[index] = std::move(copy);
}

template <class T, class ARG>
void CArray<T, ARG>::InsertAt(int index, ARG element, int count) {
    if (index < 0 || count < 1)
        return;
    const T copy(element);
    const int tail = index < m_size ? m_size - index : 0;
    SetSize(sum(tail > 0 ? m_size : index, count));
    for (int i = m_size - 1; i >= m_size - tail; --i)
        m_data[i] = std::move(m_data[i - count]);
    for (int i = 0; i < count; ++i)
        m_data[index + i] = copy;
}

template <class T, class ARG>
void CArray<T, ARG>::RemoveAt(int index, int count) {
    if (index < 0 || index >= m_size || count < 1)
        return;
    if (count > m_size - index)
        count = m_size - index;
    for (int i = index; i < m_size - count; ++i)
        m_data[i] = std::move(m_data[i + count]);
    destroy(m_data + m_size - count, count);
    m_size -= count;
}

template <class T, class ARG>
void CArray<T, ARG>::Copy(const CArray& other) {
    if (this == &other)
        return;
    SetSize(other.m_size);
    for (int i = 0; i < m_size; ++i)
        m_data[i] = other.m_data[i];
}

template <class T, class ARG>
void CArray<T, ARG>::Swap(CArray& other) noexcept {
    std::swap(m_data, other.m_data);
    std::swap(m_size, other.m_size);
    std::swap(m_capacity, other.m_capacity);
    std::swap(m_room, other.m_room);
}

template <class T, class ARG>
int CArray<T, ARG>::Append(const CArray& other) {
    const int first = m_size;
    const int count = other.m_size;
    SetSize(sum(m_size, count));
    for (int i = 0; i < count; ++i)
        m_data[first + i] = other.m_data[i];
    return first;
}

template <class T, class ARG>
struct fieldscan::MovesAsBytes<CArray<T, ARG>> : std::true_type {};
template <>
struct fieldscan::MovesAsBytes<CStringArray> : std::true_type {};

#endif
