// SPDX-License-Identifier: MIT
// vextrel trace
#ifndef VEXTREL_PROGRAM_COMMANDS_TRACE_COMMAND_H
#define VEXTREL_PROGRAM_COMMANDS_TRACE_COMMAND_H

#include <CLI/CLI.hpp>
#include <functional>
#include <string>
#include <vector>

#include "views/output.h"

namespace vextrel::program {

// As AddShowCommand in show_command.h. `application` is what follows "--": the program and its
// arguments, word by word.
void AddTraceCommand(CLI::App& program, Output& errors, const std::vector<std::string>& application,
                     std::function<int()>& action);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_COMMANDS_TRACE_COMMAND_H
