// SPDX-License-Identifier: MIT
// Labels of a line's places, as the program asks for them.
#ifndef VEXTREL_PROGRAM_READING_LABEL_H
#define VEXTREL_PROGRAM_READING_LABEL_H

#include <cstdint>
#include <string_view>

namespace vextrel::program {

// FNV-1a. The labels of the log all have different ones.
[[nodiscard]] constexpr std::uint64_t HashOfLabel(std::string_view label) noexcept {
  std::uint64_t hash = 0xCBF29CE484222325;
  for (const char each : label) {
    hash = (hash ^ static_cast<unsigned char>(each)) * 0x100000001B3;
  }
  return hash;
}

// Made by the compiler from the text that stands in its place: rules ask for several labels of
// every call, and comparing their texts took a tenth of the time of `vextrel check`.
struct Label {
  // NOLINTNEXTLINE(google-explicit-constructor): a label is its text.
  consteval Label(const char* itsText) : text(itsText), hash(HashOfLabel(text)) {}

  std::string_view text;
  std::uint64_t hash;
};

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_READING_LABEL_H
