// SPDX-License-Identifier: MIT
// A GenTL producer loaded into the test.
#ifndef VEXTREL_TESTS_SAMPLES_PRODUCER_H
#define VEXTREL_TESTS_SAMPLES_PRODUCER_H

#include <filesystem>

#include "support/held_target.h"
#include "support/system.h"

namespace vextrel_test {

// The producer's functions, null where it exports none; unloaded by the destructor.
struct Producer : GenTLFunctions {
  explicit Producer(const std::filesystem::path& path) : module(path) {
    if (module.IsLoaded()) {
      static_cast<GenTLFunctions&>(*this) = FunctionsOf(module);
    }
  }

  Module module;
};

// An environment variable that is set for the lifetime of the object.
class EnvironmentSetting {
 public:
  EnvironmentSetting(const char* name, const char* value) : name_(name) {
    SetVariable(name, value);
  }
  ~EnvironmentSetting() { SetVariable(name_, nullptr); }
  EnvironmentSetting(const EnvironmentSetting&) = delete;
  EnvironmentSetting& operator=(const EnvironmentSetting&) = delete;

 private:
  const char* name_;
};

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_SAMPLES_PRODUCER_H
