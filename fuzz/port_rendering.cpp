// The dumps of register and event data over memory of exactly the size that they may read.
#include "calllog/port_rendering.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <iomanip>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "check.h"
#include "dump_model.h"
#include "exact_memory.h"

namespace {

using vextrel_fuzz::CheckText;
using vextrel_fuzz::Dump;
using vextrel_fuzz::ExactMemory;
using vextrel_fuzz::WriteDump;

// The bytes of one access: a few of the input's own, or many, so that a dump has several chunks.
std::string Data(FuzzedDataProvider& data) {
  const std::string piece = data.ConsumeRandomLengthString(64);
  std::string bytes;
  for (auto count = data.ConsumeIntegralInRange(0, 40); count >= 0; --count) {
    bytes += piece;
  }
  return bytes;
}

// Stacked accesses, and the text that they make.
class Stack {
 public:
  explicit Stack(FuzzedDataProvider& data) {
    // One stream, which is never set back to decimal, makes the whole text.
    std::ostringstream text;
    while (data.remaining_bytes() > 0 && entries_.size() < 40) {
      Add(data, text);
    }
    text << '\0';
    text_ = text.str();
  }

  [[nodiscard]] const std::string& text() const { return text_; }
  // Their count in its low half; what stands in the high half is not looked at.
  [[nodiscard]] std::size_t Count(std::uint32_t highHalf) const {
    return (std::size_t{highHalf} << 32U) | entries_.size();
  }
  // Exactly as much memory as there are entries.
  [[nodiscard]] std::string_view bytes() const {
    return {reinterpret_cast<const char*>(entries_.data()),
            entries_.size() * sizeof(PORT_REGISTER_STACK_ENTRY)};
  }

 private:
  void Add(FuzzedDataProvider& data, std::ostream& text) {
    const auto address = data.ConsumeIntegral<std::uint64_t>();
    const bool hasBuffer = data.ConsumeBool();
    const std::string bytes = hasBuffer ? Data(data) : std::string();
    const std::size_t size = hasBuffer ? bytes.size() : data.ConsumeIntegral<std::size_t>();
    text << "Address[" << entries_.size() << "], 0x" << std::hex << std::setw(16)
         << std::setfill('0') << address << "->(Buffer='" << Dump(bytes) << "'), iSize=" << size
         << ";";
    PORT_REGISTER_STACK_ENTRY entry{};
    entry.Address = address;
    entry.pBuffer =
        hasBuffer
            ? memory_.emplace_back(bytes, data.ConsumeIntegralInRange<std::size_t>(0, 15)).data()
            : nullptr;
    entry.Size = size;
    entries_.push_back(entry);
  }

  std::vector<PORT_REGISTER_STACK_ENTRY> entries_;
  std::deque<ExactMemory> memory_;
  std::string text_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  FuzzedDataProvider data(bytes, size);
  const auto shift = data.ConsumeIntegralInRange<std::size_t>(0, 15);
  const auto highHalf = data.ConsumeIntegral<std::uint32_t>();
  const std::string dumped = Data(data);
  const ExactMemory memory(dumped, shift);
  CheckText(vextrel::RenderByteDump(memory.data(), dumped.size()).view(), Dump(dumped) + '\0');
  CheckText(vextrel::RenderByteDump(nullptr, highHalf).view(), std::string_view("", 1));

  const Stack stack(data);
  const ExactMemory entries(stack.bytes(), 0);
  CheckText(vextrel::RenderPortData(reinterpret_cast<PORT_REGISTER_STACK_ENTRY*>(entries.data()),
                                    stack.Count(highHalf)),
            stack.text());
  // A count whose low half is negative, or none.
  CheckText(
      vextrel::RenderPortData(nullptr, std::size_t{highHalf} << 31U & ~std::size_t{0x7FFFFFFF}),
      std::string_view("", 1));
  return 0;
}
