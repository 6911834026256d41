// SPDX-License-Identifier: MIT
// The dumps of register and event data over memory of exactly the size that they may read.
#include "calllog/port_rendering.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "calllog/byte_dump.h"
#include "check.h"
#include "exact_memory.h"
#include "model/rendering.h"

namespace {

using vextrel_fuzz::CheckText;
using vextrel_fuzz::ExactMemory;
namespace model = vextrel_test::model;

// The bytes of one access: a few of the input's own, or many, so that a dump has several chunks.
std::string Data(FuzzedDataProvider& data) {
  const std::string piece = data.ConsumeRandomLengthString(64);
  std::string bytes;
  for (auto count = data.ConsumeIntegralInRange(0, 40); count >= 0; --count) {
    bytes += piece;
  }
  return bytes;
}

// Stacked accesses, each to memory of its own.
class Stack {
 public:
  explicit Stack(FuzzedDataProvider& data) {
    while (data.remaining_bytes() > 0 && entries_.size() < 40) {
      Add(data);
    }
  }

  [[nodiscard]] std::size_t Size() const { return entries_.size(); }
  // Exactly as much memory as there are entries.
  [[nodiscard]] std::string_view Bytes() const {
    return {reinterpret_cast<const char*>(entries_.data()),
            entries_.size() * sizeof(PORT_REGISTER_STACK_ENTRY)};
  }

 private:
  void Add(FuzzedDataProvider& data) {
    const auto address = data.ConsumeIntegral<std::uint64_t>();
    if (!data.ConsumeBool()) {
      entries_.push_back({address, nullptr, data.ConsumeIntegral<std::size_t>()});
      return;
    }
    const std::string bytes = Data(data);
    const auto shift = data.ConsumeIntegralInRange<std::size_t>(0, 15);
    entries_.push_back({address, memory_.emplace_back(bytes, shift).data(), bytes.size()});
  }

  std::vector<PORT_REGISTER_STACK_ENTRY> entries_;
  std::deque<ExactMemory> memory_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  FuzzedDataProvider data(bytes, size);
  const auto shift = data.ConsumeIntegralInRange<std::size_t>(0, 15);
  const auto highHalf = data.ConsumeIntegral<std::uint32_t>();
  const std::string dumped = Data(data);
  const ExactMemory memory(dumped, shift);
  CheckText(vextrel::RenderByteDump(memory.data(), dumped.size()).view(),
            model::RenderDump(memory.data(), dumped.size()) + '\0');
  CheckText(vextrel::RenderByteDump(nullptr, highHalf).view(), std::string_view("", 1));

  const Stack stack(data);
  const ExactMemory memoryOfEntries(stack.Bytes(), 0);
  const auto* entries = reinterpret_cast<PORT_REGISTER_STACK_ENTRY*>(memoryOfEntries.data());
  // What stands in the high half of the count is not looked at.
  CheckText(vextrel::RenderPortData(entries, (std::size_t{highHalf} << 32U) | stack.Size()).view(),
            model::RenderPortData(entries, stack.Size()) + '\0');
  vextrel::RoomForPortData room;
  CheckText(vextrel::RenderPortData(entries, stack.Size(), room).view(),
            model::RenderPortData(entries, stack.Size()) + '\0');
  // A count whose low half is negative, or none.
  CheckText(
      vextrel::RenderPortData(nullptr, std::size_t{highHalf} << 31U & ~std::size_t{0x7FFFFFFF})
          .view(),
      std::string_view("", 1));
  return 0;
}
