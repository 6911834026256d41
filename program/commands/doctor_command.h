// SPDX-License-Identifier: MIT
// vextrel doctor
#ifndef VEXTREL_PROGRAM_COMMANDS_DOCTOR_COMMAND_H
#define VEXTREL_PROGRAM_COMMANDS_DOCTOR_COMMAND_H

#include <CLI/CLI.hpp>
#include <functional>

#include "views/output.h"

namespace vextrel::program {

// As AddShowCommand in show_command.h.
void AddDoctorCommand(CLI::App& program, Output& output, std::function<int()>& action);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_COMMANDS_DOCTOR_COMMAND_H
