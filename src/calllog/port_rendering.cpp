#include "calllog/port_rendering.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

#include "calllog/digits.h"

namespace vextrel {
namespace {

constexpr std::size_t kBytesPerLine = 16;
constexpr std::size_t kItemSize = 5;  // "0x0a,"

using Item = std::array<char, kItemSize>;

constexpr std::array<Item, 256> kItems = [] {
  constexpr std::string_view digits = "0123456789abcdef";
  std::array<Item, 256> items{};
  for (std::size_t byte = 0; byte < items.size(); ++byte) {
    items[byte] = {'0', 'x', digits[byte / 16], digits[byte % 16], ','};
  }
  return items;
}();

constexpr std::size_t DumpSize(std::size_t bytes) {
  return bytes == 0 ? 0 : bytes * kItemSize - 1 + bytes / kBytesPerLine;
}

void AppendByteDump(std::string& text, const void* pBuffer, std::size_t iSize) {
  if (pBuffer == nullptr) {
    return;
  }
  const auto* bytes = static_cast<const std::uint8_t*>(pBuffer);
  while (iSize > 0) {
    std::array<char, kBytesPerLine * kItemSize + 1> line;  // NOLINT: filled below
    const std::size_t count = std::min(iSize, kBytesPerLine);
    char* end = line.data();
    for (std::size_t i = 0; i < count; ++i) {
      end = std::copy_n(kItems[bytes[i]].data(), kItemSize, end);
    }
    bytes += count;
    iSize -= count;
    if (iSize == 0) {
      --end;  // No comma behind the last byte, but a line feed all the same if its line is full.
    }
    if (count == kBytesPerLine) {
      *end++ = '\n';
    }
    text.append(line.data(), end);
  }
}

}  // namespace

std::string RenderByteDump(const void* pBuffer, std::size_t iSize) {
  std::string text;
  if (pBuffer != nullptr) {
    text.reserve(DumpSize(iSize) + 1);
  }
  AppendByteDump(text, pBuffer, iSize);
  text.push_back('\0');
  return text;
}

std::string RenderPortData(const PORT_REGISTER_STACK_ENTRY* pEntries, std::size_t iNumEntries) {
  std::string text;
  // The count is taken as a signed 32-bit number, as the index is.
  const auto count = static_cast<std::int32_t>(static_cast<std::uint32_t>(iNumEntries));
  for (std::int32_t i = 0; i < count; ++i) {
    const PORT_REGISTER_STACK_ENTRY& entry = pEntries[i];
    // Indices and sizes are hexadecimal without a prefix, on purpose; 0 looks the same either way.
    text.append("Address[").append(Digits::Hex(static_cast<std::uint32_t>(i)).view());
    text.append("], 0x").append(Digits::LowerHex16(entry.Address).view());
    text.append("->(Buffer='");
    AppendByteDump(text, entry.pBuffer, entry.Size);
    text.append("'), iSize=").append(Digits::Hex(entry.Size).view()).append(";");
  }
  text.push_back('\0');
  return text;
}

}  // namespace vextrel
