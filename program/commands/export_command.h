// SPDX-License-Identifier: MIT
// vextrel export
#ifndef VEXTREL_PROGRAM_COMMANDS_EXPORT_COMMAND_H
#define VEXTREL_PROGRAM_COMMANDS_EXPORT_COMMAND_H

#include <CLI/CLI.hpp>
#include <functional>

#include "views/output.h"

namespace vextrel::program {

// As AddShowCommand in show_command.h.
void AddExportCommand(CLI::App& program, Output& output, Output& errors,
                      std::function<int()>& action);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_COMMANDS_EXPORT_COMMAND_H
