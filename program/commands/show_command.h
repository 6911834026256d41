// SPDX-License-Identifier: MIT
// vextrel show
#ifndef VEXTREL_PROGRAM_COMMANDS_SHOW_COMMAND_H
#define VEXTREL_PROGRAM_COMMANDS_SHOW_COMMAND_H

#include <CLI/CLI.hpp>
#include <functional>

#include "views/output.h"

namespace vextrel::program {

// Adds the command to the program. What has to be run if it's the one that was asked for is put
// into `action`, which returns the exit status.
void AddShowCommand(CLI::App& program, Output& output, Output& errors,
                    std::function<int()>& action);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_COMMANDS_SHOW_COMMAND_H
