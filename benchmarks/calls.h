// The calls that are measured.
#ifndef VEXTREL_BENCHMARKS_CALLS_H
#define VEXTREL_BENCHMARKS_CALLS_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "session.h"

namespace vextrel_benchmark {

// One thread of a consumer: its arguments, and where the target's answers would arrive. Queues the
// buffer at `bufferIndex`; that is its own.
class Consumer {
 public:
  Consumer(const Session& session, std::size_t bufferIndex);

  void QueueBuffer();
  void GetEventData();
  void GetBufferInfoString();
  void GetBufferInfoSize();
  void GetBufferInfoPointer();
  // As many bytes as SetPortSize said.
  void ReadPort();
  void ReadPortStacked();
  void RegisterAndUnregister();
  // What a fast consumer calls for each frame.
  void Frame();

  void SetPortSize(std::size_t bytes);

 private:
  void GetBufferInfo(BUFFER_INFO_CMD command, INFO_DATATYPE type, void* value, std::size_t size);

  const vextrel_test::GenTLFunctions& functions_;
  BUFFER_HANDLE buffer_;
  BUFFER_HANDLE delivered_;
  EVENT_HANDLE event_ = Handle(kNewBufferEvent);
  INFO_DATATYPE type_ = INFO_DATATYPE_UNKNOWN;
  std::size_t size_ = 0;
  std::size_t number_ = 307200;
  void* pointer_ = this;
  std::array<char, 32> text_{"Mono8"};
  std::vector<std::uint8_t> portData_;
  std::array<PORT_REGISTER_STACK_ENTRY, 16> entries_{};
};

struct Case {
  std::string_view name;
  void (Consumer::*run)();
  std::size_t portSize = 4;
  // Small calls run in a microsecond or so; their cost is held to the bars for small functions.
  bool isSmall = true;
};

[[nodiscard]] std::span<const Case> Cases();

}  // namespace vextrel_benchmark

#endif  // VEXTREL_BENCHMARKS_CALLS_H
