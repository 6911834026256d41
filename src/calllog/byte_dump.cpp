// SPDX-License-Identifier: MIT
#include "calllog/byte_dump.h"

#include <cstdint>

#include "calllog/dump_lines.h"

namespace vextrel {
namespace {

constexpr std::size_t kLinesPerChunk = 200;  // a chunk's text fits the first-level cache

}  // namespace

std::size_t ByteDump::size() const noexcept {
  const bool isEmpty = pBuffer == nullptr || iSize == 0;
  return isEmpty ? 0 : iSize * kDumpItemSize - 1 + iSize / kBytesPerDumpLine;
}

char* ByteDump::Write(char* text) const noexcept {
  if (pBuffer == nullptr || iSize == 0) {
    return text;
  }
  // The last item has no comma, so its line isn't a full one.
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

}  // namespace vextrel
