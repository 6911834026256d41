#include "calllog/port_rendering.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "calllog/digits.h"
#include "calllog/dump_lines.h"

namespace vextrel {
namespace {

constexpr std::size_t kLinesPerChunk = 50;  // a chunk stays in the processor's nearest cache

constexpr std::size_t DumpSize(std::size_t bytes) {
  return bytes == 0 ? 0 : bytes * kDumpItemSize - 1 + bytes / kBytesPerDumpLine;
}

void AppendByteDump(std::string& text, const void* pBuffer, std::size_t iSize) {
  if (pBuffer == nullptr || iSize == 0) {
    return;
  }
  const auto* bytes = static_cast<const std::uint8_t*>(pBuffer);
  std::array<char, kLinesPerChunk * kDumpLineSize> chunk;  // NOLINT: written before it is read
  std::size_t lines = iSize / kBytesPerDumpLine;
  const std::size_t rest = iSize % kBytesPerDumpLine;
  while (lines > 0) {
    const std::size_t count = std::min(lines, kLinesPerChunk);
    char* end = WriteDumpLines(bytes, count, chunk.data());
    bytes += count * kBytesPerDumpLine;
    lines -= count;
    if (lines == 0 && rest == 0) {
      // No comma behind the last byte, but its line feed stays.
      end[-2] = '\n';
      --end;
    }
    text.append(chunk.data(), end);
  }
  if (rest > 0) {
    char* end = WriteDumpItems(bytes, rest, chunk.data());
    text.append(chunk.data(), end - 1);
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
