// SPDX-License-Identifier: MIT
// Starts other programs.
#ifndef VEXTREL_BENCHMARKS_START_H
#define VEXTREL_BENCHMARKS_START_H

#include <filesystem>

namespace vextrel_bench {

// The file name of the consumer that makes one call.
[[nodiscard]] const char* FirstCallProgram();

// Runs the program to its end. Returns true iff it exits with 0.
[[nodiscard]] bool RunProgram(const std::filesystem::path& program,
                              const std::filesystem::path& argument);

}  // namespace vextrel_bench

#endif  // VEXTREL_BENCHMARKS_START_H
