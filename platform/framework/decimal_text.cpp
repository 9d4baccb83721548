#include "platform/framework/decimal_text.h"

#include <cmath>
#include <cstdint>
#include <cstring>

namespace fieldscan {
namespace {

// The digits of a number below 10^8, the first in the lowest byte. All eight at a time: halves, pairs and
// single digits lie side by side in one word, and the quotients by 100 and 10 are products with the
// rounded-up reciprocal. Each step leaves the quotient where its dividend was and puts the remainder above
// it.
std::uint64_t eightDigits(std::uint32_t value) {
    const std::uint64_t front = value / 10000;
    const std::uint64_t halves = (std::uint64_t{value} << 32) - front * ((10000ull << 32) - 1);
    const std::uint64_t hundreds = (halves * 10486 >> 20) & 0x0000007F0000007F;
    const std::uint64_t pairs = (halves << 16) - hundreds * ((100ull << 16) - 1);
    const std::uint64_t tens = (pairs * 103 >> 10) & 0x000F000F000F000F;
    return (pairs << 8) - tens * ((10ull << 8) - 1);
}

// Writes eight characters; one store, which a loop over the bytes would not become.
void putDigits(char* to, std::uint64_t digits) {
    digits += 0x3030303030303030;  // '0'
    if (__BYTE_ORDER__ == __ORDER_BIG_ENDIAN__)
        digits = __builtin_bswap64(digits);
    std::memcpy(to, &digits, sizeof digits);
}

// Both write up to seven characters beyond the end, which they return.
char* putBlock(char* to, std::uint32_t value) {
    const std::uint64_t digits = eightDigits(value);
    const int leadingZeros = __builtin_ctzll(digits | 1ull << 56) / 8;
    putDigits(to, digits >> 8 * leadingZeros);
    return to + 8 - leadingZeros;
}

char* putInteger(char* to, std::uint64_t value) {
    constexpr std::uint64_t kBlock = 100000000;
    if (value < kBlock)
        return putBlock(to, static_cast<std::uint32_t>(value));
    const std::uint64_t front = value / kBlock;
    to = front < kBlock ? putBlock(to, static_cast<std::uint32_t>(front)) : putInteger(to, front);
    putDigits(to, eightDigits(static_cast<std::uint32_t>(value % kBlock)));
    return to + 8;
}

constexpr std::uint64_t power(std::uint64_t base, int exponent) {
    return exponent == 0 ? 1 : base * power(base, exponent - 1);
}

// Writes a number in [0, 2^63 / 10^Decimals) and returns its end, nullptr outside that range and below
// 2^(Decimals - 64). The number m 2^e times 10^Decimals is m 5^Decimals 2^(e + Decimals): an integer of 77
// bits at most, shifted right. Halves are taken on what the shift drops, so that the result is exact. Three
// to six times as fast as std::to_chars.
template <int Decimals>
char* putPlain(char* to, double value) {
    static_assert(Decimals > 0 && Decimals <= 10, "the product must fit");
    constexpr std::uint64_t kFives = power(5, Decimals);
    constexpr std::uint64_t kTens = power(10, Decimals);
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    std::uint64_t scaled = 0;
    if (bits != 0) {
        const int shift = 1075 - static_cast<int>(bits >> 52) - Decimals;
        if (shift < 1 || shift > 63)
            return nullptr;
        const std::uint64_t mantissa = (bits & ((1ull << 52) - 1)) | 1ull << 52;
        const std::uint64_t low = (mantissa & 0xFFFFFFFF) * kFives;
        const std::uint64_t high = (mantissa >> 32) * kFives + (low >> 32);
        const std::uint64_t top = high >> 32;
        const std::uint64_t bottom = high << 32 | (low & 0xFFFFFFFF);
        if (top >> (shift - 1) != 0)
            return nullptr;
        scaled = top << (64 - shift) | bottom >> shift;
        const std::uint64_t dropped = bottom << (64 - shift);
        constexpr std::uint64_t kHalf = 1ull << 63;
        scaled = (scaled + (dropped >> 63)) & ~std::uint64_t{dropped == kHalf};  // half to even
    }
    to = putInteger(to, scaled / kTens);
    *to++ = '.';
    constexpr std::uint64_t kBehind = power(10, Decimals > 8 ? 16 - Decimals : 8 - Decimals);
    const std::uint64_t fraction = scaled % kTens * kBehind;
    if constexpr (Decimals > 8) {
        putDigits(to, eightDigits(static_cast<std::uint32_t>(fraction / 100000000)));
        putDigits(to + 8, eightDigits(static_cast<std::uint32_t>(fraction % 100000000)));
    } else {
        putDigits(to, eightDigits(static_cast<std::uint32_t>(fraction)));
    }
    return to + Decimals;
}

// Up to 10^22 a power of ten is a double.
constexpr double kPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,
                                   1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19};

bool isDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

char* putPlainFixed(char* to, double value, int decimals) {
    if (std::signbit(value)) {
        *to++ = '-';
        value = -value;
    }
    switch (decimals) {
        case 4:
            return putPlain<4>(to, value);
        case 5:
            return putPlain<5>(to, value);
        case 6:
            return putPlain<6>(to, value);
        case 10:
            return putPlain<10>(to, value);
        default:
            return nullptr;
    }
}

std::size_t readPlainDecimal(std::string_view text, double& value) {
    const char* const first = text.data();
    const char* const end = first + text.size();
    std::uint64_t number = 0;
    const auto readDigits = [&](const char* at) {
        for (; at < end && isDigit(*at); ++at)
            number = 10 * number + static_cast<std::uint64_t>(*at - '0');
        return at;
    };
    const char* at = readDigits(first);
    std::ptrdiff_t digits = at - first;
    std::ptrdiff_t decimals = 0;
    if (at < end && *at == '.') {
        const char* const behindPoint = at + 1;
        at = readDigits(behindPoint);
        decimals = at - behindPoint;
        digits += decimals;
    }
    constexpr std::uint64_t kMostExact = 1ull << 53;
    const bool goesOn = at < end && (*at == 'e' || *at == 'E' || *at == 'x' || *at == 'X');
    if (digits == 0 || digits > 19 || number > kMostExact || goesOn)
        return 0;
    value = static_cast<double>(number) / kPowersOfTen[decimals];
    return static_cast<std::size_t>(at - first);
}

}  // namespace fieldscan
