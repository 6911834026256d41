// SPDX-License-Identifier: MIT
// Numbers as text, without streams, locale or allocation.
#ifndef VEXTREL_CALLLOG_DIGITS_H
#define VEXTREL_CALLLOG_DIGITS_H

#include <array>
#include <bit>
#include <charconv>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string_view>
#include <type_traits>

#include "calllog/hex_digits.h"

namespace vextrel {

// The most characters that a function below writes.
inline constexpr std::size_t kMaxDigits = 24;

// The most characters that a number of that type takes: decimal with its sign, and hexadecimal.
template <std::integral Number>
inline constexpr std::size_t kMaxDecimal = std::numeric_limits<Number>::digits10 + 1 +
                                           (std::is_signed_v<Number> ? 1 : 0);
template <std::integral Number>
inline constexpr std::size_t kMaxHex = sizeof(Number) * 2;

// Each function writes a number to `text` and returns the end of what it wrote. REQUIRES: `text`
// has room for it.

// Decimal, with a leading '-' for negative values.
template <std::integral Number>
char* WriteDecimal(Number value, char* text) noexcept {
  return std::to_chars(text, text + kMaxDecimal<Number>, value).ptr;
}

// Nanoseconds as microseconds with three decimals. REQUIRES: `nanoseconds` isn't negative.
inline char* WriteMicroseconds(std::int64_t nanoseconds, char* text) noexcept {
  text = WriteDecimal(nanoseconds / 1000, text);
  const auto fraction = static_cast<unsigned>(nanoseconds % 1000);
  *text++ = '.';
  *text++ = static_cast<char>('0' + fraction / 100);
  *text++ = static_cast<char>('0' + fraction / 10 % 10);
  *text++ = static_cast<char>('0' + fraction % 10);
  return text;
}

// Lower-case hexadecimal without prefix or padding.
template <std::unsigned_integral Number>
char* WriteHex(Number value, char* text) noexcept {
  return std::to_chars(text, text + kMaxHex<Number>, value, 16).ptr;
}

// Exactly sixteen hexadecimal digits, zero-padded.
inline char* WriteUpperHex16(std::uint64_t value, char* text) noexcept {
  WriteHex16(value, 'A', text);
  return text + kHex16Size;
}
inline char* WriteLowerHex16(std::uint64_t value, char* text) noexcept {
  WriteHex16(value, 'a', text);
  return text + kHex16Size;
}

// An address as the log shows it: "0x" and sixteen upper-case digits.
inline char* WriteAddress(const void* address, char* text) noexcept {
  text[0] = '0';
  text[1] = 'x';
  return WriteUpperHex16(reinterpret_cast<std::uintptr_t>(address), text + 2);
}

// Six significant digits, in the general format.
inline char* WriteGeneral(double value, char* text) noexcept {
  constexpr std::uint64_t sign = 0x8000000000000000U;
  constexpr std::uint64_t infinity = 0x7FF0000000000000U;
  const auto bits = std::bit_cast<std::uint64_t>(value);
  if ((bits & ~sign) > infinity) {
    // Not left to the library: some compare the value, which sets a flag in the consumer's
    // floating-point environment if it's a signaling NaN.
    const std::string_view name = (bits & sign) != 0 ? "-nan" : "nan";
    return text + name.copy(text, name.size());
  }
  return std::to_chars(text, text + kMaxDigits, value, std::chars_format::general, 6).ptr;
}

// The text of one number. view() is valid for the object's lifetime.
class Digits {
 public:
  [[nodiscard]] std::string_view view() const noexcept { return {text_.data(), size_}; }

  template <std::integral Number>
  [[nodiscard]] static Digits Decimal(Number value) noexcept {
    return Digits([value](char* text) { return WriteDecimal(value, text); });
  }
  [[nodiscard]] static Digits Hex(std::uint64_t value) noexcept {
    return Digits([value](char* text) { return WriteHex(value, text); });
  }
  [[nodiscard]] static Digits UpperHex16(std::uint64_t value) noexcept {
    return Digits([value](char* text) { return WriteUpperHex16(value, text); });
  }
  [[nodiscard]] static Digits LowerHex16(std::uint64_t value) noexcept {
    return Digits([value](char* text) { return WriteLowerHex16(value, text); });
  }
  [[nodiscard]] static Digits Address(const void* address) noexcept {
    return Digits([address](char* text) { return WriteAddress(address, text); });
  }
  [[nodiscard]] static Digits General(double value) noexcept {
    return Digits([value](char* text) { return WriteGeneral(value, text); });
  }

 private:
  template <typename Write>
  explicit Digits(Write write) noexcept {  // NOLINT: the text is written by whoever constructs it
    size_ = static_cast<std::size_t>(write(text_.data()) - text_.data());
  }

  std::array<char, kMaxDigits> text_;
  std::size_t size_ = 0;
};

}  // namespace vextrel

#endif  // VEXTREL_CALLLOG_DIGITS_H
