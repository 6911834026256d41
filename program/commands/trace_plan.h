// SPDX-License-Identifier: MIT
// What a trace is made of, decided before the application starts.
#ifndef VEXTREL_PROGRAM_COMMANDS_TRACE_PLAN_H
#define VEXTREL_PROGRAM_COMMANDS_TRACE_PLAN_H

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "commands/log_mark.h"
#include "launching/trace_folder.h"
#include "launching/variables.h"
#include "views/output.h"

namespace vextrel::program {

struct TraceArguments {
  std::vector<std::string> application;
  std::string target;
  std::string module = "auto";
  std::string log;
  std::string config;
  std::string rolling;
  std::string page;
  bool isChecked = false;
  LogStyle style;
};

// What is known before the application starts.
struct Plan {
  std::filesystem::path application;
  std::filesystem::path target;
  std::filesystem::path module;
  std::filesystem::path log;                   // empty if the configuration names none
  std::vector<std::filesystem::path> allLogs;  // the configuration may name several
  std::filesystem::path config;                // the user's own; empty for ours
  LogMark earlier;                             // what is in the log already
};

// Throws LaunchFailure if there can't be a trace. Fills in the size in `arguments.style`.
[[nodiscard]] Plan MakePlan(TraceArguments& arguments, const Variables& variables, Output& errors);

// Writes a sentence of ours among what the application writes.
void Say(Output& errors, std::string_view sentence);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_COMMANDS_TRACE_PLAN_H
