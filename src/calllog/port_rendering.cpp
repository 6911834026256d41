// SPDX-License-Identifier: MIT
#include "calllog/port_rendering.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <utility>

#include "calllog/always_inline.h"
#include "calllog/byte_dump.h"
#include "calllog/digits.h"
#include "calllog/dump_lines.h"

namespace vextrel {
namespace {

// A piece of an entry's text. Copied as a whole block: that is one instruction or two.
using Piece = std::array<char, 16>;
constexpr Piece kAddress = {"Address["};
constexpr Piece kValue = {"], 0x"};
constexpr Piece kBuffer = {"->(Buffer='"};
constexpr Piece kSize = {"'), iSize="};
// Pieces with a one-digit number, which replaces the zero.
constexpr Piece kAddressAndValue = {"Address[0], 0x"};
constexpr Piece kSizeAndEnd = {"'), iSize=0;"};
constexpr std::size_t kOneDigit = 16;  // numbers below this have one hexadecimal digit

constexpr std::size_t LengthOf(const Piece& piece) {
  return std::string_view(piece.data()).size();
}

// The most that an entry takes beside its dump, and what copying whole pieces may overwrite.
constexpr std::size_t kMostOfEntry = LengthOf(kAddress) + kMaxHex<std::uint32_t> +
                                     LengthOf(kValue) + kHex16Size + LengthOf(kBuffer) +
                                     LengthOf(kSize) + kMaxHex<std::uint64_t> + 1;
constexpr std::size_t kSlack = sizeof(Piece);

// Kept: 27. The count is taken as a signed 32-bit number.
std::uint32_t CountOf(std::size_t iNumEntries) {
  const auto count = static_cast<std::int32_t>(static_cast<std::uint32_t>(iNumEntries));
  return count > 0 ? static_cast<std::uint32_t>(count) : 0;
}

// May overwrite up to kSlack characters behind what it returns.
template <const Piece& piece>
VEXTREL_ALWAYS_INLINE char* WritePiece(char* text) {
  std::memcpy(text, piece.data(), piece.size());
  return text + LengthOf(piece);
}

// May overwrite up to kSlack characters behind what it returns.
template <const Piece& piece>
VEXTREL_ALWAYS_INLINE char* WritePieceWithDigit(std::size_t digit, char* text) {
  char* end = WritePiece<piece>(text);
  text[std::string_view(piece.data()).find('0')] = "0123456789abcdef"[digit];
  return end;
}

template <std::size_t... indices>
VEXTREL_ALWAYS_INLINE char* WriteShortDump(const void* pBuffer, char* text,
                                           std::index_sequence<indices...> /*items*/) {
  const auto* bytes = static_cast<const std::uint8_t*>(pBuffer);
  ((text = WriteDumpItems(bytes + indices, 1, text)), ...);
  return WriteLastDumpItem(bytes[sizeof...(indices)], text);
}

// Almost every register has four or eight bytes, so those two sizes are unrolled.
VEXTREL_ALWAYS_INLINE char* WriteDump(const ByteDump& dump, char* text) {
  if (dump.pBuffer != nullptr && dump.iSize == 4) {
    return WriteShortDump(dump.pBuffer, text, std::make_index_sequence<3>());
  }
  if (dump.pBuffer != nullptr && dump.iSize == 8) {
    return WriteShortDump(dump.pBuffer, text, std::make_index_sequence<7>());
  }
  return dump.Write(text);
}

// Kept: 27. Hexadecimal without a prefix.
VEXTREL_ALWAYS_INLINE char* WriteEntry(const PORT_REGISTER_STACK_ENTRY& entry, std::uint32_t index,
                                       char* text) {
  text = index < kOneDigit ? WritePieceWithDigit<kAddressAndValue>(index, text)
                           : WritePiece<kValue>(WriteHex(index, WritePiece<kAddress>(text)));
  text = WriteLowerHex16(entry.Address, text);
  text = WriteDump({entry.pBuffer, entry.Size}, WritePiece<kBuffer>(text));
  if (entry.Size < kOneDigit) {
    return WritePieceWithDigit<kSizeAndEnd>(entry.Size, text);
  }
  text = WriteHex(std::uint64_t{entry.Size}, WritePiece<kSize>(text));
  *text = ';';
  return text + 1;
}

// The length of an entry's dump, or one more.
VEXTREL_ALWAYS_INLINE std::size_t MostOfDump(const PORT_REGISTER_STACK_ENTRY& entry) {
  return entry.pBuffer == nullptr ? 0 : entry.Size * kDumpItemSize + entry.Size / kBytesPerDumpLine;
}

}  // namespace

RenderedText RenderPortData(const PORT_REGISTER_STACK_ENTRY* pEntries, std::size_t iNumEntries,
                            std::span<char> room) {
  const std::uint32_t count = CountOf(iNumEntries);
  std::size_t limit = kSlack + count * kMostOfEntry;
  for (std::uint32_t i = 0; i < count; ++i) {
    limit += MostOfDump(pEntries[i]);
  }
  return RenderedText::AtMost(limit, room, [pEntries, count](char* text) {
    for (std::uint32_t i = 0; i < count; ++i) {
      text = WriteEntry(pEntries[i], i, text);
    }
    return text;
  });
}

}  // namespace vextrel
