#include "module.h"

#include <utility>

#if defined(_WIN32)
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
#else
#include <dlfcn.h>

#include <cstdlib>
#endif

#if defined(_WIN32)

Module::Module(const std::string& path) : path_(path), module_(LoadLibraryA(path.c_str())) {}

Module::~Module() {
  if (module_ != nullptr) {
    FreeLibrary(static_cast<HMODULE>(module_));
  }
}

Module::AnyFunction Module::Symbol(const char* name) const {
  return module_ != nullptr ? reinterpret_cast<AnyFunction>(reinterpret_cast<void*>(
                                  GetProcAddress(static_cast<HMODULE>(module_), name)))
                            : nullptr;
}

bool IsInMemory(const std::string& path) {
  // The plain name: only it is certain to be compared as the system keeps it.
  return GetModuleHandleA(path.substr(path.find_last_of("/\\") + 1).c_str()) != nullptr;
}

EnvironmentSetting::EnvironmentSetting(std::string name, const std::string& value)
    : name_(std::move(name)) {
  SetEnvironmentVariableA(name_.c_str(), value.c_str());
}

EnvironmentSetting::~EnvironmentSetting() {
  SetEnvironmentVariableA(name_.c_str(), nullptr);
}

#else

Module::Module(const std::string& path)
    : path_(path), module_(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) {}

Module::~Module() {
  if (module_ != nullptr) {
    dlclose(module_);
  }
}

Module::AnyFunction Module::Symbol(const char* name) const {
  return module_ != nullptr ? reinterpret_cast<AnyFunction>(dlsym(module_, name)) : nullptr;
}

bool IsInMemory(const std::string& path) {
  void* const module = dlopen(path.c_str(), RTLD_LAZY | RTLD_NOLOAD);
  if (module != nullptr) {
    dlclose(module);
  }
  return module != nullptr;
}

EnvironmentSetting::EnvironmentSetting(std::string name, const std::string& value)
    : name_(std::move(name)) {
  setenv(name_.c_str(), value.c_str(), 1);
}

EnvironmentSetting::~EnvironmentSetting() {
  unsetenv(name_.c_str());
}

#endif
