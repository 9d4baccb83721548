// MovesAsBytes: which elements a CArray moves as bytes.
#ifndef FIELDSCAN_FRAMEWORK_MOVES_AS_BYTES_H
#define FIELDSCAN_FRAMEWORK_MOVES_AS_BYTES_H

#include <type_traits>

namespace fieldscan {

// True when the bytes of an object, copied to another place, are the object there, and the old place may be
// forgotten: its destructor is not called. A growing CArray then reallocates its storage, and the system may
// move pages instead of elements. So it is for arithmetic types, trivially copyable ones, and the types of
// the library that are in lists. Set it for an own type before its first CArray:
//
//     template <>
//     struct fieldscan::MovesAsBytes<Shot> : std::true_type {};
//
// Not for a type that holds its own address or is registered by it; std::string may do so.
template <class T>
struct MovesAsBytes : std::is_trivially_copyable<T> {};

}  // namespace fieldscan

#endif
