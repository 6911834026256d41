// SPDX-License-Identifier: MIT
// Captures the channel of a log that nobody has configured: the debugger output on Windows,
// standard error elsewhere.
#ifndef VEXTREL_TESTS_SUPPORT_DEBUG_OUTPUT_H
#define VEXTREL_TESTS_SUPPORT_DEBUG_OUTPUT_H

#include <string>

namespace vextrel_test {

// Records the channel during its lifetime. REQUIRES: no other recorder, and no other thread.
class DebugOutput {
 public:
  DebugOutput();
  ~DebugOutput();
  DebugOutput(const DebugOutput&) = delete;
  DebugOutput& operator=(const DebugOutput&) = delete;

  // Everything recorded so far.
  [[nodiscard]] std::string Text() const;

 private:
  void* state_;
};

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_SUPPORT_DEBUG_OUTPUT_H
