#include "calllog/port_rendering.h"

#include <cstdint>

#include "calllog/digits.h"
#include "calllog/dump_lines.h"

namespace vextrel {
namespace {

constexpr std::size_t kLinesPerChunk = 200;  // a chunk's text stays in the nearest cache

}  // namespace

std::size_t ByteDump::size() const noexcept {
  const bool isEmpty = pBuffer == nullptr || iSize == 0;
  return isEmpty ? 0 : iSize * kDumpItemSize - 1 + iSize / kBytesPerDumpLine;
}

char* ByteDump::Write(char* text) const noexcept {
  if (pBuffer == nullptr || iSize == 0) {
    return text;
  }
  // The last item has no comma, so its line is not one of the full lines.
  const auto* bytes = static_cast<const std::uint8_t*>(pBuffer);
  const std::size_t last = iSize - 1;
  const std::size_t lines = last / kBytesPerDumpLine;
  if (lines > 0) {
    text = WriteDumpLines(bytes, lines, text);
  }
  const std::size_t begin = lines * kBytesPerDumpLine;
  text = WriteDumpItems(bytes + begin, last - begin, text);
  text = WriteLastDumpItem(bytes[last], text);
  if (iSize % kBytesPerDumpLine == 0) {
    *text++ = '\n';
  }
  return text;
}

void ByteDump::AppendTo(std::string& text) const {
  const auto appendRoom = [&text](std::size_t size) {
    text.append(size, '\0');
    return text.data() + text.size() - size;
  };
  const auto* bytes = static_cast<const std::uint8_t*>(pBuffer);
  std::size_t left = pBuffer == nullptr ? 0 : iSize;
  while (left > kLinesPerChunk * kBytesPerDumpLine) {
    WriteDumpLines(bytes, kLinesPerChunk, appendRoom(kLinesPerChunk * kDumpLineSize));
    bytes += kLinesPerChunk * kBytesPerDumpLine;
    left -= kLinesPerChunk * kBytesPerDumpLine;
  }
  const ByteDump last{bytes, left};
  last.Write(appendRoom(last.size()));
}

RenderedText RenderByteDump(const void* pBuffer, std::size_t iSize) {
  const ByteDump dump{pBuffer, iSize};
  return {dump.size(), [&dump](char* text) { dump.Write(text); }};
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
    ByteDump{entry.pBuffer, entry.Size}.AppendTo(text);
    text.append("'), iSize=").append(Digits::Hex(entry.Size).view()).append(";");
  }
  text.push_back('\0');
  return text;
}

}  // namespace vextrel
