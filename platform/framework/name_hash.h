// A short text in place of a name of any length.
#ifndef FIELDSCAN_PLATFORM_FRAMEWORK_NAME_HASH_H
#define FIELDSCAN_PLATFORM_FRAMEWORK_NAME_HASH_H

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

namespace fieldscan {

// The 64-bit FNV-1a hash of unsigned units, one step a unit, as 16 hexadecimal digits.
template <class Unit>
std::string nameHash(const Unit* name, std::size_t length) {
    static_assert(Unit(-1) > Unit(0), "units of the same value on every system");
    std::uint64_t hash = 14695981039346656037U;
    for (std::size_t i = 0; i < length; ++i)
        hash = (hash ^ name[i]) * 1099511628211U;
    char digits[17];
    std::snprintf(digits, sizeof digits, "%016llx", static_cast<unsigned long long>(hash));
    return digits;
}

}  // namespace fieldscan

#endif
