// SPDX-License-Identifier: MIT
// Logs that a test writes out, and the program run on them.
#ifndef VEXTREL_TESTS_PROGRAM_SMALL_LOG_H
#define VEXTREL_TESTS_PROGRAM_SMALL_LOG_H

#include <string>
#include <string_view>
#include <vector>

namespace vextrel_test {

// A file with a name of its own in a folder of its own; both are gone at the end.
class ScratchFile {
 public:
  explicit ScratchFile(std::string_view text, const std::string& name = "app.log");
  ~ScratchFile();
  ScratchFile(const ScratchFile&) = delete;
  ScratchFile& operator=(const ScratchFile&) = delete;

  [[nodiscard]] const std::string& Path() const noexcept { return path_; }
  // Another file in the same folder. Returns its path.
  [[nodiscard]] std::string Beside(std::string_view text, const std::string& name) const;
  void Append(std::string_view text) const;

 private:
  std::string folder_;
  std::string path_;
};

// A line of the layout that config/file.properties asks for, at so many milliseconds after
// 2026-11-21 12:00:00.000, of thread `thread`.
[[nodiscard]] std::string LogLine(int milliseconds, std::string_view message,
                                  std::string_view priority = "INFO",
                                  std::string_view thread = "7");

struct ProgramResult {
  int status = -1;
  std::string output;
  std::string errors;
};

// Runs the program in this process.
[[nodiscard]] ProgramResult RunVextrel(const std::vector<std::string>& arguments);

// A small session: a transport layer, an interface, a device that shows half of its handle, one
// stream with two buffers, three frames of which the last comes late, a time-out, and a refused
// device. 35 calls on 35 lines. Comments in small_log.cpp say what each figure follows from.
[[nodiscard]] std::string SmallSession();

// Four calls with timing lines, one of which, by thread 8 on line 4, never returns. Each of the
// others is by thread 7 and has its own line after its two timing lines: 3, 7 and 10.
[[nodiscard]] std::string TimedCalls();

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_PROGRAM_SMALL_LOG_H
