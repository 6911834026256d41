// A proxy in front of a target that does nothing, and a tree of handles that is open in it.
#ifndef VEXTREL_BENCHMARKS_SESSION_H
#define VEXTREL_BENCHMARKS_SESSION_H

#include <array>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <string_view>

#include "support/gentl_functions.h"
#include "support/system.h"

namespace vextrel_benchmark {

enum class Mode {
  Direct,   // the target itself
  Off,      // the proxy, INFO switched off
  Basic,    // the proxy, logging to a file with BasicLayout
  Pattern,  // the proxy, logging as config/file.properties does: date and thread
  Fast      // the proxy, logging as config/high-frame-rate.properties does
};

[[nodiscard]] std::string_view ModeName(Mode mode);

// The lines of log4cpp's configuration that give appender.file its layout in that mode.
[[nodiscard]] std::string_view LayoutOf(Mode mode);

// A folder for log files beside the running program.
[[nodiscard]] std::filesystem::path ScratchFolder();

// Makes its own copy of the product: each has a log4cpp of its own, so that several can be
// configured in one process. Announces `buffers` buffers, whose handles are 1 to `buffers`.
class Session {
 public:
  explicit Session(Mode mode, std::size_t buffers = 16);
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  [[nodiscard]] const vextrel_test::GenTLFunctions& functions() const { return functions_; }
  [[nodiscard]] std::size_t buffers() const { return buffers_; }
  [[nodiscard]] const std::filesystem::path& logFile() const { return logFile_; }

 private:
  void Load(const std::filesystem::path& path);

  std::size_t buffers_;
  std::filesystem::path copy_;
  std::filesystem::path logFile_;
  std::unique_ptr<vextrel_test::Module> module_;
  vextrel_test::GenTLFunctions functions_;
};

// What all sessions' trees are made of.
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

}  // namespace vextrel_benchmark

#endif  // VEXTREL_BENCHMARKS_SESSION_H
