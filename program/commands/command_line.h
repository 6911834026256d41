// SPDX-License-Identifier: MIT
// The program: its commands, their options and its exit status.
#ifndef VEXTREL_PROGRAM_COMMANDS_COMMAND_LINE_H
#define VEXTREL_PROGRAM_COMMANDS_COMMAND_LINE_H

#include <string>
#include <vector>

#include "views/output.h"

namespace vextrel::program {

inline constexpr int kExitEqual = 0;      // and everything that went well
inline constexpr int kExitDifferent = 1;  // of diff, and of check with findings
inline constexpr int kExitUnusable = 2;   // a log or an option that can't be used

// Runs the program with these arguments, in UTF-8, without its own name. Returns its exit status.
// What goes wrong is one sentence in `errors`.
[[nodiscard]] int RunProgram(const std::vector<std::string>& arguments, Output& output,
                             Output& errors);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_COMMANDS_COMMAND_LINE_H
