// SPDX-License-Identifier: MIT
#include "calllog/info_rendering.h"

#include <cstdint>
#include <cstring>
#include <string_view>

#include "calllog/digits.h"
#include "calllog/value_tables.h"

namespace vextrel {
namespace {

// Kept: 24.
constexpr INFO_DATATYPE kNamelessUint32 = 14;

// A consumer's buffer needn't be aligned for its value.
template <typename Value>
Value ReadAs(const void* pBuffer) {
  Value value;
  std::memcpy(&value, pBuffer, sizeof value);
  return value;
}

template <typename Number>
RenderedText RenderNumber(const void* pBuffer) {
  return RenderedText::Number(
      [pBuffer](char* text) { return WriteDecimal(ReadAs<Number>(pBuffer), text); });
}

RenderedText RenderQuoted(std::string_view text) {
  return {text.size() + 2, [text](char* end) {
            *end++ = '\'';
            end += text.copy(end, text.size());
            *end = '\'';
          }};
}

}  // namespace

RenderedText RenderInfoValue(INFO_DATATYPE type, const void* pBuffer, std::size_t /*iSize*/) {
  if (type == INFO_DATATYPE_STRINGLIST) {
    return RenderedText::Name("STRINGLIST");  // Kept: 23.
  }
  if (type < INFO_DATATYPE_UNKNOWN || type > kNamelessUint32) {
    return {names::kInfoDatatype.unknown, Digits::Decimal(type).view(), ")"};
  }
  if (pBuffer == nullptr) {
    return RenderedText::Name("NULL");
  }
  switch (type) {
    case INFO_DATATYPE_STRING:
      return RenderQuoted(static_cast<const char*>(pBuffer));
    case INFO_DATATYPE_INT16:
      return RenderNumber<std::int16_t>(pBuffer);
    case INFO_DATATYPE_UINT16:
      return RenderNumber<std::uint16_t>(pBuffer);
    case INFO_DATATYPE_INT32:
    case INFO_DATATYPE_INT64:  // Kept: 21.
      return RenderNumber<std::int32_t>(pBuffer);
    case INFO_DATATYPE_UINT32:
    case INFO_DATATYPE_UINT64:  // Kept: 21.
    case kNamelessUint32:
      return RenderNumber<std::uint32_t>(pBuffer);
    case INFO_DATATYPE_FLOAT64:
      return RenderedText::Number(
          [pBuffer](char* text) { return WriteGeneral(ReadAs<double>(pBuffer), text); });
    case INFO_DATATYPE_BOOL8:
      return RenderedText::Name(ReadAs<std::uint8_t>(pBuffer) != 0 ? "1" : "0");
    case INFO_DATATYPE_SIZET:
      return RenderNumber<std::uint64_t>(pBuffer);
    case INFO_DATATYPE_BUFFER:
      return RenderBufferValue(pBuffer);
    default:
      // Kept: 22. INFO_DATATYPE_UNKNOWN and INFO_DATATYPE_PTR.
      return RenderAddress(pBuffer);
  }
}

RenderedText RenderAddress(const void* address) {
  if (address == nullptr) {
    return RenderedText::Name("NULL");
  }
  return RenderedText::Number([address](char* text) { return WriteAddress(address, text); });
}

RenderedText RenderPointerSlot(const void* const* slot) {
  if (slot == nullptr) {
    return RenderedText::Name("NULL");
  }
  const void* stored = *slot;
  if (stored == nullptr) {
    // Kept: 26. No blank here.
    return {Digits::Address(static_cast<const void*>(slot)).view(), "(NULL)"};
  }
  return {Digits::Address(static_cast<const void*>(slot)).view(), " (",
          Digits::Address(stored).view(), ")"};
}

RenderedText RenderBufferValue(const void* pBuffer) {
  if (pBuffer == nullptr) {
    return RenderedText::Name("NULL");
  }
  // Kept: 25.
  const auto* text = static_cast<const char*>(pBuffer);
  return {"0x", text, "->(", std::string_view(text, 1), ")"};
}

const char* TextOrNull(const char* text) noexcept {
  return text != nullptr ? text : "NULL";
}

}  // namespace vextrel
