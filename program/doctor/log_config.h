// SPDX-License-Identifier: MIT
// A log4cpp property file, read as the module reads it.
#ifndef VEXTREL_PROGRAM_DOCTOR_LOG_CONFIG_H
#define VEXTREL_PROGRAM_DOCTOR_LOG_CONFIG_H

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "launching/fault.h"
#include "launching/variables.h"

namespace vextrel::program {

struct ConfigProblem {
  std::size_t line = 0;  // 0 for the file as a whole
  bool isFatal = true;   // there will be no call log, or not where it's expected
  std::string text;
  std::string remedy;
};

struct LogConfig {
  std::vector<ConfigProblem> problems;  // in the order in which the module meets them
  std::vector<std::string> files;       // that the log is written to
  bool logsCalls = false;
};

[[nodiscard]] LogConfig ReadLogConfig(std::string_view text, const Variables& variables);

// What can be said of a problem in `file`.
[[nodiscard]] Fault FaultOf(const ConfigProblem& problem, const std::filesystem::path& file);

// Why there's no configuration to be read. Nothing if there is.
[[nodiscard]] std::optional<Fault> FaultOfConfigFile(const std::filesystem::path& file);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_DOCTOR_LOG_CONFIG_H
