// The sample consumer in a process of its own, traced by vextrel.cti on its way to the simulated
// camera.
#ifndef VEXTREL_TESTS_GOLDEN_TRACED_RUN_H
#define VEXTREL_TESTS_GOLDEN_TRACED_RUN_H

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "samples/child_process.h"

namespace golden {

struct TracedRun {
  child_process::Outcome outcome;
  std::string log;  // "LEVEL message" lines with '\n' line ends, all other bytes as they are
};

// `name` is that of a folder for the run's files. Without a frame rate, in frames per second, the
// camera has its own.
[[nodiscard]] TracedRun Trace(const std::string& name, const std::vector<std::string>& arguments,
                              const std::optional<std::string>& frameRate);

// The camera's module as the environment names it.
[[nodiscard]] std::string CameraPath();

// All bytes of a file, with '\n' line ends.
[[nodiscard]] std::string ReadLog(const std::filesystem::path& file);

}  // namespace golden

#endif  // VEXTREL_TESTS_GOLDEN_TRACED_RUN_H
