// SPDX-License-Identifier: MIT
// A module in this process: one file for each system.
#ifndef VEXTREL_PROGRAM_DOCTOR_LOADED_MODULE_H
#define VEXTREL_PROGRAM_DOCTOR_LOADED_MODULE_H

#include <filesystem>
#include <string>

namespace vextrel::program {

// Stays loaded until the process ends.
class LoadedModule {
 public:
  explicit LoadedModule(const std::filesystem::path& path);

  // What the loader says if it refused the module; empty otherwise.
  [[nodiscard]] const std::string& Error() const noexcept { return error_; }
  // Null if there's no such export.
  [[nodiscard]] void* Find(const char* name) const;

 private:
  void* handle_ = nullptr;
  std::string error_;
};

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_DOCTOR_LOADED_MODULE_H
