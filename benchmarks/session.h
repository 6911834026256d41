// SPDX-License-Identifier: MIT
// A proxy in front of a target that does nothing, with a tree of open handles.
#ifndef VEXTREL_BENCHMARKS_SESSION_H
#define VEXTREL_BENCHMARKS_SESSION_H

#include <array>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include "support/gentl_functions.h"
#include "support/system.h"

namespace vextrel_bench {

enum class Mode {
  Direct,   // the target without the proxy
  Off,      // the proxy, INFO switched off
  Basic,    // the proxy, logging to a file with BasicLayout
  Pattern,  // the proxy, logging as config/file.properties does: date and thread
  Fast      // the proxy, logging as config/high-frame-rate.properties does
};

[[nodiscard]] std::string_view ModeName(Mode mode);

enum class Edition {
  Plain,     // vextrel.cti
  Extended,  // vextrel_extended.cti, its timing lines silent
  Timed      // the same with timing lines
};

// "extended-off" and so on; the mode's name alone for Edition::Plain.
[[nodiscard]] std::string SessionName(Mode mode, Edition edition);

// The lines of a log4cpp configuration that set the layout of appender.file.
[[nodiscard]] std::string_view LayoutOf(Mode mode);

// A folder for log files next to the running program.
[[nodiscard]] std::filesystem::path ScratchFolder();

// Loads a copy of the module, so that each session of the process has a log4cpp of its own.
// Announces `buffers` buffers, whose handles are BufferHandle(0) to BufferHandle(buffers - 1).
class Session {
 public:
  // REQUIRES: `edition` is Edition::Plain if `mode` is Mode::Direct.
  explicit Session(Mode mode, Edition edition = Edition::Plain, std::size_t buffers = 16);
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  [[nodiscard]] const vextrel_test::GenTLFunctions& Functions() const { return functions_; }
  [[nodiscard]] std::size_t Buffers() const { return buffers_; }
  [[nodiscard]] const std::filesystem::path& LogFile() const { return logFile_; }

 private:
  void Load(const std::filesystem::path& path);

  std::size_t buffers_;
  std::filesystem::path copy_;
  std::filesystem::path logFile_;
  std::unique_ptr<vextrel_test::Module> module_;
  vextrel_test::GenTLFunctions functions_;
};

// The handles of all sessions.
[[nodiscard]] inline void* Handle(std::size_t value) {
  return reinterpret_cast<void*>(value);
}
inline constexpr std::size_t kTransportLayer = 0x7F0000001000;
inline constexpr std::size_t kInterface = 0x7F0000002000;
inline constexpr std::size_t kDevice = 0x7F0000003000;
inline constexpr std::size_t kStream = 0x7F0000004000;
inline constexpr std::size_t kPort = 0x7F0000005000;
inline constexpr std::size_t kNewBufferEvent = 0x7F0000006000;
[[nodiscard]] inline void* BufferHandle(std::size_t index) {
  return Handle(0x7F0000010000 + index * 0x100);
}

}  // namespace vextrel_bench

#endif  // VEXTREL_BENCHMARKS_SESSION_H
