#ifndef VEXTREL_SAMPLES_SIMULATED_CAMERA_PLATFORM_H
#define VEXTREL_SAMPLES_SIMULATED_CAMERA_PLATFORM_H

#include <optional>
#include <string>

namespace simcam {

// The value of an environment variable, as the process has it now.
[[nodiscard]] std::optional<std::string> EnvironmentVariable(const char* name);

// The full path of this module, empty if the system does not tell.
[[nodiscard]] std::string ModulePath();

// Keeps this module in memory, however often the consumer unloads it. A thread of ours holds one,
// so that its code stays mapped even when the consumer forgets to stop it.
class ModulePin {
 public:
  ModulePin();
  ~ModulePin();
  ModulePin(const ModulePin&) = delete;
  ModulePin& operator=(const ModulePin&) = delete;

 private:
  void* module_ = nullptr;
};

}  // namespace simcam

#endif  // VEXTREL_SAMPLES_SIMULATED_CAMERA_PLATFORM_H
