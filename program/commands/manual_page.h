// SPDX-License-Identifier: MIT
// The manual page, made of the texts of --help.
#ifndef VEXTREL_PROGRAM_COMMANDS_MANUAL_PAGE_H
#define VEXTREL_PROGRAM_COMMANDS_MANUAL_PAGE_H

#include <CLI/CLI.hpp>
#include <functional>

#include "views/output.h"

namespace vextrel::program {

// Adds the command that writes the page of `program`, in roff. No user needs it: the build does.
void AddManualPageCommand(CLI::App& program, Output& output, std::function<int()>& action);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_COMMANDS_MANUAL_PAGE_H
