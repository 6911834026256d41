// SPDX-License-Identifier: MIT
#include <dlfcn.h>
#include <link.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "platform/platform.h"

namespace vextrel::platform {
namespace {

// Returns the loaded object that contains `address`, or null.
const void* ObjectAt(const void* address) {
  Dl_info info{};
  void* object = nullptr;
  return ::dladdr1(address, &info, &object, RTLD_DL_LINKMAP) != 0 ? object : nullptr;
}

// Returns the loaded object behind a handle, or null. It doesn't depend on the path that was
// loaded.
const void* ObjectOf(ModuleHandle module) {
  void* object = nullptr;
  return ::dlinfo(module, RTLD_DI_LINKMAP, static_cast<void*>(&object)) == 0 ? object : nullptr;
}

}  // namespace

VariableRead ReadVariable(const char* name, char* buffer, std::uint32_t size) {
  // For a name with '=', getenv can return part of another variable's value.
  const char* value = std::strchr(name, '=') == nullptr ? std::getenv(name) : nullptr;
  if (value == nullptr || *value == '\0') {
    return {0, kErrorVariableNotFound};
  }
  const auto length = static_cast<std::uint32_t>(std::strlen(value));
  if (length >= size) {
    return {length + 1, 0};
  }
  std::memcpy(buffer, value, length + std::size_t{1});
  return {length, 0};
}

ModuleLoad LoadModule(const char* path) {
  void* module = ::dlopen(path, RTLD_NOW | RTLD_LOCAL);
  if (module != nullptr) {
    return {module, 0};
  }
  // dlopen has no error numbers. These are Windows' for a missing file and for one that isn't a
  // module.
  return {nullptr, ::access(path, F_OK) == 0 ? kErrorBadModuleFormat : kErrorModuleNotFound};
}

void UnloadModule(ModuleHandle module) {
  ::dlclose(module);
}

bool IsOwnModule(ModuleHandle module) {
  return ObjectOf(module) == ObjectAt(reinterpret_cast<const void*>(&IsOwnModule));
}

void* FindExport(ModuleHandle module, const char* name) {
  // dlsym also searches the libraries that the module links, so check which object it found. It
  // resolves indirect functions itself, so `found` is always the code that a call reaches.
  void* found = ::dlsym(module, name);
  return found != nullptr && ObjectAt(found) == ObjectOf(module) ? found : nullptr;
}

std::uint64_t ModuleFileVersion(ModuleHandle /*module*/) {
  return 0;
}

std::ifstream OpenTextFile(const std::string& path) {
  std::error_code error;
  if (std::filesystem::is_directory(path, error)) {
    return {};
  }
  return std::ifstream(path);
}

LastErrorGuard::LastErrorGuard() noexcept : errno_(errno) {}

LastErrorGuard::~LastErrorGuard() {
  errno = errno_;
}

}  // namespace vextrel::platform
