// SPDX-License-Identifier: MIT
// A program in a console of its own, and somebody at its keys. One file for each system.
#ifndef VEXTREL_TESTS_PROGRAM_CONSOLE_PROGRAM_H
#define VEXTREL_TESTS_PROGRAM_CONSOLE_PROGRAM_H

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace vextrel_test {

class ConsoleProgram {
 public:
  // `arguments` without the program's own name. What it says is in the file `errors` at the end.
  ConsoleProgram(const std::filesystem::path& program, std::vector<std::string> arguments,
                 const std::filesystem::path& errors);
  // Kills it if it still runs.
  ~ConsoleProgram();
  ConsoleProgram(const ConsoleProgram&) = delete;
  ConsoleProgram& operator=(const ConsoleProgram&) = delete;

  // False if there's no console to be had, such as in a root folder without /dev/pts.
  [[nodiscard]] bool HasStarted() const noexcept { return process_ > 0; }
  // Reaches every process of the console.
  void PressCtrlC() const;
  // Returns its exit status; -1 if it couldn't be started, or takes longer than a minute.
  [[nodiscard]] int WaitForEnd();

 private:
  std::intptr_t process_ = 0;
  [[maybe_unused]] int terminal_ = -1;     // only Linux needs it
  [[maybe_unused]] std::uint32_t id_ = 0;  // only Windows needs it
};

// Ends another process as a task manager does.
void EndProcess(std::uint32_t id);
// What such a process leaves as its exit status.
extern const int kEndedStatus;

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_PROGRAM_CONSOLE_PROGRAM_H
