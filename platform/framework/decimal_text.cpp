// Fixed-point output: the double m 2^e, scaled by a power of ten, is rounded as an exact integer. Input: one
// division of two exact doubles, which IEEE rounds correctly (the fast path of Clinger, "How to read floating
// point numbers accurately", 1990).
#include "platform/framework/decimal_text.h"

#include <cmath>
#include <cstdint>
#include <cstring>

namespace fieldscan {
namespace {

constexpr std::uint64_t swapped(std::uint64_t word) {
    word = (word & 0x00FF00FF00FF00FF) << 8 | (word >> 8 & 0x00FF00FF00FF00FF);
    word = (word & 0x0000FFFF0000FFFF) << 16 | (word >> 16 & 0x0000FFFF0000FFFF);
    return word << 32 | word >> 32;
}
static_assert(swapped(0x0102030405060708) == 0x0807060504030201, "the bytes in the opposite order");

// The digits of all numbers below 10^4, the first in the lowest byte. Writing a point file with these 40 KB
// takes seven eighths of the time of splitting digits off by multiplication.
struct FourDigits {
    std::uint32_t digits[10000] = {};
    constexpr FourDigits() {
        for (std::uint32_t i = 0; i < 10000; ++i)
            digits[i] = i / 1000 | i / 100 % 10 << 8 | i / 10 % 10 << 16 | i % 10 << 24;
    }
};
constexpr FourDigits kFourDigits;

// The digits of a number below 10^8, the first in the lowest byte.
std::uint64_t eightDigits(std::uint32_t value) {
    const std::uint32_t front = value / 10000;
    return kFourDigits.digits[front] | std::uint64_t{kFourDigits.digits[value - front * 10000]} << 32;
}

// Between a word in memory and one whose lowest byte is the first. Compilers know the byte order: on most
// processors this is no code.
std::uint64_t swappedIfBigEndian(std::uint64_t word) {
    const std::uint64_t one = 1;
    unsigned char first = 0;
    std::memcpy(&first, &one, 1);
    return first == 1 ? word : swapped(word);
}

// Writes eight characters in one store; compilers do not make one of a loop over the bytes.
void putDigits(char* to, std::uint64_t digits) {
    digits = swappedIfBigEndian(digits + 0x3030303030303030);  // '0'
    std::memcpy(to, &digits, sizeof digits);
}

// Number of bytes that are 0 below the lowest bit that is 1; 8 for 0. (Reading takes 1.2 times as long with
// the plain form, but C++17 has no name for the instruction.)
int zeroBytes(std::uint64_t word) {
#if defined(FIELDSCAN_PORTABLE)
    const std::uint64_t zeros = ~word & (word - 1);  // the bits below the lowest 1
    return static_cast<int>((zeros >> 7 & 0x0101010101010101) * 0x0101010101010101 >> 56);
#else
    return word == 0 ? 8 : __builtin_ctzll(word) / 8;
#endif
}

// Both return the end, and may write seven characters beyond it.
char* putBlock(char* to, std::uint32_t value) {
    const std::uint64_t digits = eightDigits(value);
    const int leadingZeros = zeroBytes(digits | 1ull << 56);
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

// Rounds half to even. `dropped` holds the bits after the last one of `value`, left-aligned.
std::uint64_t roundedToEven(std::uint64_t value, std::uint64_t dropped) {
    constexpr std::uint64_t kHalf = 1ull << 63;
    return (value + (dropped >> 63)) & ~std::uint64_t{dropped == kHalf};
}

template <int Decimals>
char* putDecimals(char* to, std::uint64_t decimals) {
    *to++ = '.';
    constexpr std::uint64_t kPadding = power(10, Decimals > 8 ? 16 - Decimals : 8 - Decimals);
    decimals *= kPadding;
    if constexpr (Decimals > 8) {
        putDigits(to, eightDigits(static_cast<std::uint32_t>(decimals / 100000000)));
        putDigits(to + 8, eightDigits(static_cast<std::uint32_t>(decimals % 100000000)));
    } else {
        putDigits(to, eightDigits(static_cast<std::uint32_t>(decimals)));
    }
    return to + Decimals;
}

constexpr int bitLength(std::uint64_t value) { return value == 0 ? 0 : 1 + bitLength(value >> 1); }

// Writes 0, or a number in [2^(-11 - Decimals), 2^(52 - Decimals)) whose product with 10^Decimals is below
// 2^63, and returns its end; nullptr for all others. The number m 2^e times 10^Decimals is m 5^Decimals 2^(e
// + Decimals): an integer of at most 77 bits, shifted right. Only that shift rounds.
template <int Decimals>
char* putPlain(char* to, double value) {
    static_assert(Decimals > 0 && Decimals <= 10, "the product must fit");
    constexpr std::uint64_t kFives = power(5, Decimals);
    constexpr std::uint64_t kTens = power(10, Decimals);
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    std::uint64_t scaled = 0;
    if (bits != 0) {
        const int places = 1075 - static_cast<int>(bits >> 52);  // of the mantissa after the binary point
        const std::uint64_t mantissa = (bits & ((1ull << 52) - 1)) | 1ull << 52;
        // Most coordinates: at most 26 bits before the binary point, and so few after it that their product
        // fits one word.
        constexpr int kPlaces = 64 - bitLength(kFives);
        if (places >= 27 && places <= kPlaces) {
            const std::uint64_t fraction = mantissa << (kPlaces - places) & ((1ull << kPlaces) - 1);
            const std::uint64_t product = fraction * kFives;
            const std::uint64_t decimals =
                roundedToEven(product >> (kPlaces - Decimals), product << (64 - kPlaces + Decimals));
            const auto whole = static_cast<std::uint32_t>(mantissa >> places);
            if (decimals < kTens)
                return putDecimals<Decimals>(putBlock(to, whole), decimals);
        }
        const int shift = places - Decimals;
        if (shift < 1 || shift > 63)
            return nullptr;
        const std::uint64_t low = (mantissa & 0xFFFFFFFF) * kFives;
        const std::uint64_t high = (mantissa >> 32) * kFives + (low >> 32);
        const std::uint64_t top = high >> 32;
        const std::uint64_t bottom = high << 32 | (low & 0xFFFFFFFF);
        if (top >> (shift - 1) != 0)
            return nullptr;
        scaled = roundedToEven(top << (64 - shift) | bottom >> shift, bottom << (64 - shift));
    }
    return putDecimals<Decimals>(putInteger(to, scaled / kTens), scaled % kTens);
}

// Up to 10^22 a power of ten is a double.
constexpr double kPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,
                                   1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19};

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// True if the number that was read up to `at` may go on: with an exponent, or as a hexadecimal one.
bool goesOn(const char* at, const char* end) {
    return at < end && (*at == 'e' || *at == 'E' || *at == 'x' || *at == 'X');
}

// The eight characters from `at` on, the first in the lowest byte; NUL beyond `end`. The text has at least
// eight before `end`.
std::uint64_t eightCharacters(const char* at, const char* end) {
    const std::ptrdiff_t left = end - at;
    std::uint64_t characters = 0;
    std::memcpy(&characters, left < 8 ? end - 8 : at, sizeof characters);
    characters = swappedIfBigEndian(characters);
    return left >= 8 ? characters : left > 0 ? characters >> 8 * (8 - left) : 0;
}

// Number of digits at the start of the eight characters.
int countDigits(std::uint64_t characters) {
    const std::uint64_t digits = characters ^ 0x3030303030303030;  // '0'
    // A value above 9 carries into the upper half of its byte, and perhaps into the bytes after it, which no
    // longer matter.
    const std::uint64_t others = (digits | (digits + 0x0606060606060606)) & 0xF0F0F0F0F0F0F0F0;
    return zeroBytes(others);
}

// The number in the first 1 to 7 of the characters: digits are joined to pairs, then the four pairs to one
// number.
std::uint32_t numberOf(std::uint64_t characters, int count) {
    std::uint64_t digits = (characters & 0x0F0F0F0F0F0F0F0F) << 8 * (8 - count);
    digits = digits * 10 + (digits >> 8);
    constexpr std::uint64_t kPairs = 0x000000FF000000FF;
    digits =
        (digits & kPairs) * (100 + (1000000ull << 32)) + (digits >> 16 & kPairs) * (1 + (10000ull << 32));
    return static_cast<std::uint32_t>(digits >> 32);
}

// As readPlainDecimal, for 1 to 7 digits, a point and 1 to 7 digits, eight characters at a time.
std::size_t readShortDecimal(std::string_view text, double& value) {
    if (text.size() < 8)
        return 0;
    const char* const end = text.data() + text.size();
    const std::uint64_t front = eightCharacters(text.data(), end);
    const int digits = countDigits(front);
    if (digits == 0 || digits == 8 || text[static_cast<std::size_t>(digits)] != '.')
        return 0;
    const char* const afterPoint = text.data() + digits + 1;
    const std::uint64_t back = eightCharacters(afterPoint, end);
    const int decimals = countDigits(back);
    if (decimals == 0 || decimals == 8 || goesOn(afterPoint + decimals, end))
        return 0;
    const double whole = static_cast<double>(numberOf(front, digits)) * kPowersOfTen[decimals];
    value = (whole + static_cast<double>(numberOf(back, decimals))) / kPowersOfTen[decimals];
    return static_cast<std::size_t>(afterPoint + decimals - text.data());
}

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
    if (const std::size_t length = readShortDecimal(text, value))
        return length;
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
        const char* const afterPoint = at + 1;
        at = readDigits(afterPoint);
        decimals = at - afterPoint;
        digits += decimals;
    }
    constexpr std::uint64_t kMostExact = 1ull << 53;
    if (digits == 0 || digits > 19 || number > kMostExact || goesOn(at, end))
        return 0;
    value = static_cast<double>(number) / kPowersOfTen[decimals];
    return static_cast<std::size_t>(at - first);
}

}  // namespace fieldscan
