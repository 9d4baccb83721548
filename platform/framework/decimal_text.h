// Fast conversions between doubles and decimals for the numbers in files of coordinates. The results are
// exactly rounded; all other numbers are left to std::to_chars and std::from_chars.
#ifndef FIELDSCAN_PLATFORM_FRAMEWORK_DECIMAL_TEXT_H
#define FIELDSCAN_PLATFORM_FRAMEWORK_DECIMAL_TEXT_H

#include <cstddef>
#include <string_view>

namespace fieldscan {

// Characters that putPlainFixed needs; it may write to any of them.
constexpr std::size_t kPlainFixedRoom = 40;

// Writes "%.Nf" for N = 4, 5, 6 and 10, the decimals of the library's texts, and magnitudes that are 0 or in
// [2^(-11 - N), 2^(52 - N)) and below 2^63 / 10^N. Returns the end; nullptr for all others.
char* putPlainFixed(char* to, double value, int decimals);

// Reads a number without exponent that has at most 19 digits, which are an integer up to 2^53 without the
// point. Returns the number of characters read; 0 for all other texts, with `value` unchanged.
std::size_t readPlainDecimal(std::string_view text, double& value);

}  // namespace fieldscan

#endif
