// SPDX-License-Identifier: MIT
// The info renderers over memory of exactly the size that they may read.
#include "calllog/info_rendering.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "check.h"
#include "exact_memory.h"
#include "model/rendering.h"

namespace {

using vextrel_fuzz::Check;
using vextrel_fuzz::CheckText;
using vextrel_fuzz::ExactMemory;
using vextrel_test::model::RenderInfo;

// What a renderer returns ends with one NUL.
std::string WithNul(const std::string& text) {
  return text + '\0';
}

// How much of the memory a type reads, whatever the buffer's size; nothing for one that shows where
// the buffer lies, or no value at all.
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

void CheckInfo(INFO_DATATYPE type, const void* buffer, std::size_t size) {
  CheckText(vextrel::RenderInfoValue(type, buffer, size).view(), WithNul(RenderInfo(type, buffer)));
}

void CheckPointers(const void* stored) {
  const void* slot = stored;
  CheckText(vextrel::RenderPointerSlot(&slot).view(),
            WithNul(vextrel_test::model::RenderSlot(&slot)));
  CheckText(vextrel::RenderAddress(stored).view(), WithNul(RenderInfo(0, stored)));
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
  CheckInfo(type, nullptr, anything);
  if (type == INFO_DATATYPE_STRING || type == INFO_DATATYPE_BUFFER) {
    const std::string text = data.ConsumeRemainingBytesAsString().c_str();
    const ExactMemory memory({text.c_str(), text.size() + 1}, shift);
    CheckInfo(type, memory.data(), anything);
    CheckText(vextrel::RenderBufferValue(memory.data()).view(),
              WithNul(RenderInfo(INFO_DATATYPE_BUFFER, memory.data())));
    Check(vextrel::TextOrNull(memory.data()) == memory.data(), "a text is not copied");
  } else if (const auto fixedSize = FixedSize(type)) {
    std::string value = data.ConsumeRemainingBytesAsString();
    value.resize(*fixedSize);
    CheckInfo(type, ExactMemory(value, shift).data(), anything);
  } else {
    // Nothing is read: an address that cannot be will do.
    CheckInfo(type, address, anything);
  }
  return 0;
}
