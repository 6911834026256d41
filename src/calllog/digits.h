// Numbers as text, without streams, locale or allocation.
#ifndef VEXTREL_CALLLOG_DIGITS_H
#define VEXTREL_CALLLOG_DIGITS_H

#include <array>
#include <bit>
#include <charconv>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "calllog/hex_digits.h"

namespace vextrel {

// The digits of one number; `view` is valid as long as the object.
class Digits {
 public:
  static constexpr std::size_t kRoom = 24;

  [[nodiscard]] std::string_view view() const noexcept { return {text_.data(), size_}; }

  // Decimal, with a leading '-' for negative values.
  template <std::integral Number>
  [[nodiscard]] static Digits Decimal(Number value) noexcept {
    return FromChars(
        [value](char* first, char* last) { return std::to_chars(first, last, value); });
  }

  // Lower-case hexadecimal without prefix or fill.
  [[nodiscard]] static Digits Hex(std::uint64_t value) noexcept {
    return FromChars(
        [value](char* first, char* last) { return std::to_chars(first, last, value, 16); });
  }

  // Six significant digits, in the general format.
  [[nodiscard]] static Digits General(double value) noexcept {
    constexpr std::uint64_t sign = 0x8000000000000000U;
    constexpr std::uint64_t infinity = 0x7FF0000000000000U;
    const auto bits = std::bit_cast<std::uint64_t>(value);
    if ((bits & ~sign) > infinity) {
      // Not left to the library, which may compare the value: with some, that sets a flag in the
      // floating-point environment, and that is the consumer's.
      return Text((bits & sign) != 0 ? "-nan" : "nan");
    }
    return FromChars([value](char* first, char* last) {
      return std::to_chars(first, last, value, std::chars_format::general, 6);
    });
  }

  // Exactly sixteen hexadecimal digits, zero-padded.
  [[nodiscard]] static Digits UpperHex16(std::uint64_t value) noexcept { return Hex16(value, 'A'); }
  [[nodiscard]] static Digits LowerHex16(std::uint64_t value) noexcept { return Hex16(value, 'a'); }

  // An address as the log shows it: "0x" and sixteen upper-case digits.
  [[nodiscard]] static Digits Address(const void* address) noexcept {
    Digits digits;
    digits.text_[0] = '0';
    digits.text_[1] = 'x';
    digits.size_ = 2 + kHex16Size;
    WriteHex16(reinterpret_cast<std::uintptr_t>(address), 'A', digits.text_.data() + 2);
    return digits;
  }

 private:
  Digits() noexcept {}  // NOLINT: the text is written by whoever constructs it

  [[nodiscard]] static Digits Text(std::string_view text) noexcept {
    Digits digits;
    digits.size_ = text.copy(digits.text_.data(), kRoom);
    return digits;
  }

  template <typename Convert>
  [[nodiscard]] static Digits FromChars(Convert convert) noexcept {
    Digits digits;
    const auto end = convert(digits.text_.data(), digits.text_.data() + digits.text_.size()).ptr;
    digits.size_ = static_cast<std::size_t>(end - digits.text_.data());
    return digits;
  }

  [[nodiscard]] static Digits Hex16(std::uint64_t value, char ten) noexcept {
    Digits digits;
    digits.size_ = kHex16Size;
    WriteHex16(value, ten, digits.text_.data());
    return digits;
  }

  std::array<char, kRoom> text_;
  std::size_t size_ = 0;
};

}  // namespace vextrel

#endif  // VEXTREL_CALLLOG_DIGITS_H
