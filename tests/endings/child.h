// A program that runs beside the test and has to end in time.
#ifndef VEXTREL_TESTS_ENDINGS_CHILD_H
#define VEXTREL_TESTS_ENDINGS_CHILD_H

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

namespace vextrel_test {

// How a program ended.
struct Ending {
  enum class Kind { kExited, kKilled, kTooLate, kNotStarted };

  Kind kind;
  int code;  // the exit code, or the signal that killed it

  bool operator==(const Ending&) const = default;
};

// Shown when an expectation fails.
void PrintTo(const Ending& ending, std::ostream* out);

class Child {
 public:
  // Arguments must not hold quotes.
  Child(const std::filesystem::path& program, const std::vector<std::string>& arguments);
  // Ends the program if it still runs.
  ~Child();
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  // Waits for the end; a program that runs longer is ended and counts as too late.
  [[nodiscard]] Ending WaitFor(std::chrono::seconds limit);

 private:
  void* process_ = nullptr;  // the system's handle or number
};

// How KillThisProcess shows in a child's ending.
extern const Ending kKilledEnding;
// Ends the calling process at once, as another one would.
[[noreturn]] void KillThisProcess();

// Ends the calling process by the system's own call, past the C runtime.
[[noreturn]] void ExitThisProcess(int code);

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_ENDINGS_CHILD_H
