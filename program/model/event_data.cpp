// SPDX-License-Identifier: MIT
#include "model/event_data.h"

#include <algorithm>
#include <charconv>

namespace vextrel::program {

std::optional<std::uint64_t> BufferOfEventData(std::string_view dump) noexcept {
  constexpr std::size_t handleSize = 8;
  constexpr std::size_t itemSize = 5;  // "0x0a,"
  std::uint64_t value = 0;
  for (std::size_t i = 0; i < handleSize; ++i) {
    const std::string_view item = dump.substr(std::min(i * itemSize, dump.size()), itemSize);
    std::uint8_t byte = 0;
    if (item.size() < 4 || !item.starts_with("0x")) {
      return std::nullopt;
    }
    const auto [end, error] = std::from_chars(item.data() + 2, item.data() + 4, byte, 16);
    if (error != std::errc() || end != item.data() + 4) {
      return std::nullopt;
    }
    value |= std::uint64_t{byte} << (8 * i);
  }
  return value;
}

}  // namespace vextrel::program
