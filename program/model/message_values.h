// SPDX-License-Identifier: MIT
// Single values of a message, by the labels that stand in front of them.
#ifndef VEXTREL_PROGRAM_MODEL_MESSAGE_VALUES_H
#define VEXTREL_PROGRAM_MODEL_MESSAGE_VALUES_H

#include <charconv>
#include <cstdint>
#include <optional>
#include <string_view>

#include "reading/message.h"

namespace vextrel::program {

// "" if there's no place with this label.
[[nodiscard]] inline std::string_view TextIn(const Message& message, Label label) {
  const std::size_t place = message.shape->Find(label);
  return place == kNoPlace ? std::string_view() : message.values[place].text;
}

// A pointer that stands as an input, or nothing.
[[nodiscard]] inline std::optional<std::uint64_t> PointerIn(const Message& message, Label label) {
  const std::string_view text = TextIn(message, label);
  std::uint64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, 16);
  return text.empty() || error != std::errc() ? std::nullopt : std::optional(value);
}

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_MODEL_MESSAGE_VALUES_H
