// SPDX-License-Identifier: MIT
// Programs that run beside the test.
#ifndef VEXTREL_TESTS_SUPPORT_PROCESS_H
#define VEXTREL_TESTS_SUPPORT_PROCESS_H

#include <chrono>
#include <filesystem>
#include <iosfwd>
#include <string>
#include <vector>

namespace vextrel_test {

// How a program ended.
struct Ending {
  enum class Kind { Exited, Killed, TooLate, NotStarted };

  Kind kind;
  int code;  // the exit code, or the signal that killed it

  bool operator==(const Ending&) const = default;
};

void PrintTo(const Ending& ending, std::ostream* out);

class Process {
 public:
  // Starts the program, with its output and its errors in the two files unless they are empty.
  // REQUIRES: no argument holds a quote.
  Process(const std::filesystem::path& program, const std::vector<std::string>& arguments,
          const std::filesystem::path& out = {}, const std::filesystem::path& err = {});
  // Kills the program if it is still running.
  ~Process();
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  // Waits for the program, and reports it as too late if it runs for longer.
  [[nodiscard]] Ending WaitFor(std::chrono::seconds limit);

 private:
  void* process_ = nullptr;  // the system's handle or number
};

// What a program leaves behind.
struct Outcome {
  int exitCode = -1;  // also of a program that did not exit by itself
  std::string out;    // with "\n" line ends
  std::string err;
};

// Runs the program and waits for it. REQUIRES: `scratch` is an existing folder, for temporary
// files; no argument holds a quote.
[[nodiscard]] Outcome RunProgram(const std::filesystem::path& program,
                                 const std::vector<std::string>& arguments,
                                 const std::filesystem::path& scratch);

// What a process that KillThisProcess ended reports as its ending.
extern const Ending kKilledEnding;
// Ends the calling process at once, as another process would.
[[noreturn]] void KillThisProcess();

// Ends the calling process by the system's own call, bypassing the C runtime.
[[noreturn]] void ExitThisProcess(int code);

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_SUPPORT_PROCESS_H
