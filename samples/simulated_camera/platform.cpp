// SPDX-License-Identifier: MIT
#include "platform.h"

#if defined(_WIN32)
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
#else
#include <dlfcn.h>

#include <climits>
#include <cstdlib>
#endif

namespace simulated_camera {
namespace {

// Lies in this module, which the system can look up by address.
const char kAnchor = 0;

}  // namespace

#if defined(_WIN32)

// Not getenv: its copy of the environment misses what the consumer sets with
// SetEnvironmentVariable.
std::optional<std::string> EnvironmentVariable(const char* name) {
  std::string value(256, '\0');
  for (;;) {
    const DWORD length =
        GetEnvironmentVariableA(name, value.data(), static_cast<DWORD>(value.size()));
    if (length == 0) {
      return std::nullopt;
    }
    const bool fits = length < value.size();
    value.resize(length);
    if (fits) {
      return value;
    }
  }
}

std::string ModulePath() {
  HMODULE module = nullptr;
  if (GetModuleHandleExA(
          GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
          &kAnchor, &module) == 0) {
    return {};
  }
  std::string path(32768, '\0');
  path.resize(GetModuleFileNameA(module, path.data(), static_cast<DWORD>(path.size())));
  return path;
}

ModulePin::ModulePin() {
  HMODULE module = nullptr;
  if (GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, &kAnchor, &module) != 0) {
    module_ = module;
  }
}

ModulePin::~ModulePin() {
  if (module_ != nullptr) {
    FreeLibrary(static_cast<HMODULE>(module_));
  }
}

#else

std::optional<std::string> EnvironmentVariable(const char* name) {
  const char* const value = std::getenv(name);
  return value != nullptr ? std::optional<std::string>(value) : std::nullopt;
}

std::string ModulePath() {
  Dl_info info{};
  if (dladdr(&kAnchor, &info) == 0 || info.dli_fname == nullptr) {
    return {};
  }
  char absolute[PATH_MAX];
  return realpath(info.dli_fname, absolute) != nullptr ? absolute : info.dli_fname;
}

ModulePin::ModulePin() {
  Dl_info info{};
  if (dladdr(&kAnchor, &info) != 0 && info.dli_fname != nullptr) {
    module_ = dlopen(info.dli_fname, RTLD_LAZY | RTLD_NOLOAD);
  }
}

ModulePin::~ModulePin() {
  if (module_ != nullptr) {
    dlclose(module_);
  }
}

#endif

}  // namespace simulated_camera
