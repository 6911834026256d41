// SPDX-License-Identifier: MIT
#include <dlfcn.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

#include "support/system.h"

namespace vextrel_test {

Module::Module(const std::filesystem::path& path)
    : handle_(::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) {}

Module::~Module() {
  if (handle_ != nullptr) {
    ::dlclose(handle_);
  }
}

void* Module::FindAddress(const char* name) const {
  return ::dlsym(handle_, name);
}

bool IsModuleLoaded(const std::filesystem::path& path) {
  void* handle = ::dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD);
  if (handle != nullptr) {
    ::dlclose(handle);
  }
  return handle != nullptr;
}

void SetVariable(const char* name, const char* value) {
  if (value != nullptr) {
    ::setenv(name, value, 1);
  } else {
    ::unsetenv(name);
  }
}

std::filesystem::path ProgramFolder() {
  return std::filesystem::read_symlink("/proc/self/exe").parent_path();
}

std::uint32_t LastError() {
  return static_cast<std::uint32_t>(errno);
}
void SetLastErrorValue(std::uint32_t value) {
  errno = static_cast<int>(value);
}

std::uint32_t ProcessId() {
  return static_cast<std::uint32_t>(::getpid());
}

}  // namespace vextrel_test
