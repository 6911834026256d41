// SPDX-License-Identifier: MIT
// The full lines of a byte dump, sixteen bytes each.
//
// All functions are thread-safe. The two that write lines write the same text.
#ifndef VEXTREL_CALLLOG_DUMP_LINES_H
#define VEXTREL_CALLLOG_DUMP_LINES_H

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "calllog/always_inline.h"

namespace vextrel {

inline constexpr std::size_t kBytesPerDumpLine = 16;
inline constexpr std::size_t kDumpItemSize = 5;  // "0x0a,"
inline constexpr std::size_t kDumpItemRoom = 8;  // what writing an item may overwrite
inline constexpr std::size_t kDumpLineSize = kBytesPerDumpLine * kDumpItemSize + 1;

namespace detail {

using Item = std::array<char, kDumpItemRoom>;

inline constexpr std::array<Item, 256> kItems = [] {
  constexpr std::string_view digits = "0123456789abcdef";
  std::array<Item, 256> items{};
  for (std::size_t byte = 0; byte < items.size(); ++byte) {
    items[byte] = {'0', 'x', digits[byte / 16], digits[byte % 16], ','};
  }
  return items;
}();

}  // namespace detail

// Writes `count` items, each with its comma, and returns where they end. May write up to three
// characters behind that, where another item belongs: copying eight at once is cheaper.
VEXTREL_ALWAYS_INLINE char* WriteDumpItems(const std::uint8_t* bytes, std::size_t count,
                                           char* text) noexcept {
  for (std::size_t i = 0; i < count; ++i) {
    std::copy_n(detail::kItems[bytes[i]].data(), kDumpItemRoom, text);
    text += kDumpItemSize;
  }
  return text;
}

// Writes one item without its comma, and returns where it ends.
VEXTREL_ALWAYS_INLINE char* WriteLastDumpItem(std::uint8_t byte, char* text) noexcept {
  return std::copy_n(detail::kItems[byte].data(), kDumpItemSize - 1, text);
}

// Writes `lines` lines of sixteen items, each item with its comma and each line with its line feed,
// and returns their end. Uses AVX2 where the processor has it.
char* WriteDumpLines(const std::uint8_t* bytes, std::size_t lines, char* text) noexcept;

// The same without AVX2.
char* WriteDumpLinesPlainly(const std::uint8_t* bytes, std::size_t lines, char* text) noexcept;

}  // namespace vextrel

#endif  // VEXTREL_CALLLOG_DUMP_LINES_H
