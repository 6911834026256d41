// Starting another program.
#ifndef VEXTREL_BENCHMARKS_START_H
#define VEXTREL_BENCHMARKS_START_H

#include <filesystem>

namespace vextrel_benchmark {

// The file name of the consumer that makes one call.
[[nodiscard]] const char* FirstCallProgram();

// Runs the program with that argument to its end; true if it succeeds.
[[nodiscard]] bool RunProgram(const std::filesystem::path& program,
                              const std::filesystem::path& argument);

}  // namespace vextrel_benchmark

#endif  // VEXTREL_BENCHMARKS_START_H
