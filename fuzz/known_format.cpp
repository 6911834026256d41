// Lines whose format is part of the code, as those of all calls are, with random values, against
// the C library's own formatting.
#include <fuzzer/FuzzedDataProvider.h>

#include <cinttypes>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

#include "calllog/line_format.h"
#include "calllog/port_rendering.h"
#include "calllog/rendered_text.h"
#include "check.h"
#include "dump_model.h"
#include "exact_memory.h"
#include "letters.h"

namespace {

using namespace vextrel::literals;
using vextrel::FormatLine;
using vextrel::Misplaced;
using vextrel::noValue;
using vextrel_fuzz::CheckText;
using vextrel_fuzz::Dump;
using vextrel_fuzz::ExactMemory;
using vextrel_fuzz::Letters;

template <typename Number>
std::string Printed(const char* format, Number number) {
  char text[32];
  std::snprintf(text, sizeof text, format, number);
  return text;
}

std::string Address(const void* address) {
  return Printed("%016" PRIX64,
                 static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(address)));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  FuzzedDataProvider data(bytes, size);
  const auto number = data.ConsumeIntegral<std::uint64_t>();
  const auto low32 = static_cast<std::uint32_t>(number);
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

  CheckText(
      FormatLine(
          "%s=GCReadPort(hPort=0x%p, iAddress=0x%llx, 0x%p->(Buffer=%s,%s), 0x%p->(iSize=%u)"_line,
          rendered, address, number, text, text, dump, address, number),
      std::string((letters + letters).c_str()) + "=GCReadPort(hPort=0x" + Address(address) +
          ", iAddress=0x" + Printed("%" PRIx64, number) + ", 0x" + Address(text) +
          "->(Buffer=" + (isNull ? "(null)" : shown) + "," + Dump(port) + "), 0x" +
          Address(address) + "->(iSize=" + Printed("%" PRIu32, low32) + ")");

  CheckText(FormatLine("%lu|%d|0x%x|%s|%s|%s|%p|%u|%llx"_line, number, integer, number,
                       Misplaced(number), letters, dump, Misplaced(letters), noValue, noValue),
            Printed("%" PRIu32, low32) + "|" + Printed("%" PRId32, integer) + "|0x" +
                Printed("%" PRIx32, low32) + "|" + Printed("%" PRIu64, number) + "|" + shown + "|" +
                Dump(port) + "|" + Address(letters.data()) + "|0|0");
  return 0;
}
