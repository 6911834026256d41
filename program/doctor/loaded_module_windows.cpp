// SPDX-License-Identifier: MIT
#include "doctor/loaded_module.h"

// The system's headers come first in what they need of each other.
// clang-format off
#include <windows.h>
// clang-format on

#include <system_error>

namespace vextrel::program {

LoadedModule::LoadedModule(const std::filesystem::path& path) {
  // A message box about a missing library would wait for a user.
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX | SEM_NOGPFAULTERRORBOX);
  handle_ = LoadLibraryW(path.c_str());
  if (handle_ == nullptr) {
    const auto error = static_cast<int>(GetLastError());
    error_ = "error " + std::to_string(error) + ", " + std::system_category().message(error);
  }
}

void* LoadedModule::Find(const char* name) const {
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(handle_), name));
}

}  // namespace vextrel::program
