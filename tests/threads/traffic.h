// SPDX-License-Identifier: MIT
// What many threads call at the same time, and the lines that they get.
#ifndef VEXTREL_TESTS_THREADS_TRAFFIC_H
#define VEXTREL_TESTS_THREADS_TRAFFIC_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "support/gentl_functions.h"

namespace vextrel_test {

inline constexpr unsigned kThreads = 8;
inline constexpr unsigned kBuffersPerThread = 8;

// The streams: one for each thread, and one that all of them share.
inline constexpr unsigned kSharedStream = kThreads;
inline constexpr unsigned kStreams = kThreads + 1;

[[nodiscard]] DS_HANDLE StreamHandle(unsigned stream);
[[nodiscard]] EVENT_HANDLE EventHandle(unsigned stream);
// A buffer of that thread on that stream.
[[nodiscard]] BUFFER_HANDLE BufferHandle(unsigned stream, unsigned thread, unsigned index);

// The calls of one thread, in a fixed order, alternately on the thread's own stream and on the
// shared one. Each carries its number in this order, in an argument or else in the target's answer.
// Used by that thread, and by others once it has ended.
class Caller {
 public:
  explicit Caller(unsigned thread) : thread_(thread) {}

  // Makes the call of that number, and returns its result.
  [[nodiscard]] GC_ERROR Call(const GenTLFunctions& proxy, std::uint32_t number);

  // The line that the call of that number writes, as far as it is Vextrel's.
  [[nodiscard]] std::string LineOf(std::uint32_t number) const;

 private:
  [[nodiscard]] std::uint64_t Address(std::uint32_t number) const;

  const unsigned thread_;
  // The consumer's variables.
  INFO_DATATYPE type_ = -1;
  std::array<std::uint8_t, 8> buffer_{};
  std::size_t size_ = 0;
};

// The functions of a target that answers these calls.
[[nodiscard]] GenTLFunctions TrafficTarget();

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_THREADS_TRAFFIC_H
