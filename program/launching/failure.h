// SPDX-License-Identifier: MIT
// Why an application wasn't traced, and the exit status that says so.
#ifndef VEXTREL_PROGRAM_LAUNCHING_FAILURE_H
#define VEXTREL_PROGRAM_LAUNCHING_FAILURE_H

#include <stdexcept>
#include <string>

#include "launching/fault.h"

namespace vextrel::program {

inline constexpr int kExitChoice = 2;  // the command line has to say more
// Ours, before the application was started, or when it had ended well.
inline constexpr int kExitOwnFailure = 125;
inline constexpr int kExitNotExecutable = 126;
inline constexpr int kExitNotFound = 127;

// A sentence for the user, and the exit status.
class LaunchFailure : public std::runtime_error {
 public:
  LaunchFailure(int status, const std::string& sentence)
      : LaunchFailure(status, Fault{sentence, ""}) {}
  LaunchFailure(int status, const Fault& why)
      : std::runtime_error(why.Sentence()), status_(status), why_(why) {}
  [[nodiscard]] int Status() const noexcept { return status_; }
  [[nodiscard]] const Fault& Why() const noexcept { return why_; }

 private:
  int status_;
  Fault why_;
};

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_LAUNCHING_FAILURE_H
