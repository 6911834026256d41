// SPDX-License-Identifier: MIT
#ifndef VEXTREL_TESTS_PROGRAM_SCOPED_VARIABLE_H
#define VEXTREL_TESTS_PROGRAM_SCOPED_VARIABLE_H

#include <string>
#include <utility>

#include "support/system.h"

namespace vextrel_test {

// An environment variable of this process, as long as it lives.
class ScopedVariable {
 public:
  ScopedVariable(std::string name, const std::string& value) : name_(std::move(name)) {
    SetVariable(name_.c_str(), value.c_str());
  }
  ~ScopedVariable() { SetVariable(name_.c_str(), nullptr); }
  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;

 private:
  std::string name_;
};

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_PROGRAM_SCOPED_VARIABLE_H
