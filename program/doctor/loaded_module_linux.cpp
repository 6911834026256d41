// SPDX-License-Identifier: MIT
#include <dlfcn.h>

#include "doctor/loaded_module.h"

namespace vextrel::program {

LoadedModule::LoadedModule(const std::filesystem::path& path)
    : handle_(::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) {
  if (handle_ == nullptr) {
    error_ = ::dlerror();
  }
}

void* LoadedModule::Find(const char* name) const {
  return ::dlsym(handle_, name);
}

}  // namespace vextrel::program
