// SPDX-License-Identifier: MIT
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

namespace vextrel_bench {

// One thread of a consumer: its arguments, and the variables for the target's answers. The buffer
// at `bufferIndex` is the one that it queues.
class Consumer {
 public:
  Consumer(const Session& session, std::size_t bufferIndex);

  void QueueBuffer();
  void GetEventData();
  void GetBufferInfoString();
  void GetBufferInfoSize();
  void GetBufferInfoPointer();
  // Reads as many bytes as SetPortSize was given.
  void ReadPort();
  void ReadPortStacked();
  void RegisterAndUnregister();
  // Makes all calls of a fast consumer for one frame.
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

inline constexpr std::size_t kPortSizeOfSmallCalls = 4;

struct Case {
  std::string_view name;
  void (Consumer::*run)();
  std::size_t portSize = kPortSizeOfSmallCalls;
  // The bars for small calls apply. Such a call takes about a microsecond.
  bool isSmall = true;
};

[[nodiscard]] std::span<const Case> Cases();

}  // namespace vextrel_bench

#endif  // VEXTREL_BENCHMARKS_CALLS_H
