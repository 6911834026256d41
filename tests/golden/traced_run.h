// SPDX-License-Identifier: MIT
// The sample consumer in a process of its own, traced on its way to the simulated camera.
#ifndef VEXTREL_TESTS_GOLDEN_TRACED_RUN_H
#define VEXTREL_TESTS_GOLDEN_TRACED_RUN_H

#include <string>
#include <vector>

#include "support/process.h"

namespace vextrel_test {

// Which of the two modules traces, and which of the two cameras is its target.
enum class Edition { Plain, Extended };

struct TracedRun {
  Outcome outcome;
  std::string log;  // "LEVEL message" lines, as ReadFile returns them
};

// Runs the consumer in a folder of that name. Without a frame rate, in frames per second, the
// camera uses its default.
[[nodiscard]] TracedRun Trace(const std::string& name, const std::vector<std::string>& arguments,
                              const char* frameRate, Edition edition = Edition::Plain);

// The camera's module as the environment names it.
[[nodiscard]] std::string CameraPath(Edition edition);

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_GOLDEN_TRACED_RUN_H
