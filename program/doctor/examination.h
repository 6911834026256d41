// SPDX-License-Identifier: MIT
// All that can keep a trace from working, looked at in the order in which it would.
#ifndef VEXTREL_PROGRAM_DOCTOR_EXAMINATION_H
#define VEXTREL_PROGRAM_DOCTOR_EXAMINATION_H

#include <filesystem>
#include <optional>
#include <string>

#include "doctor/diagnosis.h"
#include "launching/modules.h"
#include "launching/system.h"
#include "launching/variables.h"

namespace vextrel::program {

// What is looked at.
struct Setup {
  Variables variables;  // of the process that is to be traced
  std::optional<StoredVariables> stored;
  std::string target;             // as the user names it; empty for what the variables name
  std::string config;             // as the user names it; empty for what the variable names
  std::string application;        // as the user names it, or empty
  OwnModules modules;             // those that belong to this program
  std::filesystem::path program;  // this program; loads the target if that isn't empty
};

// True iff the variables lead to Vextrel, or name it a target or a configuration: a set-up by hand,
// or one that 'vextrel trace' made. False if it's left to 'vextrel trace'.
[[nodiscard]] bool IsSetUp(const Setup& setup);

[[nodiscard]] Diagnoses Examine(const Setup& setup);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_DOCTOR_EXAMINATION_H
