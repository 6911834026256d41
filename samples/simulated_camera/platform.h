// SPDX-License-Identifier: MIT
#ifndef VEXTREL_SAMPLES_SIMULATED_CAMERA_PLATFORM_H
#define VEXTREL_SAMPLES_SIMULATED_CAMERA_PLATFORM_H

#include <optional>
#include <string>

namespace simulated_camera {

// Returns the current value of an environment variable.
[[nodiscard]] std::optional<std::string> EnvironmentVariable(const char* name);

// Returns the full path of this module, or an empty string if the system cannot tell.
[[nodiscard]] std::string ModulePath();

// Keeps this module loaded even if the consumer unloads it: the code of a running thread must stay
// mapped.
class ModulePin {
 public:
  ModulePin();
  ~ModulePin();
  ModulePin(const ModulePin&) = delete;
  ModulePin& operator=(const ModulePin&) = delete;

 private:
  void* module_ = nullptr;
};

}  // namespace simulated_camera

#endif  // VEXTREL_SAMPLES_SIMULATED_CAMERA_PLATFORM_H
