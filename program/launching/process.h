// SPDX-License-Identifier: MIT
// The traced application: started with our console, its own arguments and its own variables, and
// waited for. One file for each system.
#ifndef VEXTREL_PROGRAM_LAUNCHING_PROCESS_H
#define VEXTREL_PROGRAM_LAUNCHING_PROCESS_H

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "launching/fault.h"
#include "launching/variables.h"

namespace vextrel::program {

struct StartRequest {
  std::filesystem::path file;
  std::vector<std::string> arguments;  // from the program's own name on
  Variables variables;
  // Neither input nor output: for a process that isn't the user's.
  bool isSilent = false;
};

class Process {
 public:
  // Throws LaunchFailure with a sentence if it can't be started.
  explicit Process(const StartRequest& request);
  // Leaves it running.
  ~Process();
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  // Returns its exit status; 128 and the signal's number if a signal ended it.
  [[nodiscard]] int WaitForEnd();
  // Returns nothing if it still runs after that time.
  [[nodiscard]] std::optional<int> WaitFor(std::chrono::milliseconds limit);
  void Kill();

  // True iff a process that it started goes on. Call it after the end of the process itself.
  [[nodiscard]] bool DescendantsGoOn();
  // Waits for them, or until the user interrupts us.
  void WaitForDescendants();

 private:
  std::intptr_t process_ = 0;
  [[maybe_unused]] std::intptr_t group_ = 0;  // only some systems need it
};

// As long as it lives, Ctrl-C doesn't end us, and what would end us is passed on to the process
// that was started last. REQUIRES: no other one lives.
class InterruptionGuard {
 public:
  InterruptionGuard();
  ~InterruptionGuard();
  InterruptionGuard(const InterruptionGuard&) = delete;
  InterruptionGuard& operator=(const InterruptionGuard&) = delete;

  [[nodiscard]] static bool WasInterrupted() noexcept;
};

// ERROR_ELEVATION_REQUIRED of Windows
inline constexpr std::uint32_t kWantsElevation = 740;

// What the error means with which Windows refused to start a program. The text comes without the
// program's name.
[[nodiscard]] Fault WhyNotStarted(std::uint32_t error);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_LAUNCHING_PROCESS_H
