// SPDX-License-Identifier: MIT
// Lines whose format is part of the code, as those of all calls are, with random values, against
// the model's printf.
#include <fuzzer/FuzzedDataProvider.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "calllog/byte_dump.h"
#include "calllog/line_format.h"
#include "calllog/port_rendering.h"
#include "calllog/rendered_text.h"
#include "check.h"
#include "exact_memory.h"
#include "letters.h"
#include "model/rendering.h"
#include "model/windows_printf.h"

namespace {

using namespace vextrel::literals;
using vextrel::FormatLine;
using vextrel::kNoValue;
using vextrel::Misplaced;
using vextrel_fuzz::CheckText;
using vextrel_fuzz::ExactMemory;
using vextrel_fuzz::Letters;
namespace model = vextrel_test::model;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  FuzzedDataProvider data(bytes, size);
  const auto number = data.ConsumeIntegral<std::uint64_t>();
  const auto integer = data.ConsumeIntegral<std::int32_t>();
  const auto* address = reinterpret_cast<const void*>(data.ConsumeIntegral<std::uintptr_t>());
  const auto shift = data.ConsumeIntegralInRange<std::size_t>(0, 40);
  const bool isNull = data.ConsumeBool();
  const std::string letters = Letters(data);
  const std::string port = Letters(data);

  const std::string shown = letters.c_str();
  const ExactMemory memory({shown.c_str(), shown.size() + 1}, shift);
  const char* text = isNull ? nullptr : memory.data();
  const ExactMemory portMemory(port, shift);
  const vextrel::ByteDump dump{portMemory.data(), port.size()};
  const vextrel::RenderedText rendered{letters, letters};

  const std::string dumped = model::RenderDump(portMemory.data(), port.size());

  CheckText(
      FormatLine(
          "%s=GCReadPort(hPort=0x%p, iAddress=0x%llx, 0x%p->(Buffer=%s,%s), 0x%p->(iSize=%u)"_line,
          rendered, address, number, text, text, dump, address, number),
      model::Print("%s=GCReadPort(hPort=0x%p, iAddress=0x%llx, 0x%p->(Buffer=%s,%s), "
                   "0x%p->(iSize=%u)",
                   {letters + letters, address, number, text, text, dumped, address, number})
          .Text());

  CheckText(
      FormatLine("%lu|%d|0x%x|%s|%s|%s|%p|%u|%llx"_line, number, integer, number, Misplaced(number),
                 letters, dump, Misplaced(letters), kNoValue, kNoValue),
      model::Print("%lu|%d|0x%x|%s|%s|%s|%p|%u|%llx",
                   {number, integer, number, number, letters, dumped, {letters, letters.data()}})
          .Text());
  return 0;
}
