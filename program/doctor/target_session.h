// SPDX-License-Identifier: MIT
// A short session with a target, in a process that may crash or hang.
#ifndef VEXTREL_PROGRAM_DOCTOR_TARGET_SESSION_H
#define VEXTREL_PROGRAM_DOCTOR_TARGET_SESSION_H

#include <chrono>
#include <filesystem>
#include <string>

#include "launching/variables.h"

namespace vextrel::program {

// The name of the command that plays the session; no user needs it.
inline constexpr const char* kSessionCommand = "play-target-session";

// Plays the session in this process, and writes each step to `result` as it's made: load,
// initialize, open, ask for the version, count the interfaces, close. Returns the exit status.
[[nodiscard]] int PlayTargetSession(const std::string& result, const std::string& target);

struct TargetSession {
  bool isWhole = false;
  std::string text;  // what came of it, as the end of a sentence that begins with the target
};

// Has `program` play it in a process of its own. Kills that if it takes longer than `limit`.
[[nodiscard]] TargetSession TryTarget(const std::filesystem::path& program,
                                      const std::filesystem::path& target,
                                      const Variables& variables, std::chrono::milliseconds limit);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_DOCTOR_TARGET_SESSION_H
