// SPDX-License-Identifier: MIT
// What keeps a trace from working: worded once, for those who look and those who fail.
#ifndef VEXTREL_PROGRAM_LAUNCHING_FAULT_H
#define VEXTREL_PROGRAM_LAUNCHING_FAULT_H

#include <string>

namespace vextrel::program {

struct Fault {
  std::string text;
  std::string remedy;  // empty if nothing is known to help

  [[nodiscard]] std::string Sentence() const {
    return remedy.empty() ? text : text + ": " + remedy;
  }
};

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_LAUNCHING_FAULT_H
