// SPDX-License-Identifier: MIT
// vextrel check
#ifndef VEXTREL_PROGRAM_COMMANDS_CHECK_COMMAND_H
#define VEXTREL_PROGRAM_COMMANDS_CHECK_COMMAND_H

#include <CLI/CLI.hpp>
#include <functional>

#include "views/output.h"

namespace vextrel::program {

// As AddShowCommand in show_command.h.
void AddCheckCommand(CLI::App& program, Output& output, Output& errors,
                     std::function<int()>& action);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_COMMANDS_CHECK_COMMAND_H
