// SPDX-License-Identifier: MIT
#include "model/windows_printf.h"

#include <stdexcept>

namespace vextrel_test::model {
namespace {

std::string Hex(std::uint64_t bits) {
  std::string digits;
  do {
    digits.insert(digits.begin(), "0123456789abcdef"[bits % 16]);
    bits /= 16;
  } while (bits != 0);
  return digits;
}

std::string Pointer(std::uint64_t bits) {
  std::string digits(16, '0');
  for (std::size_t place = digits.size(); place-- > 0; bits /= 16) {
    digits[place] = "0123456789ABCDEF"[bits % 16];
  }
  return digits;
}

std::string Digits(std::string_view conversion, std::uint64_t bits) {
  const auto low32 = static_cast<std::uint32_t>(bits);
  if (conversion == "p") {
    return Pointer(bits);
  }
  if (conversion == "u" || conversion == "lu") {
    return std::to_string(low32);
  }
  if (conversion == "d") {
    return std::to_string(static_cast<std::int32_t>(low32));
  }
  if (conversion == "x") {
    return Hex(low32);
  }
  if (conversion == "llx") {
    return Hex(bits);
  }
  throw std::logic_error("no such conversion: " + std::string(conversion));
}

std::string TextOf(const Value& value) {
  if (value.text) {
    return value.text->c_str();
  }
  if (!value.isAddress) {
    return std::to_string(*value.bits);
  }
  return *value.bits == 0 ? "(null)"
                          : reinterpret_cast<const char*>(static_cast<std::uintptr_t>(*value.bits));
}

Hole HoleOf(std::string_view conversion) {
  if (conversion == "p") {
    return Hole::Pointer;
  }
  return conversion == "llx" ? Hole::Hex : Hole::Unsigned;
}

}  // namespace

ExpectedText Print(std::string_view format, const std::vector<Value>& values) {
  ExpectedText text;
  std::size_t used = 0;
  while (!format.empty()) {
    const std::size_t literal = format.find('%');
    text.Append(format.substr(0, literal));
    if (literal == std::string_view::npos) {
      break;
    }
    format.remove_prefix(literal + 1);
    const std::string_view conversion = format.substr(0, format.find_first_of("spudx") + 1);
    format.remove_prefix(conversion.size());
    const Value value = used < values.size() ? values[used] : Value(0);
    ++used;
    if (conversion == "s") {
      text.Append(TextOf(value));
    } else if (value.bits) {
      text.Append(Digits(conversion, *value.bits));
    } else {
      text.Append(HoleOf(conversion));
    }
  }
  if (used < values.size()) {
    throw std::logic_error("more values than conversions: " + text.Describe());
  }
  return text;
}

}  // namespace vextrel_test::model
