// SPDX-License-Identifier: MIT
// printf of the 64-bit Windows C runtime, for values that know their kind.
#ifndef VEXTREL_TESTS_MODEL_WINDOWS_PRINTF_H
#define VEXTREL_TESTS_MODEL_WINDOWS_PRINTF_H

#include <concepts>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "model/expected_text.h"

namespace vextrel_test::model {

// One argument of a line.
struct Value {
  // A number: all of its bits, sign-extended to 64.
  template <std::integral Number>
  Value(Number number) : bits(static_cast<std::uint64_t>(number)) {}
  // An address. Under %s, shows the bytes at that address, up to the first zero byte.
  Value(const volatile void* address)
      : bits(reinterpret_cast<std::uintptr_t>(address)), isAddress(true) {}
  // A text that the proxy makes, whose address is unknown.
  Value(std::string itsText) : text(std::move(itsText)) {}
  // A text at a known address.
  Value(std::string itsText, const void* address)
      : bits(reinterpret_cast<std::uintptr_t>(address)), text(std::move(itsText)) {}

  std::optional<std::uint64_t> bits;
  std::optional<std::string> text;
  bool isAddress = false;
};

// A text of the consumer's, or the proxy's "NULL" for none.
[[nodiscard]] inline Value TextOrNull(const char* text) {
  return text != nullptr ? Value(text) : Value(std::string("NULL"));
}

// Fills the conversions with the values in order, whatever each was meant for; conversions left
// over show zero. REQUIRES: no more values than conversions.
[[nodiscard]] ExpectedText Print(std::string_view format, const std::vector<Value>& values);

}  // namespace vextrel_test::model

#endif  // VEXTREL_TESTS_MODEL_WINDOWS_PRINTF_H
