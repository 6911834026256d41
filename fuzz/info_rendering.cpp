// The info renderers over memory of exactly the size that they may read.
#include "calllog/info_rendering.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <cinttypes>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <optional>
#include <sstream>
#include <string>

#include "check.h"
#include "exact_memory.h"

namespace {

using vextrel_fuzz::Check;
using vextrel_fuzz::CheckText;
using vextrel_fuzz::ExactMemory;

// What a renderer returns ends with one NUL.
std::string WithNul(const std::string& text) {
  return text + '\0';
}

std::string Address(const void* address) {
  char text[32] = {};
  std::snprintf(text, sizeof text, "0x%016" PRIXPTR, reinterpret_cast<std::uintptr_t>(address));
  return text;
}

// A value as a stream shows it.
template <typename Value>
std::string Shown(const char* memory) {
  Value value;
  std::memcpy(&value, memory, sizeof value);
  std::ostringstream text;
  text << value;
  return text.str();
}

// How much of the memory a type has read, whatever the buffer's size; nothing for one that shows
// where the buffer lies, or no value at all.
std::optional<std::size_t> FixedSize(INFO_DATATYPE type) {
  switch (type) {
    case INFO_DATATYPE_BOOL8:
      return 1;
    case INFO_DATATYPE_INT16:
    case INFO_DATATYPE_UINT16:
      return 2;
    case INFO_DATATYPE_INT32:
    case INFO_DATATYPE_UINT32:
    case INFO_DATATYPE_INT64:   // its low half
    case INFO_DATATYPE_UINT64:  // its low half
    case 14:
      return 4;
    case INFO_DATATYPE_FLOAT64:
    case INFO_DATATYPE_SIZET:
      return 8;
    default:
      return std::nullopt;
  }
}

std::string ExpectedNumber(INFO_DATATYPE type, const char* memory) {
  switch (type) {
    case INFO_DATATYPE_BOOL8:
      return *memory != 0 ? "1" : "0";
    case INFO_DATATYPE_INT16:
      return Shown<std::int16_t>(memory);
    case INFO_DATATYPE_UINT16:
      return Shown<std::uint16_t>(memory);
    case INFO_DATATYPE_INT32:
    case INFO_DATATYPE_INT64:
      return Shown<std::int32_t>(memory);
    case INFO_DATATYPE_FLOAT64:
      return Shown<double>(memory);
    case INFO_DATATYPE_SIZET:
      return Shown<std::uint64_t>(memory);
    default:
      return Shown<std::uint32_t>(memory);
  }
}

std::string Unknown(INFO_DATATYPE type) {
  return "(Unknown INFO_DATATYPE: " + std::to_string(type) + ")";
}

// Types that read no memory are given an address that cannot be read.
std::string ExpectedWithoutReading(INFO_DATATYPE type, const void* address) {
  if (type == INFO_DATATYPE_STRINGLIST) {
    return "STRINGLIST";
  }
  if (type < 0 || type > 14) {
    return Unknown(type);
  }
  return address == nullptr ? "NULL" : Address(address);
}

void CheckTexts(FuzzedDataProvider& data, std::size_t shift) {
  const std::string text = data.ConsumeRemainingBytesAsString().c_str();
  const ExactMemory memory({text.c_str(), text.size() + 1}, shift);
  CheckText(vextrel::RenderInfoValue(INFO_DATATYPE_STRING, memory.data(), 0).view(),
            WithNul("'" + text + "'"));
  const std::string buffer = WithNul("0x" + text + "->(" + std::string(1, text.c_str()[0]) + ")");
  CheckText(vextrel::RenderInfoValue(INFO_DATATYPE_BUFFER, memory.data(), 0).view(), buffer);
  CheckText(vextrel::RenderBufferValue(memory.data()).view(), buffer);
  Check(vextrel::TextOrNull(memory.data()) == memory.data(), "a text is not copied");
}

void CheckPointers(const void* stored) {
  const void* slot = stored;
  const void* const* where = &slot;
  CheckText(vextrel::RenderPointerSlot(where).view(),
            WithNul(Address(static_cast<const void*>(where)) +
                    (stored == nullptr ? "(NULL)" : " (" + Address(stored) + ")")));
  CheckText(vextrel::RenderAddress(stored).view(),
            WithNul(stored == nullptr ? "NULL" : Address(stored)));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  FuzzedDataProvider data(bytes, size);
  const auto type = data.ConsumeBool() ? data.ConsumeIntegralInRange<INFO_DATATYPE>(-2, 17)
                                       : data.ConsumeIntegral<INFO_DATATYPE>();
  const auto shift = data.ConsumeIntegralInRange<std::size_t>(0, 15);
  const auto anything = data.ConsumeIntegral<std::size_t>();
  const auto* address = reinterpret_cast<const void*>(data.ConsumeIntegral<std::uintptr_t>());
  CheckPointers(address);
  if (type == INFO_DATATYPE_STRING || type == INFO_DATATYPE_BUFFER) {
    CheckTexts(data, shift);
    address = nullptr;
  } else if (const auto fixedSize = FixedSize(type)) {
    std::string value = data.ConsumeRemainingBytesAsString();
    value.resize(*fixedSize);
    const ExactMemory memory(value, shift);
    CheckText(vextrel::RenderInfoValue(type, memory.data(), anything).view(),
              WithNul(ExpectedNumber(type, memory.data())));
    address = nullptr;
  }
  CheckText(
      vextrel::RenderInfoValue(type, address, anything).view(),
      WithNul(address == nullptr && type != INFO_DATATYPE_STRINGLIST && type >= 0 && type <= 14
                  ? "NULL"
                  : ExpectedWithoutReading(type, address)));
  return 0;
}
